#include "core/r_fileinputstream.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/test_files.h"

TEST(FileInputStreamTest, ReadsEveryByteAcrossBlockBoundariesThenFailsAndAMissingFileFailsAtOnce) {
  TempDir dir;
  std::string bytes;
  for (int i = 0; i < 70000; ++i) bytes += static_cast<char>((i * 7) & 0xFF);
  writeFile(dir.file("data.bin"), bytes);
  R_FileInputStream stream(dir.file("data.bin").c_str());
  std::string read;
  for (int c = stream.readByte(); c >= 0; c = stream.readByte()) read += static_cast<char>(c);
  EXPECT_EQ(bytes, read);
  EXPECT_FALSE(stream.isOK());
  EXPECT_FALSE(R_FileInputStream(dir.file("missing.bin").c_str()).isOK());
  writeFile(dir.file("empty.bin"), "");
  R_FileInputStream empty(dir.file("empty.bin").c_str());
  EXPECT_TRUE(empty.isOK());
  EXPECT_EQ(0, empty.readInt32());
  EXPECT_FALSE(empty.isOK());
}
