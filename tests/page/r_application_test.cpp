// The walker over odd and hostile templates, and whole requests: commands
// with the order token, the temporary proband, searches and page choice.
// Fixtures as in page_fixture.h.
#include "page/r_application.h"

#include <gtest/gtest.h>

#include <string>

#include "page/r_a_commandorder.h"
#include "page/r_a_errorreporter.h"
#include "page/r_a_parser.h"
#include "page/r_a_textlist.h"
#include "proband/r_proband.h"
#include "tests/page/page_fixture.h"

namespace {
struct Row {
  std::string page;
  std::string text;
  std::string events;
};

std::string repeated(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}
std::string nested(int ifs, const std::string& inner) {
  return repeated("$if-any-probands ", ifs) + inner + repeated("$end", ifs);
}
}  // namespace

class ApplicationTest : public PageFixture {
 protected:
  // The order token of the form `n` commands after the first.
  static std::string order(int n) { return "&_order=" + std::to_string(firstOrder + n); }
};

TEST_F(ApplicationTest, DeepAndGiantTemplatesStayBounded) {
  // Only 16 levels are walked: the 17th is refused, as are 5000.
  EXPECT_EQ(std::string(16, ' ') + "X", walk("", nested(16, "X")));
  EXPECT_EQ("begin;end;", events());
  for (int depth : {17, 5000}) {
    EXPECT_EQ(std::string(16, ' '), walk("", nested(depth, "X")));
    EXPECT_EQ("begin;error 1;end;", events());
  }
  // Unclosed loops are walked one after the other as plain text, each
  // reporting its missing $end once per proband: 100 blanks, 300 reports.
  EXPECT_EQ(std::string(100, ' '), walk("", repeated("$for-each-proband ", 100)));
  EXPECT_EQ("begin;" + repeated("error 2;", 300) + "end;", events());

  // 200 000 unclosed blocks: each is found to have no $end without a pass
  // over the 3.4 MB behind it, which would take hours for all of them.
  EXPECT_EQ(std::string(200000, ' '), walk("", repeated("$if-any-probands ", 200000)));

  std::string giant(20 * 1024 * 1024, 'x');
  giant += "$get-proband-count";
  std::string text = walk("", giant);
  EXPECT_EQ(giant.size() - 18 + 1, text.size());  // the command's 18 bytes give "3"
  EXPECT_EQ("3", text.substr(text.size() - 1));
}

TEST_F(ApplicationTest, ARequestChoosesASafePage) {
  writeFile(dir.file("...htm"), "dots");
  const Row rows[] = {
      {"_page=../main", "main", "begin;end;"},
      {"_page=..", "dots", "begin;end;"},
      {"_page=", "main", "begin;end;"},
      {"_page=a%2Fb", "main", "begin;end;"},
      {"_page=gone", "", "error 3 gone;"},
      {"_page=main&_errorpage=gone", "main", "begin;end;"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.page);
    EXPECT_EQ(row.text, request(row.page));
    EXPECT_EQ(row.events, events());
  }
  app->setDefaultPage(nullptr);
  EXPECT_EQ("", request("_page=a/b"));
  EXPECT_EQ("", events());
}

TEST_F(ApplicationTest, TheOrderTokenLetsEachFormThroughOnce) {
  // A stale token deletes nothing and shows the proband.
  EXPECT_EQ("Berta 49324032", walk("_cmd=del&_order=123&_p_id=r101", "$get-proband-name $get-command-order"));
  // The right token without a command still moves on.
  EXPECT_EQ(std::to_string(firstOrder + 1), walk(order(0), "$get-command-order"));
  EXPECT_EQ("Berta", walk("_cmd=del" + order(0) + "&_p_id=r101", "$get-proband-name"));
  EXPECT_EQ(3, db->getN());
  EXPECT_EQ("[]", walk("_cmd=del" + order(1) + "&_p_id=r101", "[$get-proband-name]"));
  EXPECT_EQ(2, reopen()->getN());
  // The same form again: the token has moved, nothing more is deleted.
  EXPECT_EQ("Cyril", walk("_cmd=del" + order(1) + "&_p_id=r101", "$get-proband-name"));
  EXPECT_EQ(2, db->getN());

  R_A_CommandOrder token(R_A_LocalTime{120, 10, 24, 23, 5, 9});
  EXPECT_EQ(12042, token.getStamp());
  for (int i = 0; i < 1024; ++i) token.advance();
  EXPECT_EQ(firstOrder, token.getValue());
  EXPECT_TRUE(token.check(firstOrder + 1024 * 3));  // bits 10 and 11 are not looked at
  EXPECT_FALSE(token.check(firstOrder + 4096));
}

TEST_F(ApplicationTest, NewAddsRecordsAndVisitsAndSavesThem) {
  std::string page = "$get-proband-index:$get-proband-name:$get-proband-comment:$get-proband-dob:"
                     "$for-each-measure[$get-measure-age,$get-measure-comment]$end";
  // 2.3.2012 to 2.3.2018: 2191 days (2016 is a leap year): 2191 / 365.25 = 5.999.
  EXPECT_EQ("4:Dora:x(y:2.3.2012:[5.999,a^b]",
            walk("_cmd=new" + order(0) + "&_p_name=Dora&_p_cmt=x%3Cy&_p_sex=f&_p_dob=2.3.2012&_m_date=2.3.2018"
                 "&_m_cmt=a%26b&HEIGHT=120&FATHER_HT=175&NOTHING=1",
                 page));
  std::unique_ptr<R_A_SimpleDB> saved = reopen();
  ASSERT_EQ(4, saved->getN());
  const R_Proband& dora = *saved->getProband(3);
  EXPECT_STREQ("Dora", saved->getText(3, 0).get());
  EXPECT_EQ(1, dora.getSex());
  EXPECT_EQ(175.0, dora.getAnamnesticNumber(0).getValue());
  EXPECT_EQ(120.0, dora.getFollowedNumber(0, 0).getValue());

  // An existing proband with an empty age and no date gets no visit.
  EXPECT_EQ("3:Cyril:0", walk("_cmd=new" + order(1) + "&_p_id=r102&_p_name=Cyril&_m_age=&HEIGHT=100",
                              "$get-proband-index:$get-proband-name:$get-measure-count"));
  // A request without a comment empties the record's comment.
  EXPECT_STREQ("", db->getText(2, 1).get());
  // No identifier and no sex: nothing is added.
  EXPECT_EQ("[]", walk("_cmd=new" + order(2) + "&_p_name=Eva", "[$get-proband-name]"));
  EXPECT_EQ(4, db->getN());
}

TEST_F(ApplicationTest, SetChangesTheRecordAndItsVisit) {
  // Visit 1 moves from 6.5 to 4 years and so comes first; its height changes.
  EXPECT_EQ("Adam2: f:0:4=125.0;4.999=110.4;",
            walk("_cmd=set" + order(0) + "&_p_id=r100&_p_name=Adam2&_p_sex=F&_m_id=1&_m_age=4&_m_cmt=<x>&HEIGHT=125",
                 "$get-proband-name:$if-proband-sex-female f$end:$get-measure-id:"
                 "$for-each-measure$get-measure-age=$for-each-followed$get-followed-value$end;$end"));
  std::unique_ptr<R_A_SimpleDB> saved = reopen();
  EXPECT_STREQ("Adam2", saved->getText(0, 0).get());
  EXPECT_STREQ("<x>", db->getProband(0)->getVisitComment(0).get());
  EXPECT_EQ(125.0, saved->getProband(0)->getFollowedNumber(0, 0).getValue());

  // A visit that is not there: only the anamnestic values change.
  walk("_cmd=set" + order(1) + "&_p_id=r100&_p_name=Adam2&_m_id=7&FATHER_HT=190&HEIGHT=99", "");
  EXPECT_EQ(190.0, db->getProband(0)->getAnamnesticNumber(0).getValue());
  EXPECT_EQ(125.0, db->getProband(0)->getFollowedNumber(0, 0).getValue());
}

TEST_F(ApplicationTest, DelRemovesAVisitOrTheRecord) {
  EXPECT_EQ("Adam 1 []", walk("_cmd=del" + order(0) + "&_p_id=r100&_m_id=0",
                               "$get-proband-name $get-measure-count [$get-measure-id]"));
  EXPECT_EQ(1, reopen()->getProband(0)->getVisitCount());
}

// The query of a loaded proband rebuilds it through /temp (more of the
// temporary proband in walks.txt).
TEST_F(ApplicationTest, TheQueryOfAProbandRebuildsItAsTheTemporaryOne) {
  std::string query = walk("_p_id=r101", "$get-proband-cgi");
  EXPECT_EQ("Berta|twin|1|12=,yes,;",
            walk("/temp?_page=t&" + query, "$get-proband-name|$get-proband-comment|$get-proband-measure-count|"
                                           "$for-each-measure$get-measure-age=$for-each-followed$get-followed-value,$end;$end"));
}

TEST_F(ApplicationTest, WholePagesFromFixtureTemplates) {
  const std::string pages = testData("page/pages/");
  app->setPages("http://pages/", pages.c_str(), ".htm");
  setup.setInt(R_A_Setup::intProbandsPerPage, 1);
  // One proband per window: a full window walks two, and the next window
  // starts at 0 + 1.
  const struct {
    const char* query;
    const char* expected;
  } rows[] = {
      {"_page=list&_top=0&_srch=x%3Cy", "list_notfound.txt"},
      {"_page=proband&_p_id=r100", "proband_adam.txt"},
      {"_page=proband&_p_id=r999", "proband_none.txt"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.query);
    EXPECT_EQ(readFile(pages + row.expected), request(row.query));
  }
  setup.setInt(R_A_Setup::intProbandsPerPage, 50);
  EXPECT_EQ(readFile(pages + "list_all.txt"), request("_page=list"));
}

TEST(ErrorReporterTest, KeepsTheLinesThatFitBelow2048Bytes) {
  R_A_ErrorReporter reporter;
  reporter.report("first");
  reporter.report(nullptr);
  // 6 + 1 bytes so far; 7 + 2040 = 2047 is below 2048 and is taken, which
  // makes 2048 bytes with its newline; then even "" no longer fits.
  reporter.report(std::string(2040, 'x').c_str());
  reporter.report("");
  EXPECT_EQ("first\n\n" + std::string(2040, 'x') + "\n", reporter.getText());
  reporter.clear();
  reporter.report(std::string(2048, 'y').c_str());
  EXPECT_STREQ("", reporter.getText());
}

TEST(ParserTest, OnlyAReadableFileGivesAValidParser) {
  TempDir dir;
  writeFile(dir.file("empty.htm"), "");
  R_A_Parser empty(dir.file("empty.htm").c_str());
  EXPECT_TRUE(empty.isValid());
  EXPECT_FALSE(empty.isMore());
  EXPECT_FALSE(R_A_Parser(dir.file("missing.htm").c_str()).isValid());
  EXPECT_FALSE(R_A_Parser(dir.path().c_str()).isValid());  // a folder opens but does not read
  EXPECT_FALSE(R_A_Parser(nullptr).isValid());
}

TEST(TextListTest, AFileThatIsNotLoadedListsNothing) {
  R_File unloaded;
  EXPECT_EQ(0, R_A_TextList(unloaded).getCount());
}
