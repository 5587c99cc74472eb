#include "core/r_binaryobjectlist.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/stored_bytes.h"
#include "tests/support/test_files.h"

namespace {

const char kMagic[] = "02 40 30 20 10";
const char kAbcBlock[] = "99 01 05 00 61 2E 74 78 74 02 03 00 00 00 02 EE 7E 1B 00 61 62 63";

// The file of one object "a.txt" holding abc, described as "d".
std::string oneObjectFile() {
  return std::string("9A ") + kMagic + " 02 01 00 00 00 01 01 00 64 " + kAbcBlock + " " + kMagic;
}

std::string asText(const Bytes& bytes) { return std::string(bytes.begin(), bytes.end()); }

Bytes asBytes(const std::string& text) { return Bytes(text.begin(), text.end()); }

}  // namespace

TEST(BinaryObjectListTest, SaveFileWritesMagicCountDescriptionObjectsMagic) {
  TempDir dir;
  writeFile(dir.file("abc"), "abc");
  R_BinaryObjectList list;
  list.setDescription("d");
  ASSERT_TRUE(list.add(dir.file("abc").c_str(), "a.txt"));
  EXPECT_FALSE(list.add(dir.file("missing").c_str(), "b.txt"));
  EXPECT_EQ(1, list.getCount());
  ASSERT_TRUE(list.saveFile(dir.file("list").c_str()));
  EXPECT_EQ(oneObjectFile(), hexOf(asBytes(readFile(dir.file("list")))));
}

TEST(BinaryObjectListTest, LoadFileGivesBackNamesDescriptionAndBytes) {
  TempDir dir;
  writeFile(dir.file("list"), asText(bytesOf(oneObjectFile())));
  R_BinaryObjectList list;
  ASSERT_TRUE(list.loadFile(dir.file("list").c_str()));
  ASSERT_EQ(1, list.getCount());
  EXPECT_STREQ("a.txt", list.getName(0).get());
  EXPECT_STREQ("d", list.getDescription().get());
  ASSERT_TRUE(list.saveObject(0, dir.file("a.txt").c_str()));
  EXPECT_EQ("abc", readFile(dir.file("a.txt")));
  ASSERT_TRUE(list.saveFile(dir.file("again").c_str()));
  EXPECT_EQ(oneObjectFile(), hexOf(asBytes(readFile(dir.file("again")))));
}

TEST(BinaryObjectListTest, ACutFileFailsAtEveryLength) {
  TempDir dir;
  Bytes bytes = bytesOf(oneObjectFile());
  for (size_t cut = 0; cut < bytes.size(); ++cut) {
    SCOPED_TRACE(cut);
    writeFile(dir.file("cut"), asText(Bytes(bytes.begin(), bytes.begin() + static_cast<long>(cut))));
    R_BinaryObjectList list;
    EXPECT_FALSE(list.loadFile(dir.file("cut").c_str()));
  }
  R_BinaryObjectList list;
  EXPECT_FALSE(list.loadFile(dir.file("missing").c_str()));
}

TEST(BinaryObjectListTest, LoadFileRefusesAWrongTypeMagicOrChecksum) {
  TempDir dir;
  const struct {
    size_t at;
    unsigned char byte;
    int objects_read;
  } rows[] = {
      {0, 0x99, 0},   // type byte
      {2, 0x41, 0},   // first magic: the objects are not read
      {41, 0x41, 1},  // last magic
      {30, 0xEF, 1},  // the object's checksum
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.at);
    Bytes bytes = bytesOf(oneObjectFile());
    bytes[row.at] = row.byte;
    writeFile(dir.file("bad"), asText(bytes));
    R_BinaryObjectList list;
    EXPECT_FALSE(list.loadFile(dir.file("bad").c_str()));
    EXPECT_EQ(row.objects_read, list.getCount());
  }
}
