// Every page command at least once, over the page fixtures (see
// page_fixture.h): Adam (male, born 1.1.2010, father 180 cm, birth kind 2;
// visit 0 on 1.1.2015 with height 110.4 and comment "school", visit 1 at
// 6.5 years with height 118), Berta (female, one visit at 12 with
// menarche 1), Cyril (male, nothing else). Names sort as Adam, Berta, Cyril.
// Anamnestic variables in order: FATHER_HT, BIRTH; followed: HEIGHT,
// MENARCHE (the age variable is no measured one).
#include <gtest/gtest.h>

#include "page/r_a_pagecommands.h"
#include "tests/page/page_fixture.h"

namespace {
struct Row {
  const char* query;
  const char* page;
  const char* expected;
};

const char* const adam = "_p_id=r100";
const char* const adam0 = "_p_id=r100&_m_id=0";
const char* const adam1 = "_p_id=r100&_m_id=1";
const char* const berta0 = "_p_id=r101&_m_id=0";
const char* const cyril = "_p_id=r102";

}  // namespace

class PageCommandsTest : public PageFixture {
 public:
  void runRows(const Row* rows, int count) {
    for (int i = 0; i < count; ++i) {
      SCOPED_TRACE(std::string(rows[i].query) + " | " + rows[i].page);
      EXPECT_EQ(rows[i].expected, walk(rows[i].query, rows[i].page));
      EXPECT_EQ("begin;end;", events());
    }
  }
};

TEST_F(PageCommandsTest, ProbandCommandsWriteTheRecordOrNothingOutsideTheirContext) {
  const char* const all =
      "$get-proband-name/$get-proband-comment/$get-proband-dob/$get-proband-id/$get-proband-index/"
      "$get-proband-measure-count/$if-proband-dob-defined y$else n$end/$if-proband-sex-male m$else f$end"
      "$if-proband-sex-female F$end/$if-proband-is-selected s$else -$end/$if-proband-defined p$else -$end";
  const Row rows[] = {
      {adam, all, "Adam/first/1.1.2010/r100/1/2/ y/ m/ s/ p"},
      {berta0, all, "Berta/twin//r101/2/1/ n/ f F/ s/ p"},
      {cyril, all, "Cyril/twin//r102/3/0/ n/ m/ s/ p"},
      {"", all, "///////// -"},
      {"_p_id=r103", all, "///////// -"},
      {"_p_id=r100&_srch=twin", "$if-proband-is-selected y$else n$end", " n"},
      {cyril, "$get-proband-xml", "{proband}{info sex=\"male\" /}{data}{/data}{/proband}"},
      {cyril, "$get-proband-xml-escaped",
       "%3Cproband%3E%3Cinfo%20sex%3D%22male%22%20/%3E%3Cdata%3E%3C/data%3E%3C/proband%3E"},
      {cyril, "$get-proband-cgi", "_p_name=Cyril&_p_sex=M&_p_cmt=twin&"},
      // The reset reaches the end of the level: the proband is gone for
      // every later command there, though the loaded proband stays.
      {adam, "$force-proband-reset[$get-proband-name]$get-proband-measure-count", "[]2"},
      // The loaded proband belongs to the application, not to a level: the
      // else part, a level of its own without a proband, leaves none behind.
      {adam, "$force-proband-reset$if-proband-defined y$else n$end[$get-proband-measure-count]", " n[]"},
  };
  runRows(rows, sizeof(rows) / sizeof(rows[0]));
}

TEST_F(PageCommandsTest, MeasureCommandsNeedAVisitOfTheLoadedProband) {
  const char* const all = "$get-measure-id/$get-measure-order/$get-measure-date/$get-measure-age/"
                          "$get-measure-age-rounded/$get-measure-comment/$if-measure-date-defined y$else n$end";
  const char* const count =
      "$get-measure-count/$if-any-measures y$else n$end/$for-each-measure[$get-measure-order:$get-measure-age]$end";
  const Row rows[] = {
      // 1.1.2010 to 1.1.2015 are 1826 days: 1826 / 365.25 = 4.999 years,
      // 5.0 at the age variable's precision of 0.1.
      {adam0, all, "0/1/1.1.2015/4.999/5.0 years/school/ y"},
      {adam1, all, "1/2//6.5/6.5 years// n"},
      {"_p_id=r100&_m_id=2", all, "//////"},
      {adam, all, "//////"},
      {adam, count, "2/ y/[1:4.999][2:6.5]"},
      {cyril, count, "0/ n/"},
      {"", count, "//"},
      // A body that drops the proband: the loop still counts Adam's visits.
      {adam, "$for-each-measure$force-proband-reset x$end", " x x"},
  };
  runRows(rows, sizeof(rows) / sizeof(rows[0]));
}

TEST_F(PageCommandsTest, TextCommandsReadTheTextOfTheRequest) {
  const Row rows[] = {
      {"_t_id=summary", "$get-text-name/$get-text-id/$get-text-meta", "Summary/summary/for parents"},
      {"_t_id=nowhere", "[$get-text-name$get-text]", "[]"},
      {"_t_id=summary", "$get-text", "<p>Hello.</p>"},
      {"_t_id=boys&_p_id=r100", "$if-text-available y$else n$end", " y"},
      {"_t_id=boys&_p_id=r101", "$if-text-available y$else n$end", " n"},
      {"", "$for-each-text[$get-text-id]$end", "[summary][boys]"},
  };
  runRows(rows, sizeof(rows) / sizeof(rows[0]));
}

// Each variable's name=value|unit|id|help id|min/max| and then whether it
// is defined, a list, real, has help, is relevant, has a min and a max. A
// list variable's interval runs from its first to its last item value.
TEST_F(PageCommandsTest, VariableCommandsServeTheCurrentVariableOfEachKind) {
  const char* const anamnestic =
      "$for-each-anamnestic$(get-anamnestic-name)=$(get-anamnestic-value)|$(get-anamnestic-unit)|"
      "$(get-anamnestic-id)|$(get-anamnestic-help-id)|$(get-anamnestic-min)/$(get-anamnestic-max)|"
      "$if-anamnestic-defined y$else n$end$if-anamnestic-list y$else n$end$if-anamnestic-real y$else n$end"
      "$if-anamnestic-has-help y$else n$end$if-anamnestic-relevant y$else n$end$if-anamnestic-min y$else n$end"
      "$if-anamnestic-max y$else n$end;$end";
  const char* const followed =
      "$for-each-followed$(get-followed-name)=$(get-followed-value)|$(get-followed-unit)|"
      "$(get-followed-id)|$(get-followed-help-id)|$(get-followed-min)/$(get-followed-max)|"
      "$if-followed-defined y$else n$end$if-followed-list y$else n$end$if-followed-real y$else n$end"
      "$if-followed-has-help y$else n$end$if-followed-relevant y$else n$end$if-followed-min y$else n$end"
      "$if-followed-max y$else n$end;$end";
  const Row rows[] = {
      {adam, anamnestic,
       "Father's height=180|cm|FATHER_HT|no_such_text|100/?| y n y n y y n;Birth kind=caesarean||BIRTH||1/2| y y n n y y y;"},
      {cyril, anamnestic,
       "Father's height=|cm|FATHER_HT|no_such_text|100/?| n n y n y y n;Birth kind=||BIRTH||1/2| n y n n y y y;"},
      {"", anamnestic, "Father's height=|cm|FATHER_HT|no_such_text|100/?| n y n y n;Birth kind=||BIRTH||1/2| y n n y y;"},
      {adam0, followed, "Height=110.4|cm|HEIGHT|help_height|30/250| y n y y y y y;Menarche=||MENARCHE||0/1| n y n n n y y;"},
      {berta0, followed, "Height=|cm|HEIGHT|help_height|30/250| n n y y y y y;Menarche=yes||MENARCHE||0/1| y y n n y y y;"},
      {adam, followed, "Height=|cm|HEIGHT|help_height|30/250| n y y y y y;Menarche=||MENARCHE||0/1| y n n n y y;"},
      {"", followed, "Height=|cm|HEIGHT|help_height|30/250| n y y y y;Menarche=||MENARCHE||0/1| y n n y y;"},
      {"", "[$get-anamnestic-name$get-followed-name]", "[]"},
  };
  runRows(rows, sizeof(rows) / sizeof(rows[0]));
}

TEST_F(PageCommandsTest, ListItemCommandsTakeTheAnamnesticListFirst) {
  const Row rows[] = {
      {"", "$for-each-anamnestic$for-each-list-item$(get-list-item-name)=$(get-list-item-value),$end;$end",
       ";normal=1,caesarean=2,;"},
      {"", "$for-each-followed$for-each-list-item$(get-list-item-name)=$(get-list-item-value),$end;$end",
       ";no=0,yes=1,;"},
      {adam, "$for-each-anamnestic$for-each-list-item$if-list-item-selected [$get-list-item-name]$end$end$end",
       " [caesarean]"},
      // Cyril has no birth kind: an undefined value passes the whole block over.
      {cyril, "$for-each-anamnestic$for-each-list-item$if-list-item-selected +$else -$end$end$end", ""},
      {berta0, "$for-each-followed$for-each-list-item$if-list-item-selected +$else -$end$end$end", " - +"},
      {"", "[$get-list-item-name$get-list-item-value$if-list-item-selected +$else -$end]", "[]"},
  };
  runRows(rows, sizeof(rows) / sizeof(rows[0]));
}

TEST_F(PageCommandsTest, FileRequestAndWindowCommands) {
  const char* const search = "$if-searched-not-found y$else n$end|$for-each-selected-proband$get-proband-name,$end";
  const Row rows[] = {
      // Three probands in a window of 50: the last top is 3 - 50 = -47.
      {"",
       "$get-file-comment/$get-file-copyright/$get-program-version|$if-any-probands y$else n$end|$get-proband-count|"
       "$get-knowledge-base-url|$get-page-base-url|$get-user-css|$get-today-date|$get-command-order|"
       "[$get-searched-text$get-searched-text-cgi]|$for-each-proband$get-proband-index$end|"
       "$get-window-top-previous/$get-window-top-next$if-window-previous p$end$if-window-next n$end",
       "page fixture/test data/v1.5r1| y|3|img/|http://pages/|b{i}|1.7.2020|49324032|[]|123|0/-47"},
      {"_srch=zzz", search, " y|Adam,Berta,Cyril,"},
      {"_srch=TWIN", search, " n|Berta,Cyril,"},
      {"_srch=a%3Cb%3E+c", "$get-searched-text|$get-searched-text-cgi", "a{b} c|a%3Cb%3E%20c"},
      // Inside a level the loop leaves the index behind the last record;
      // leaving the level puts it back.
      {adam, "[$for-each-proband$end$get-proband-name]", "[]"},
      {adam, "$if-proband-defined $for-each-proband$end$end$get-proband-name", " Adam"},
      {"_top=3", "$for-each-selected-proband-in-window$get-proband-name,$end", "Adam,Berta,Cyril,"},
  };
  runRows(rows, sizeof(rows) / sizeof(rows[0]));
}

TEST_F(PageCommandsTest, AFullWindowWalksOneProbandMoreThanItsSize) {
  setup.setInt(R_A_Setup::intProbandsPerPage, 1);
  const Row rows[] = {
      // top 1 of 3 with size 1: previous 1 - 1 = 0, next 1 + 1 = 2.
      {"_top=1", "$get-window-top-previous/$get-window-top-next$if-window-previous p$end$if-window-next n$end", "0/2 p n"},
      {"_top=1", "$for-each-selected-proband-in-window$get-proband-name,$end", "Berta,Cyril,"},
      // A top beyond the last window becomes 3 - 1 = 2 (next: 2 + 1 = 3, as 2
      // is not above 2); a negative one 0.
      {"_top=9", "$get-window-top-previous/$get-window-top-next", "1/3"},
      {"_top=-4", "$for-each-selected-proband-in-window$get-proband-name,$end", "Adam,Berta,"},
  };
  runRows(rows, sizeof(rows) / sizeof(rows[0]));
}

TEST_F(PageCommandsTest, WindowSumsDoNotOverflowForAnySize) {
  setup.setInt(R_A_Setup::intProbandsPerPage, -2147483647 - 1);
  const Row rows[] = {
      // previous: 0 - (-2^31) = 2147483648; next: 0 + (-2^31), as 0 is not
      // above 3 + 2^31. One body, and then the count exceeds the size.
      {"_top=5", "$get-window-top-previous/$get-window-top-next$if-window-next n$end", "2.14748e+09/-2.14748e+09 n"},
      {"", "$for-each-selected-proband-in-window$get-proband-name,$end", "Adam,"},
  };
  runRows(rows, sizeof(rows) / sizeof(rows[0]));
  setup.setInt(R_A_Setup::intProbandsPerPage, 2147483647);
  // top 5 becomes 3 - (2^31 - 1) = -2147483644; next: top is above that?
  // no, equal: top + size = 3.
  EXPECT_EQ("0/3", walk("_top=5", "$get-window-top-previous/$get-window-top-next"));
}
