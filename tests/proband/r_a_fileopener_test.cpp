#include "proband/r_a_fileopener.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "knowledge/r_file.h"
#include "proband/r_a_opensecurity.h"
#include "proband/r_a_simpledb.h"
#include "tests/support/test_files.h"

TEST(FileOpenerTest, TheFirstByteAloneTellsTheForm) {
  TempDir dir;
  const struct {
    const char* bytes;
    size_t size;
    R_A_FileOpener::Form form;
  } rows[] = {
      {"<quorl>", 7, R_A_FileOpener::formXML},
      {"\x09\x05", 2, R_A_FileOpener::formBinary},
      {"", 0, R_A_FileOpener::formBinary},                 // empty: binary
      {"\xEF\xBB\xBF<quorl>", 10, R_A_FileOpener::formBinary},  // a byte-order mark in front
      {"\0<", 2, R_A_FileOpener::formMissing},             // NUL first: as if missing
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.bytes, row.size));
    writeFile(dir.file("f"), std::string(row.bytes, row.size));
    EXPECT_EQ(row.form, R_A_FileOpener::formOf(dir.file("f").c_str()));
  }
  EXPECT_EQ(R_A_FileOpener::formMissing, R_A_FileOpener::formOf(dir.file("none").c_str()));
}

TEST(FileOpenerTest, EitherFormLoadsByItsOwnRoad) {
  for (const char* name : {"exporter/knowledge.xml", "exporter/knowledge.bin"}) {
    SCOPED_TRACE(name);
    const std::string path = testData(name);
    R_File file;
    ASSERT_TRUE(R_A_FileOpener::loadKnowledge(file, path.c_str(), R_A_FileOpener::formOf(path.c_str()), nullptr));
    for (const char* database : {"exporter/database.xml", "exporter/database.bin"}) {
      const std::string db_path = testData(database);
      R_A_OpenSecurity security;
      std::unique_ptr<R_A_SimpleDB> db(R_A_FileOpener::openDatabase(
          security, file, db_path.c_str(), R_A_FileOpener::formOf(db_path.c_str()), nullptr));
      EXPECT_EQ(5, db->getN());
      EXPECT_TRUE(db->isReadWhole());
    }
  }
}
