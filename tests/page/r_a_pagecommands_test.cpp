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
  const Row rows[] = {
      {adam, "$get-proband-name/$get-proband-comment", "Adam/first"},
      {"", "[$get-proband-name$get-proband-comment$get-proband-dob$get-proband-id]", "[]"},
      {adam, "$get-proband-dob", "1.1.2010"},
      {cyril, "[$get-proband-dob]", "[]"},
      {adam, "$get-proband-id", "r100"},
      {berta0, "$get-proband-index", "2"},
      {adam, "$get-proband-measure-count", "2"},
      {adam, "$if-proband-dob-defined y$else n$end", " y"},
      {cyril, "$if-proband-dob-defined y$else n$end", " n"},
      {"", "[$if-proband-dob-defined y$else n$end]", "[]"},
      {adam, "$if-proband-sex-male m$else f$end$if-proband-sex-female F$end", " m"},
      {berta0, "$if-proband-sex-male m$else f$end$if-proband-sex-female F$end", " f F"},
      {adam, "$if-proband-is-selected y$else n$end", " y"},
      {"_p_id=r100&_srch=twin", "$if-proband-is-selected y$else n$end", " n"},
      {"", "$if-proband-defined y$else n$end", " n"},
      {"_p_id=r103", "$if-proband-defined y$else n$end", " n"},
      {adam, "$if-proband-defined y$else n$end", " y"},
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
  const Row rows[] = {
      // 1.1.2010 to 1.1.2015 are 1826 days: 1826 / 365.25 = 4.999 years,
      // 5.0 at the age variable's precision of 0.1.
      {adam0, "$get-measure-date|$get-measure-age|$get-measure-age-rounded|$get-measure-comment", "1.1.2015|4.999|5.0 years|school"},
      {adam1, "[$get-measure-date]$get-measure-age|$get-measure-age-rounded", "[]6.5|6.5 years"},
      {adam1, "$get-measure-id/$get-measure-order", "1/2"},
      {"_p_id=r100&_m_id=2", "[$get-measure-id$get-measure-age$if-measure-date-defined y$else n$end]", "[]"},
      {adam, "[$get-measure-id]", "[]"},
      {adam0, "$if-measure-date-defined y$else n$end", " y"},
      {adam1, "$if-measure-date-defined y$else n$end", " n"},
      {adam, "$get-measure-count", "2"},
      {"", "[$get-measure-count]", "[]"},
      {adam, "$if-any-measures y$else n$end", " y"},
      {cyril, "$if-any-measures y$else n$end", " n"},
      {"", "[$if-any-measures y$else n$end]", "[]"},
      {adam, "$for-each-measure[$get-measure-order:$get-measure-age]$end", "[1:4.999][2:6.5]"},
      {"", "[$for-each-measure x$end]", "[]"},
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

TEST_F(PageCommandsTest, VariableCommandsServeTheCurrentVariableOfEachKind) {
  // A list variable's interval runs from its first to its last item value.
  const Row rows[] = {
      {adam, "$for-each-anamnestic$(get-anamnestic-name)=$(get-anamnestic-value);$end", "Father's height=180;Birth kind=caesarean;"},
      {"", "$for-each-anamnestic$(get-anamnestic-name)=$(get-anamnestic-value);$end", "Father's height=;Birth kind=;"},
      {"", "$for-each-anamnestic$(get-anamnestic-unit)|$(get-anamnestic-id)|$(get-anamnestic-help-id);$end",
       "cm|FATHER_HT|no_such_text;|BIRTH|;"},
      {"", "$for-each-anamnestic$(get-anamnestic-min)/$(get-anamnestic-max);$end", "100/?;1/2;"},
      {adam, "$for-each-anamnestic$if-anamnestic-defined y$else n$end;$end", " y; y;"},
      {cyril, "$for-each-anamnestic$if-anamnestic-defined y$else n$end;$end", " n; n;"},
      {"", "$for-each-anamnestic$if-anamnestic-list y$else n$end$if-anamnestic-real y$else n$end;$end", " n y; y n;"},
      {"", "$for-each-anamnestic$if-anamnestic-has-help y$else n$end;$end", " n; n;"},
      {adam, "$for-each-anamnestic$if-anamnestic-relevant y$else n$end;$end", " y; y;"},
      {"", "$for-each-anamnestic$if-anamnestic-min y$else n$end$if-anamnestic-max y$else n$end;$end", " y n; y y;"},
      {"", "[$get-anamnestic-name$get-followed-name]", "[]"},
      {adam0, "$for-each-followed$(get-followed-name)=$(get-followed-value);$end", "Height=110.4;Menarche=;"},
      {berta0, "$for-each-followed$(get-followed-name)=$(get-followed-value);$end", "Height=;Menarche=yes;"},
      {"", "$for-each-followed$(get-followed-unit)|$(get-followed-id)|$(get-followed-help-id);$end",
       "cm|HEIGHT|help_height;|MENARCHE|;"},
      {"", "$for-each-followed$(get-followed-min)/$(get-followed-max);$end", "30/250;0/1;"},
      {adam0, "$for-each-followed$if-followed-defined y$else n$end;$end", " y; n;"},
      {adam, "$for-each-followed$if-followed-defined y$else n$end;$end", ";;"},
      {"", "$for-each-followed$if-followed-list y$else n$end$if-followed-real y$else n$end;$end", " n y; y n;"},
      {"", "$for-each-followed$if-followed-has-help y$else n$end;$end", " y; n;"},
      {adam, "$for-each-followed$if-followed-relevant y$else n$end;$end", " y; n;"},
      {berta0, "$for-each-followed$if-followed-relevant y$else n$end;$end", " y; y;"},
      {"", "$for-each-followed$if-followed-min y$else n$end$if-followed-max y$else n$end;$end", " y y; y y;"},
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
  const Row rows[] = {
      {"", "$get-file-comment/$get-file-copyright/$get-program-version", "page fixture/test data/v1.5r1"},
      {"_srch=zzz", "$if-searched-not-found y$else n$end", " y"},
      {"_srch=TWIN", "$if-searched-not-found y$else n$end", " n"},
      {"_srch=twin", "$for-each-selected-proband$get-proband-name,$end", "Berta,Cyril,"},
      {"_srch=zzz", "$for-each-selected-proband$get-proband-name,$end", "Adam,Berta,Cyril,"},
      {"", "$if-any-probands y$else n$end|$get-proband-count", " y|3"},
      {"_srch=a%3Cb%3E", "$get-searched-text", "a{b}"},
      {"_srch=a+b", "$get-searched-text-cgi", "a%20b"},
      {"", "[$get-searched-text$get-searched-text-cgi]", "[]"},
      {"", "$get-knowledge-base-url|$get-page-base-url|$get-user-css", "img/|http://pages/|b{i}"},
      {"", "$get-today-date", "1.7.2020"},
      {"", "$get-command-order", "49324032"},
      // Three probands in a window of 50: the last top is 3 - 50 = -47.
      {"", "$get-window-top-previous/$get-window-top-next$if-window-previous p$end$if-window-next n$end", "0/-47"},
      {"", "$for-each-proband$get-proband-index$end", "123"},
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

TEST_F(PageCommandsTest, TheTableHoldsEveryCommandOnce) {
  EXPECT_EQ(85, R_A_PageCommands::getCount());
  for (int i = 0; i < R_A_PageCommands::getCount(); ++i) {
    for (int j = i + 1; j < R_A_PageCommands::getCount(); ++j) {
      EXPECT_STRNE(R_A_PageCommands::getName(i), R_A_PageCommands::getName(j));
    }
  }
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
