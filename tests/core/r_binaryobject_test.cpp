// R_BinaryObject, a file carried inside a stored block, and
// R_BinaryObjectList, a file of such blocks.
#include "core/r_binaryobject.h"

#include <gtest/gtest.h>

#include <string>

#include "core/r_binaryobjectlist.h"
#include "tests/support/stored_bytes.h"
#include "tests/support/test_files.h"

namespace {

// The object "a.txt" holding abc: type, version, name, length, checksum, bytes.
const char kAbcBlock[] = "99 01 05 00 61 2E 74 78 74 02 03 00 00 00 02 EE 7E 1B 00 61 62 63";
// A list of that object described as "d": type, magic, count, description,
// the object, magic.
const std::string kOneObjectFile =
    std::string("9A 02 40 30 20 10 02 01 00 00 00 01 01 00 64 ") + kAbcBlock + " 02 40 30 20 10";

std::string asText(const Bytes& bytes) { return std::string(bytes.begin(), bytes.end()); }

}  // namespace

TEST(BinaryObjectTest, LoadFileTakesTheWholeFileWithItsChecksumAndSavesAsABlock) {
  TempDir dir;
  std::string big;
  for (int i = 0; i < 200000; ++i) big += static_cast<char>((i * 31 + i / 256) & 0xFF);
  writeFile(dir.file("abc"), "abc");
  writeFile(dir.file("empty"), "");
  writeFile(dir.file("big"), big);
  R_BinaryObject object;
  EXPECT_FALSE(object.loadFile(dir.file("missing").c_str(), "x") || object.loadFile(dir.file("empty").c_str(), "x"));
  EXPECT_TRUE(object.isEmpty());
  ASSERT_TRUE(object.loadFile(dir.file("abc").c_str(), "a.txt"));
  EXPECT_EQ(kAbcBlock, hexOf(savedBytes(object)));
  EXPECT_EQ(bytesOf(kAbcBlock), reloadAndSave<R_BinaryObject>(bytesOf(kAbcBlock)));
  expectEveryCutFails<R_BinaryObject>(kAbcBlock, [](const R_BinaryObject& o) { return o.isEmpty(); });
  ASSERT_TRUE(object.loadFile(dir.file("big").c_str(), "big.bmp"));
  ASSERT_TRUE(object.saveFile(dir.file("out").c_str()));
  EXPECT_EQ(big, readFile(dir.file("out")));
  EXPECT_FALSE(object.saveFile(dir.file("no/such/dir").c_str()));
}

TEST(BinaryObjectTest, AWrongTypeOrChecksumFailsAndANonPositiveLengthEndsTheBlockEmpty) {
  R_BinaryObject object;
  for (size_t at : {0, 15}) {
    Bytes bytes = bytesOf(kAbcBlock);
    bytes[at] ^= 1;
    EXPECT_FALSE(loadFrom(bytes, &object)) << at;
  }
  const struct { const char* length; bool ok; int next; } rows[] = {
      {"00 00 00 00", true, 0x55}, {"FF FF FF FF", true, 0x55}, {"FF FF FF 7F", false, -1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.length);
    R_BinaryObject fresh;
    int next = 0;
    Bytes bytes = bytesOf(std::string("99 01 00 00 02 ") + row.length + " 02 00 00 00 00 55");
    EXPECT_EQ(row.ok, loadFrom(bytes, &fresh, &next));
    EXPECT_TRUE(fresh.isEmpty());
    EXPECT_EQ(row.next, next);
  }
}

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
  EXPECT_EQ("a.txt d", std::string(again.getName(0).get()) + " " + again.getDescription().get());
  ASSERT_TRUE(again.saveObject(0, dir.file("a.txt").c_str()));
  EXPECT_EQ("abc", readFile(dir.file("a.txt")));
}

TEST(BinaryObjectListTest, ACutFileFailsAtEveryLengthAndAWrongTypeMagicOrChecksumFails) {
  TempDir dir;
  const Bytes bytes = bytesOf(kOneObjectFile);
  for (size_t cut = 0; cut < bytes.size(); ++cut) {
    writeFile(dir.file("cut"), asText(Bytes(bytes.begin(), bytes.begin() + static_cast<long>(cut))));
    EXPECT_FALSE(R_BinaryObjectList().loadFile(dir.file("cut").c_str())) << cut;
  }
  EXPECT_FALSE(R_BinaryObjectList().loadFile(dir.file("missing").c_str()));
  const struct { size_t at; int objects_read; } rows[] = {
      {0, 0}, {2, 0} /* first magic: no object is read */, {41, 1} /* last magic */, {30, 1} /* checksum */,
  };
  for (const auto& row : rows) {
    Bytes damaged = bytes;
    damaged[row.at] ^= 1;
    writeFile(dir.file("bad"), asText(damaged));
    R_BinaryObjectList list;
    EXPECT_FALSE(list.loadFile(dir.file("bad").c_str())) << row.at;
    EXPECT_EQ(row.objects_read, list.getCount()) << row.at;
  }
}
