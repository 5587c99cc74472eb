#include "proband/r_a_simpledb.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <string>
#include <vector>

#include "tests/proband/proband_support.h"
#include "tests/support/test_files.h"

namespace {

class SimpleDBTest : public ::testing::Test {
 protected:
  SimpleDBTest() : file(loadKnowledge("knowledge.xml")), security(true) {}

  // The database at `path`, with male records added by "name/comment".
  std::unique_ptr<R_A_SimpleDB> open(const std::string& path, bool binary, std::vector<std::string> records = {}) {
    std::unique_ptr<R_A_SimpleDB> db(new R_A_SimpleDB(&security, file.get(), path.c_str(), binary, &reporter));
    for (const std::string& record : records) {
      int index = db->addRecord(0);
      db->setText(index, 1, record.substr(record.find('/') + 1).c_str());
      db->setText(index, 0, record.substr(0, record.find('/')).c_str());
    }
    return db;
  }
  // "name/comment" per record, in table order.
  static std::string names(const R_A_SimpleDB& db) {
    std::string result;
    for (int i = 0; i < db.getN(); ++i)
      result += std::string(i ? " " : "") + db.getText(i, 0).get() + "/" + db.getText(i, 1).get();
    return result;
  }

  std::unique_ptr<R_File> file;
  FixedSecurity security;
  CollectingReporter reporter;
  TempDir dir;
};

// The database of two_records_expected.xml, built through the interface.
void fillTwoRecords(R_A_SimpleDB& db) {
  int index = db.addRecord(-1);
  db.setText(index, 1, "note");
  db.setText(index, 0, "beta");
  index = db.addRecord(1);
  db.setText(index, 0, "Alpha");
  R_Proband* proband = db.getProband(index);
  proband->setAnamnesticValue("FATHER_HT", R_Number(180.0));
  int visit = proband->addVisit(R_Number(5.5), R_Date());
  proband->setVisitComment(visit, "first");
  proband->setFollowedValue(visit, "HEIGHT", R_Number(110.0));
}

}  // namespace

TEST_F(SimpleDBTest, ABadRecordIsLeftOutAndReportedInnermostFirst) {
  std::unique_ptr<R_A_SimpleDB> db = open(testData("proband/one_bad_record.xml"), false);
  EXPECT_EQ(std::vector<std::string>({"data error closing block </proband>: wrong proband data",
                                      "Error while processing database record.",
                                      "(23) data error closing block </p_record>: error while reading record",
                                      "(28) Error while processing database."}),
            reporter.lines());
  EXPECT_EQ(180.0, db->getProband(2)->getAnamnesticNumber(0).getValue());
}

// Both forms save through a temporary file and read back to the same bytes;
// the record without sex survives them; the binary form cut anywhere loads
// cleanly, with no more records than it holds.
TEST_F(SimpleDBTest, EitherFormIsWrittenWholeAndReadsBackToTheSameBytes) {
  for (bool binary : {false, true}) {
    SCOPED_TRACE(binary);
    const std::string path = dir.file(binary ? "db.bin" : "db.xml");
    std::unique_ptr<R_A_SimpleDB> db = open(path, binary);
    fillTwoRecords(*db);
    ASSERT_TRUE(db->save(0));
    EXPECT_FALSE(fileExists(path + ".tmp"));
    const std::string written = readFile(path);
    if (!binary) {
      EXPECT_EQ(readFile(testData("proband/two_records_expected.xml")), written);
    }
    std::unique_ptr<R_A_SimpleDB> again = open(path, binary);
    EXPECT_TRUE(again->isReadWhole());
    EXPECT_EQ("Alpha/ beta/note", names(*again));
    EXPECT_FALSE(again->getProband(1)->isSexDefined());
    ASSERT_TRUE(again->save(0));
    EXPECT_EQ(written, readFile(path));
    for (size_t length = 0; binary && length < written.size(); ++length) {
      SCOPED_TRACE(length);
      writeFile(path, written.substr(0, length));
      std::unique_ptr<R_A_SimpleDB> cut = open(path, true);
      EXPECT_LE(cut->getN(), 2);
      EXPECT_FALSE(cut->isReadWhole());
    }
  }
  EXPECT_TRUE(reporter.lines().empty());
}

// A count beyond the stored records adds one empty record in front; only a
// file read to its last byte with nothing refused is read whole; a missing
// file is an empty database; none of these is reported.
TEST_F(SimpleDBTest, WhatEachFileGivesAndWhetherItIsReadWhole) {
  const std::string bin = dir.file("db.bin");
  ASSERT_TRUE(open(bin, true, {"b/x", "c/y"})->save(0));
  const std::string bytes = readFile(bin);
  std::string more_records = bytes, other_type = bytes;
  more_records[2] = '\x03';
  other_type[0] = '\x50';
  const struct {
    std::string path, bytes;  // written to `path` first unless empty
    bool binary;
    const char* outcome;
  } rows[] = {
      {bin, bytes, true, "b/x c/y whole"},
      {bin, bytes + '\0', true, "b/x c/y"},
      {bin, more_records, true, "/ b/x c/y"},
      {bin, other_type, true, ""},
      {dir.file("none.bin"), "", true, ""},
      {dir.file("none.xml"), "", false, ""},
      {testData("proband/two_records_expected.xml"), "", false, "Alpha/ beta/note whole"},
      {testData("proband/one_bad_record.xml"), "", false, "Alpha/Zebrafish keeper alpha/ beta/second letter"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path + " " + std::to_string(row.bytes.size()));
    if (!row.bytes.empty()) writeFile(row.path, row.bytes);
    reporter.clear();
    std::unique_ptr<R_A_SimpleDB> db = open(row.path, row.binary);
    EXPECT_EQ(row.outcome, names(*db) + (db->isReadWhole() ? " whole" : ""));
    EXPECT_EQ(row.path.find("bad") != std::string::npos, !reporter.lines().empty());
  }
}

// One database through its life, a line of "name/comment" after each step:
// names sort without regard to case and equal names keep their arrival; a
// new name moves the record and the index follows; select matches name or
// comment and clears the others; removeRecord saves at once; loadText adds
// to the records in memory; identifiers go through the security object.
TEST_F(SimpleDBTest, NamesSortFindRenameSelectRemoveAndLoad) {
  const std::string path = dir.file("db.xml");
  std::unique_ptr<R_A_SimpleDB> db =
      open(path, false, {"beta/1", "Alpha/2", "alpha/3", "\xC8" "ech/4", "ALPHA/5", "Zeta/6"});
  EXPECT_EQ("Alpha/2 alpha/3 ALPHA/5 beta/1 Zeta/6 \xC8" "ech/4", names(*db));
  std::string found;
  for (const char* name : {"alpha", "ALPHA", "Zeta", "aLPHA", "alph", static_cast<const char*>(nullptr)})
    found += std::to_string(db->findByName(name)) + " ";
  EXPECT_EQ("1 2 4 -1 -1 -1 ", found);
  int index = 4;
  db->setText(index, 0, "Aaron");
  EXPECT_EQ(0, index);
  db->setText(index, 1, "pals");
  EXPECT_EQ(0, index);
  for (int bad : {-1, 6}) {
    index = bad;
    db->setText(index, 0, "x");
    EXPECT_EQ(bad, index);
    EXPECT_STREQ("", db->getText(bad, 1).get());
    EXPECT_EQ(nullptr, db->getProband(bad));
  }
  db->select(nullptr);
  EXPECT_EQ(6, db->getSelectedCount());
  db->select("AL");
  std::string selected;
  for (int i = -1; i <= 6; ++i) selected += db->isSelected(i) ? "1" : "0";
  EXPECT_EQ("01111000", selected);
  db->setSelected(4, true);
  db->removeBySelection(false);
  EXPECT_EQ("Aaron/pals Alpha/2 alpha/3 ALPHA/5 beta/1", names(*db));
  ASSERT_TRUE(db->save(0));
  db->removeRecord(5);
  db->removeRecord(0);
  EXPECT_EQ("Alpha/2 alpha/3 ALPHA/5 beta/1", names(*open(path, false)));
  char buffer[16] = "old";
  EXPECT_TRUE(db->getRecordId(1, 0, buffer));
  EXPECT_STREQ("R1", buffer);
  FixedSecurity refusing(false);
  R_A_SimpleDB closed(&refusing, file.get(), path.c_str(), false, &reporter);
  EXPECT_TRUE(closed.getRecordId(0, 0, buffer));
  EXPECT_EQ("1 -1 -1 -1 []", std::to_string(db->findRecord("R1", 0)) + " " + std::to_string(db->findRecord("R4", 0)) + " " +
                              std::to_string(db->findRecord("X", 0)) + " " + std::to_string(closed.findRecord("R0", 0)) +
                              " [" + buffer + "]");
  EXPECT_TRUE(db->loadText("<p_database><p_record><p_name> n </p_name><proband/></p_record>"
                           "<p_record><p_name>a</p_name></p_record></p_database>"));
  EXPECT_FALSE(db->loadText("<p_database><p_record>"));
  EXPECT_FALSE(db->loadText(nullptr));
  EXPECT_EQ("a/ Alpha/2 alpha/3 ALPHA/5 beta/1 n/", names(*db));
  db->select(nullptr);
  db->removeBySelection(true);
  EXPECT_EQ(0, db->getN());
}

TEST_F(SimpleDBTest, AFailedSaveLeavesTheOldFileAsItWas) {
  // The file was read from a directory that has gone since: nothing is made anew.
  ASSERT_EQ(0, mkdir(dir.file("sub").c_str(), 0700));
  std::unique_ptr<R_A_SimpleDB> moved = open(dir.file("sub/db.xml"), false, {"a/"});
  ASSERT_TRUE(moved->save(0));
  const std::string saved = readFile(dir.file("sub/db.xml"));
  ASSERT_EQ(0, rename(dir.file("sub").c_str(), dir.file("gone").c_str()));
  EXPECT_FALSE(moved->save(0));
  EXPECT_EQ(saved, readFile(dir.file("gone/db.xml")));
  EXPECT_FALSE(fileExists(dir.file("sub")));
  for (bool binary : {false, true}) {
    SCOPED_TRACE(binary);
    const std::string path = dir.file(binary ? "db.bin" : "db.xml");
    std::unique_ptr<R_A_SimpleDB> db = open(path, binary, {"a/"});
    ASSERT_TRUE(db->save(0));
    const std::string old_bytes = readFile(path);
    // Something in the way of the temporary name is passed by, not used.
    ASSERT_EQ(0, mkdir((path + ".tmp").c_str(), 0700));
    db->addRecord(0);
    EXPECT_TRUE(db->save(0));
    EXPECT_NE(old_bytes, readFile(path));
    EXPECT_TRUE(fileExists(path + ".tmp"));
  }
}
