#include "core/r_binaryobject.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/stored_bytes.h"
#include "tests/support/test_files.h"

namespace {

const char kAbcBlock[] = "99 01 05 00 61 2E 74 78 74 02 03 00 00 00 02 EE 7E 1B 00 61 62 63";

std::string dataOf(const R_BinaryObject& object) {
  return std::string(reinterpret_cast<const char*>(object.getData()), static_cast<size_t>(object.getLength()));
}

}  // namespace

TEST(BinaryObjectTest, LoadFileTakesTheWholeFileWithItsChecksumAndSavesAsABlock) {
  TempDir dir;
  writeFile(dir.file("abc"), "abc");
  writeFile(dir.file("empty"), "");
  R_BinaryObject object;
  EXPECT_FALSE(object.loadFile(dir.file("missing").c_str(), "x"));
  EXPECT_TRUE(object.isEmpty());
  EXPECT_FALSE(object.loadFile(dir.file("empty").c_str(), "x"));
  EXPECT_TRUE(object.isEmpty());
  ASSERT_TRUE(object.loadFile(dir.file("abc").c_str(), "a.txt"));
  EXPECT_EQ("abc", dataOf(object));
  EXPECT_STREQ("a.txt", object.getTargetName().get());
  EXPECT_EQ(kAbcBlock, hexOf(savedBytes(object)));
  EXPECT_EQ(bytesOf(kAbcBlock), reloadAndSave<R_BinaryObject>(bytesOf(kAbcBlock)));
  expectEveryCutFails<R_BinaryObject>(kAbcBlock, [](const R_BinaryObject& o) { return o.isEmpty(); });
}

TEST(BinaryObjectTest, SaveFileWritesBackALargeFileUnchanged) {
  TempDir dir;
  std::string bytes;
  for (int i = 0; i < 200000; ++i) bytes += static_cast<char>((i * 31 + i / 256) & 0xFF);
  writeFile(dir.file("in"), bytes);
  R_BinaryObject object;
  ASSERT_TRUE(object.loadFile(dir.file("in").c_str(), "big.bmp"));
  ASSERT_TRUE(object.saveFile(dir.file("out").c_str()));
  EXPECT_EQ(bytes, readFile(dir.file("out")));
  EXPECT_FALSE(object.saveFile(dir.file("no/such/dir").c_str()));
}

TEST(BinaryObjectTest, AWrongTypeOrChecksumFailsTheLoad) {
  R_BinaryObject object;
  Bytes bytes = bytesOf(kAbcBlock);
  bytes[0] = 154;
  EXPECT_FALSE(loadFrom(bytes, &object));
  bytes = bytesOf(kAbcBlock);
  bytes[15] = 0xEF;
  EXPECT_FALSE(loadFrom(bytes, &object));
  EXPECT_EQ("abc", dataOf(object)) << "the bytes are loaded all the same";
}

TEST(BinaryObjectTest, ANonPositiveLengthEndsTheBlockWithoutBytesAndAHugeOneFails) {
  const struct { const char* length; bool ok; int next; } rows[] = {
      {"00 00 00 00", true, 0x55}, {"FF FF FF FF", true, 0x55}, {"FF FF FF 7F", false, -1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.length);
    R_BinaryObject object;
    int next = 0;
    Bytes bytes = bytesOf(std::string("99 01 00 00 02 ") + row.length + " 02 00 00 00 00 55");
    EXPECT_EQ(row.ok, loadFrom(bytes, &object, &next));
    EXPECT_TRUE(object.isEmpty());
    EXPECT_EQ(row.next, next);
  }
}
