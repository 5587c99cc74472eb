// Runs the built `auxtool csv` and compares the whole file it writes.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/test_files.h"

namespace {

int auxtoolCsv(const std::string& arguments) {
  int exit_code = -1;
  runCommand(std::string(AUX_BIN_DIR) + "/auxtool csv " + testData("proband/knowledge.xml") + " " + arguments +
                 " 2>/dev/null",
             &exit_code);
  return exit_code;
}

}  // namespace

TEST(AuxtoolCsvTest, WritesEveryProbandOrThoseTheSearchSelects) {
  TempDir dir;
  std::string database = testData("output/csv_database.xml");
  EXPECT_EQ(0, auxtoolCsv(database + " " + dir.file("all.csv")));
  EXPECT_EQ(readFile(testData("output/csv_expected.csv")), readFile(dir.file("all.csv")));
  EXPECT_EQ(0, auxtoolCsv(database + " " + dir.file("z.csv") + " --search zE"));
  EXPECT_EQ(
      "PROBAND_INDEX,NAME,SEX,DOB,COMMENT,FATHER_HT,MOTHER_HT,MEASURE_INDEX,DATE,MEASURE_COMMENT,HEIGHT,WEIGHT\n"
      "3,\"Zed\",F,6/15/2012,\"three visits\",,,1,1/1/2015,\"\",110,18.25\n"
      ",,,,,,,2,6/1/2015,\"second_ visit\",112,\n"
      ",,,,,,,3,1/2/2016,\"\",,\n",
      readFile(dir.file("z.csv")));
}

TEST(AuxtoolCsvTest, ARefusedDatabaseLeavesTheOldFileAndWrongUsageExitsWith2) {
  TempDir dir;
  writeFile(dir.file("out.csv"), "old");
  writeFile(dir.file("bad.xml"), "<p_database><p_record><p_name>A</p_name><proband><info sex=\"male\"/>");
  EXPECT_EQ(1, auxtoolCsv(dir.file("bad.xml") + " " + dir.file("out.csv")));
  EXPECT_EQ(1, auxtoolCsv(dir.file("none.xml") + " " + dir.file("out.csv")));
  EXPECT_EQ("old", readFile(dir.file("out.csv")));
  EXPECT_EQ(2, auxtoolCsv(dir.file("out.csv")));
  EXPECT_EQ(2, auxtoolCsv("a b c --search"));
}
