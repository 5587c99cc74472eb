#include "core/r_fileinputstream.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/test_files.h"

TEST(FileInputStreamTest, AMissingFileFailsAtOnce) {
  TempDir dir;
  R_FileInputStream stream(dir.file("missing.bin").c_str());
  EXPECT_FALSE(stream.isOK());
  EXPECT_EQ(-1, stream.readByte());
}

TEST(FileInputStreamTest, ReadsEveryByteAcrossBlockBoundariesThenFails) {
  TempDir dir;
  std::string bytes;
  for (int i = 0; i < 70000; ++i) bytes += static_cast<char>((i * 7) & 0xFF);
  writeFile(dir.file("data.bin"), bytes);
  R_FileInputStream stream(dir.file("data.bin").c_str());
  for (int i = 0; i < 70000; ++i) {
    int c = stream.readByte();
    if (c != ((i * 7) & 0xFF)) {
      ADD_FAILURE() << "byte " << i << " read as " << c;
      return;
    }
  }
  EXPECT_TRUE(stream.isOK());
  EXPECT_EQ(-1, stream.readByte());
  EXPECT_FALSE(stream.isOK());
}

TEST(FileInputStreamTest, AnEmptyFileEndsAtTheFirstRead) {
  TempDir dir;
  writeFile(dir.file("empty.bin"), "");
  R_FileInputStream stream(dir.file("empty.bin").c_str());
  EXPECT_TRUE(stream.isOK());
  EXPECT_EQ(0, stream.readInt32());
  EXPECT_FALSE(stream.isOK());
}
