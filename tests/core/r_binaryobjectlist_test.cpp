#include "core/r_binaryobjectlist.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/stored_bytes.h"
#include "tests/support/test_files.h"

namespace {

// The file of one object "a.txt" holding abc, described as "d": type,
// magic, count, description, the object, magic.
const char kOneObjectFile[] =
    "9A 02 40 30 20 10 02 01 00 00 00 01 01 00 64 "
    "99 01 05 00 61 2E 74 78 74 02 03 00 00 00 02 EE 7E 1B 00 61 62 63 02 40 30 20 10";

std::string asText(const Bytes& bytes) { return std::string(bytes.begin(), bytes.end()); }

}  // namespace

TEST(BinaryObjectListTest, SaveFileWritesWhatLoadFileGivesBack) {
  TempDir dir;
  writeFile(dir.file("abc"), "abc");
  R_BinaryObjectList list;
  list.setDescription("d");
  ASSERT_TRUE(list.add(dir.file("abc").c_str(), "a.txt"));
  EXPECT_FALSE(list.add(dir.file("missing").c_str(), "b.txt"));
  ASSERT_TRUE(list.saveFile(dir.file("list").c_str()));
  EXPECT_EQ(asText(bytesOf(kOneObjectFile)), readFile(dir.file("list")));
  R_BinaryObjectList again;
  ASSERT_TRUE(again.loadFile(dir.file("list").c_str()));
  ASSERT_EQ(1, again.getCount());
  EXPECT_STREQ("a.txt", again.getName(0).get());
  EXPECT_STREQ("d", again.getDescription().get());
  ASSERT_TRUE(again.saveObject(0, dir.file("a.txt").c_str()));
  EXPECT_EQ("abc", readFile(dir.file("a.txt")));
}

TEST(BinaryObjectListTest, ACutFileFailsAtEveryLengthAndAWrongTypeMagicOrChecksumFails) {
  TempDir dir;
  const Bytes bytes = bytesOf(kOneObjectFile);
  for (size_t cut = 0; cut < bytes.size(); ++cut) {
    SCOPED_TRACE(cut);
    writeFile(dir.file("cut"), asText(Bytes(bytes.begin(), bytes.begin() + static_cast<long>(cut))));
    EXPECT_FALSE(R_BinaryObjectList().loadFile(dir.file("cut").c_str()));
  }
  EXPECT_FALSE(R_BinaryObjectList().loadFile(dir.file("missing").c_str()));
  const struct { size_t at; unsigned char byte; int objects_read; } rows[] = {
      {0, 0x99, 0}, {2, 0x41, 0} /* first magic: no object is read */, {41, 0x41, 1} /* last magic */,
      {30, 0xEF, 1} /* the object's checksum */,
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.at);
    Bytes damaged = bytes;
    damaged[row.at] = row.byte;
    writeFile(dir.file("bad"), asText(damaged));
    R_BinaryObjectList list;
    EXPECT_FALSE(list.loadFile(dir.file("bad").c_str()));
    EXPECT_EQ(row.objects_read, list.getCount());
  }
}
