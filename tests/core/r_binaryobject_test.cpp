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

TEST(BinaryObjectTest, LoadFileTakesTheWholeFileWithItsChecksum) {
  TempDir dir;
  writeFile(dir.file("abc"), "abc");
  R_BinaryObject object;
  ASSERT_TRUE(object.loadFile(dir.file("abc").c_str(), "a.txt"));
  EXPECT_EQ(3, object.getLength());
  EXPECT_EQ(0x1B7EEE, object.getChecksum());
  EXPECT_EQ("abc", dataOf(object));
  EXPECT_STREQ("a.txt", object.getTargetName().get());
  EXPECT_EQ(kAbcBlock, hexOf(savedBytes(object)));
}

TEST(BinaryObjectTest, AMissingOrEmptyFileLeavesTheObjectEmpty) {
  TempDir dir;
  writeFile(dir.file("empty"), "");
  R_BinaryObject object;
  EXPECT_FALSE(object.loadFile(dir.file("missing").c_str(), "x"));
  EXPECT_TRUE(object.isEmpty());
  EXPECT_FALSE(object.loadFile(dir.file("empty").c_str(), "x"));
  EXPECT_TRUE(object.isEmpty());
  EXPECT_EQ(0, object.getLength());
}

TEST(BinaryObjectTest, SaveFileWritesBackALargeFileUnchanged) {
  TempDir dir;
  std::string bytes;
  for (int i = 0; i < 200000; ++i) bytes += static_cast<char>((i * 31 + i / 256) & 0xFF);
  writeFile(dir.file("in"), bytes);
  R_BinaryObject object;
  ASSERT_TRUE(object.loadFile(dir.file("in").c_str(), "big.bmp"));
  EXPECT_EQ(200000, object.getLength());
  ASSERT_TRUE(object.saveFile(dir.file("out").c_str()));
  EXPECT_EQ(bytes, readFile(dir.file("out")));
  EXPECT_FALSE(object.saveFile(dir.file("no/such/dir").c_str()));
}

TEST(BinaryObjectTest, StoredFormSurvivesSaveLoadSave) {
  Bytes bytes = bytesOf(kAbcBlock);
  EXPECT_EQ(bytes, reloadAndSave<R_BinaryObject>(bytes));
}

TEST(BinaryObjectTest, ACutOrMistypedBlockFails) {
  forEachTruncation<R_BinaryObject>(bytesOf(kAbcBlock), [](const R_BinaryObject& object, bool ok, R_InputStream&) {
    EXPECT_FALSE(ok);
    EXPECT_TRUE(object.isEmpty());
  });
  Bytes bytes = bytesOf(kAbcBlock);
  bytes[0] = 154;
  R_BufferInputStream in(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  R_BinaryObject object;
  object.load(in, &ok);
  EXPECT_FALSE(ok);
}

TEST(BinaryObjectTest, AWrongChecksumLoadsTheBytesAndFails) {
  Bytes bytes = bytesOf(kAbcBlock);
  bytes[15] = 0xEF;
  R_BufferInputStream in(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  R_BinaryObject object;
  object.load(in, &ok);
  EXPECT_FALSE(ok);
  EXPECT_EQ("abc", dataOf(object));
}

TEST(BinaryObjectTest, ANonPositiveLengthEndsTheBlockWithoutBytes) {
  for (const char* length : {"00 00 00 00", "FF FF FF FF"}) {
    SCOPED_TRACE(length);
    Bytes bytes = bytesOf(std::string("99 01 00 00 02 ") + length + " 02 00 00 00 00 55");
    R_BufferInputStream in(bytes.data(), static_cast<int>(bytes.size()));
    bool ok = true;
    R_BinaryObject object;
    object.load(in, &ok);
    EXPECT_TRUE(ok);
    EXPECT_TRUE(object.isEmpty());
    EXPECT_EQ(0x55, in.readByte());
  }
}

TEST(BinaryObjectTest, AHugeDamagedLengthFailsOnTheBytesThereAre) {
  Bytes bytes = bytesOf("99 01 00 00 02 FF FF FF 7F 02 00 00 00 00 61 62 63");
  R_BufferInputStream in(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  R_BinaryObject object;
  object.load(in, &ok);
  EXPECT_FALSE(ok);
  EXPECT_TRUE(object.isEmpty());
}
