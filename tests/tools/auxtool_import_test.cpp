// Runs the built `auxtool import`: its whole listing, the database after an
// import (read back through `auxtool csv`), and refusals that leave the
// database byte for byte as it was.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/test_files.h"

namespace {

std::string auxtool(const std::string& command, const std::string& arguments, int* exit_code) {
  return runCommand(std::string(AUX_BIN_DIR) + "/auxtool " + command + " " + testData("proband/knowledge.xml") +
                        " " + arguments + " 2>/dev/null",
                    exit_code);
}

const char kListing[] =
    "info\tExport from the clinic\n"
    "1\tNov\xE1kov\xE1 Eva\tF\t3.4.2010\tshort stature\n"
    "2\tSvoboda Jan\tM\t15.6.2012\ttall stature\n";

class AuxtoolImportTest : public ::testing::Test {
 protected:
  void SetUp() override {
    original = readFile(testData("output/csv_database.xml"));
    writeFile(database(), original);
  }
  std::string database() const { return dir.file("db.xml"); }
  std::string import(const std::string& list, const std::string& options, int* exit_code) {
    return auxtool("import", list + " " + database() + " " + options, exit_code);
  }

  TempDir dir;
  std::string original;
};

}  // namespace

TEST_F(AuxtoolImportTest, ListsTheEntriesAndLeavesTheDatabaseWithoutASelection) {
  int exit_code = -1;
  EXPECT_EQ(kListing, import(testData("proband/import_list.xml"), "", &exit_code));
  EXPECT_EQ(0, exit_code);
  EXPECT_EQ(original, readFile(database()));
}

TEST_F(AuxtoolImportTest, SelectedEntriesBecomeRecordsSavedByTheDatabase) {
  int exit_code = -1;
  EXPECT_EQ(std::string(kListing) + "imported 2 of 2 entries into " + database() + "\n",
            import(testData("proband/import_list.xml"), "--select 2,1", &exit_code));
  EXPECT_EQ(0, exit_code);
  auxtool("csv", database() + " " + dir.file("out.csv"), &exit_code);
  EXPECT_EQ(
      "PROBAND_INDEX,NAME,SEX,DOB,COMMENT,FATHER_HT,MOTHER_HT,MEASURE_INDEX,DATE,MEASURE_COMMENT,HEIGHT,WEIGHT\n"
      "1,\"Nov\xE1kov\xE1 Eva\",F,4/3/2010,\"first comment\",180,,1,1/1/2015,\"check\",110.5,\n"
      "2,\"One__Two_\",M,4/3/2010,\"x;y\",180.5,,,,,,\n"
      "3,\"Other\",F,,\"\",,,,,,,\n"
      "4,\"Svoboda Jan\",M,6/15/2012,\"\",,,,,,,\n"
      "5,\"Zed\",F,6/15/2012,\"three visits\",,,1,1/1/2015,\"\",110,18.25\n"
      ",,,,,,,2,6/1/2015,\"second_ visit\",112,\n"
      ",,,,,,,3,1/2/2016,\"\",,\n",
      readFile(dir.file("out.csv")));
}

TEST_F(AuxtoolImportTest, ARefusedListDatabaseOrSelectionChangesNothing) {
  writeFile(dir.file("broken.xml"),
            "<import_list><import_proband><name>A</name><proband><info sex=\"male\"/></proband>");
  const struct {
    const char* label;
    std::string list;
    const char* options;
    int exit_code;
  } kRows[] = {
      {"broken list", dir.file("broken.xml"), "--all", 1},
      {"missing list", dir.file("missing.xml"), "--all", 1},
      {"number past the list", testData("proband/import_list.xml"), "--select 1,3", 2},
      {"number 0", testData("proband/import_list.xml"), "--select 0", 2},
      {"not a number", testData("proband/import_list.xml"), "--select 1,x", 2},
      {"trailing comma", testData("proband/import_list.xml"), "--select 1,", 2},
      {"both options", testData("proband/import_list.xml"), "--all --select 1", 2},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.label);
    int exit_code = -1;
    EXPECT_EQ("", import(row.list, row.options, &exit_code));
    EXPECT_EQ(row.exit_code, exit_code);
    EXPECT_EQ(original, readFile(database()));
  }
  std::string broken_database = "<p_database><p_record><p_name>A</p_name><proband><info sex=\"male\"/>";
  writeFile(database(), broken_database);
  int exit_code = -1;
  import(testData("proband/import_list.xml"), "--all", &exit_code);
  EXPECT_EQ(1, exit_code);
  EXPECT_EQ(broken_database, readFile(database()));
}
