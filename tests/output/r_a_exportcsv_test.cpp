#include "output/r_a_exportcsv.h"

#include <gtest/gtest.h>

#include <string>

#include "knowledge/r_file.h"
#include "proband/r_a_opensecurity.h"
#include "proband/r_a_simpledb.h"
#include "tests/support/test_files.h"

namespace {

class ExportCSVTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(file.loadXML(testData("proband/knowledge.xml").c_str(), nullptr));
    std::string path = testData("output/csv_database.xml");
    database.reset(new R_A_SimpleDB(&security, &file, path.c_str(), false, nullptr));
    ASSERT_EQ(3, database->getN());
    database->select(nullptr);
  }

  R_File file;
  R_A_OpenSecurity security;
  std::unique_ptr<R_A_SimpleDB> database;
  TempDir dir;
};

}  // namespace

TEST_F(ExportCSVTest, DefaultTextsGiveOneLineAVisitWithTheProbandOnItsFirstLine) {
  R_A_ExportCSV csv(dir.file("out.csv").c_str());
  EXPECT_TRUE(csv.write(*database, file));
  EXPECT_TRUE(csv.isOK());
  EXPECT_EQ(readFile(testData("output/csv_expected.csv")), readFile(dir.file("out.csv")));
  EXPECT_FALSE(fileExists(dir.file("out.csv.tmp")));
  EXPECT_FALSE(csv.write(*database, file));  // one object writes one file
}

TEST_F(ExportCSVTest, ChangedTextsAndAnUnselectedProbandLeftOutOfTheNumbering) {
  database->setSelected(1, false);
  R_A_ExportCSV csv(dir.file("out.csv").c_str());
  const struct {
    int which;
    const char* text;
  } kChanges[] = {
      {R_A_ExportCSV::nameProbandIndex, "NR"},   {R_A_ExportCSV::nameLineEnd, "\r\n"},
      {R_A_ExportCSV::nameQuote, "'"},           {R_A_ExportCSV::nameSeparator, ";"},
      {R_A_ExportCSV::nameDateFormat, "%D.%M.%Y"}, {R_A_ExportCSV::nameEmptyField, "-"},
      {R_A_ExportCSV::nameUndefinedNumber, "?"}, {R_A_ExportCSV::nameDecimalPoint, ","},
      {R_A_ExportCSV::nameName, "A_HEAD_OF_MORE_THAN_THIRTY_TWO_BYTES"},
  };
  for (const auto& change : kChanges) csv.setName(change.which, change.text);
  ASSERT_TRUE(csv.write(*database, file));
  EXPECT_EQ(readFile(testData("output/csv_changed.csv")), readFile(dir.file("out.csv")));
}

TEST_F(ExportCSVTest, AFileThatCannotBeOpenedWritesNothing) {
  R_A_ExportCSV csv(dir.file("missing/out.csv").c_str());
  EXPECT_FALSE(csv.write(*database, file));
  EXPECT_FALSE(csv.isOK());
  EXPECT_FALSE(fileExists(dir.file("missing/out.csv")));
}
