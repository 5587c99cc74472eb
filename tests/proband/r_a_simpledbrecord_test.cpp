#include "proband/r_a_simpledbrecord.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "proband/r_proband.h"
#include "tests/proband/proband_support.h"
#include "tests/support/test_files.h"

namespace {

class SimpleDBRecordTest : public ::testing::Test {
 protected:
  SimpleDBRecordTest() : file(loadKnowledge("knowledge.xml")), record(file.get()) {}

  std::string query(const char* target, int size = 1024) {
    std::vector<char> buffer(static_cast<size_t>(size), 'x');
    bool made = record.makeQuery(target, buffer.data(), size, file.get());
    return (made ? "" : "refused:") + std::string(buffer.data());
  }

  std::unique_ptr<R_File> file;
  R_A_SimpleDBRecord record;
  CollectingReporter reporter;
};

}  // namespace

// record_file_bad.xml holds a proband without sex.
TEST_F(SimpleDBRecordTest, AProbandWithoutSexRefusesTheRecordAndLoadFileReadsARecordOfItsOwn) {
  R_A_SimpleDBRecord refused(file.get()), bad(file.get());
  EXPECT_FALSE(refused.loadXML("<p_name>N</p_name><p_comment>c</p_comment><proband><info id=\"7\"/></proband>",
                               &reporter));
  EXPECT_STREQ("N", refused.getText(0).get());
  EXPECT_TRUE(refused.getProband()->getId().isEmpty());
  EXPECT_FALSE(bad.loadFile(testData("proband/record_file_bad.xml").c_str(), &reporter));
  EXPECT_FALSE(bad.loadFile(testData("proband/no_such_file.xml").c_str(), &reporter));
  EXPECT_EQ(std::vector<std::string>({"data error closing block </proband>: wrong proband data",
                                      "Error while processing database record.",
                                      "data error closing block </proband>: wrong proband data",
                                      "Error while loading external file record.", "no input data",
                                      "Error while loading external file record."}),
            reporter.lines());
  ASSERT_TRUE(record.loadFile(testData("proband/record_file.xml").c_str(), &reporter));
  EXPECT_STREQ("From a file", record.getText(0).get());
  EXPECT_STREQ("kept apart", record.getText(1).get());
  EXPECT_EQ("<proband><info id=\"F\" sex=\"female\" /><data><val var=\"MOTHER_HT\">158</val></data></proband>",
            textOf(*record.getProband()));
}

TEST_F(SimpleDBRecordTest, MakeQueryWritesTheWholeProbandAsPageParameters) {
  record.setText(0, "x");
  EXPECT_EQ("refused:", query("page"));  // a proband without sex
  record.getProband()->setSex(1);
  EXPECT_EQ("_p_name=x&_p_sex=F&_p_cmt=&", query(nullptr));
  record.setText(0, "Jan Nov\xE1k");
  record.setText(1, "a&b=c+d~");
  ASSERT_TRUE(record.getProband()->loadXML(
      "<info sex=\"male\" dob=\"5.3.2001\"/><data><val var=\"FATHER_HT\">180.5</val>"
      "<record age=\"12.25\"><val var=\"WEIGHT\">40</val></record>"
      "<record date=\"5.3.2011\"><val var=\"HEIGHT\">110</val></record></data>"));
  EXPECT_EQ("/temp?_p_name=Jan+Nov%E1k&_p_dob=5.3.2001&_p_sex=M&_p_cmt=a%26b%3Dc%2Bd%7E&_page=report+page&"
            "FATHER_HT=180.5&_AGE=9.999&_DATE=5.3.2011&HEIGHT=110&_AGE=12.25&WEIGHT=40&",
            query("report page"));
  EXPECT_EQ("_p_name=Jan+Nov%E1k&_p_dob=5.3.2001&_p_sex=M&_p_cmt=a%26b%3Dc%2Bd%7E&"
            "FATHER_HT=180.5&_AGE=9.999&_DATE=5.3.2011&HEIGHT=110&_AGE=12.25&WEIGHT=40&",
            query(nullptr));
  EXPECT_EQ("_p_name=J&_", query(nullptr, 12));
  // Every byte in the comment: the safe ones as they are, a blank as '+',
  // the others as %XX.
  std::string all, expected;
  const std::string safe = "!#$()*,-./0123456789;@ABCDEFGHIJKLMNOPQRSTUVWXYZ[]_abcdefghijklmnopqrstuvwxyz{}";
  for (int c = 1; c < 256; ++c) {
    char hex[4];
    snprintf(hex, sizeof(hex), "%%%02X", c);
    all += static_cast<char>(c);
    expected += c == ' ' ? std::string("+") : safe.find(char(c)) != std::string::npos ? std::string(1, char(c)) : hex;
  }
  record.setText(1, all.c_str());
  EXPECT_EQ("_p_name=Jan+Nov%E1k&_p_dob=5.3.2001&_p_sex=M&_p_cmt=" + expected, query(nullptr, 4096).substr(0, 52 + expected.size()));
  EXPECT_EQ("", query(nullptr, 1));
}
