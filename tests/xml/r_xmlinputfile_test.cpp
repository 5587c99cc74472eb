#include "xml/r_xmlinputfile.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/test_files.h"

TEST(XMLInputFileTest, TheEndShowsAfterOneReadPastItAsByte255) {
  TempDir dir;
  writeFile(dir.file("in.txt"), std::string("a\n\xFF\0", 4));
  R_XMLInputFile input(dir.file("in.txt").c_str());
  const int expected[] = {'a', '\n', 255, 0, 255};
  const int lines[] = {1, 1, 2, 2, 2};
  for (int i = 0; i < 5; ++i) {
    SCOPED_TRACE(i);
    ASSERT_TRUE(input.canRead());
    EXPECT_EQ(lines[i], input.getLine());
    EXPECT_EQ(expected[i], input.getChar());
  }
  EXPECT_FALSE(input.canRead());
}

TEST(XMLInputFileTest, AnEmptyFileGivesOneByteAndAMissingOneNone) {
  TempDir dir;
  writeFile(dir.file("empty.txt"), "");
  R_XMLInputFile empty(dir.file("empty.txt").c_str());
  ASSERT_TRUE(empty.canRead());
  EXPECT_EQ(255, empty.getChar());
  EXPECT_FALSE(empty.canRead());
  EXPECT_FALSE(R_XMLInputFile(dir.file("missing.txt").c_str()).canRead());
  EXPECT_FALSE(R_XMLInputFile("").canRead());
}

TEST(XMLInputFileTest, LongFilesReadAcrossBlocks) {
  TempDir dir;
  std::string bytes;
  for (int i = 0; i < 200000; ++i) bytes += static_cast<char>(i % 7 == 0 ? '\n' : 'a' + i % 26);
  writeFile(dir.file("long.txt"), bytes);
  R_XMLInputFile input(dir.file("long.txt").c_str());
  std::string read;
  while (input.canRead()) read += static_cast<char>(input.getChar());
  EXPECT_EQ(bytes + "\xFF", read);
  EXPECT_EQ(1 + (200000 + 6) / 7, input.getLine());
}
