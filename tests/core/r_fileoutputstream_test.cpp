#include "core/r_fileoutputstream.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/test_files.h"

TEST(FileOutputStreamTest, WritesTheBytesAndReplacesAnOldFileAndOneThatDoesNotOpenIsHarmless) {
  TempDir dir;
  std::string path = dir.file("out.bin");
  writeFile(path, "old content that is longer");
  R_FileOutputStream out(path.c_str());
  ASSERT_TRUE(out.isOK());
  out.put(0);
  out.writeWord(0x0A0D);
  out.put(0xFF);
  EXPECT_TRUE(out.close());
  EXPECT_EQ(std::string("\x00\x0D\x0A\xFF", 4), readFile(path));
  R_FileOutputStream nowhere(dir.file("no/such/dir/out.bin").c_str());
  EXPECT_FALSE(nowhere.isOK());
  nowhere.put(1);
  nowhere.writeDouble(2.0);
  EXPECT_FALSE(nowhere.close());
  EXPECT_FALSE(R_FileOutputStream("").isOK());
}
