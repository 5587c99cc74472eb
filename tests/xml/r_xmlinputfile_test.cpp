#include "xml/r_xmlinputfile.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/test_files.h"

TEST(XMLInputFileTest, ReadsAcrossBlocksCountsLinesAndEndsWithOneByte255) {
  TempDir dir;
  std::string bytes = std::string("\xFF\0", 2);
  for (int i = 2; i < 200000; ++i) bytes += static_cast<char>(i % 7 == 0 ? '\n' : 'a' + i % 26);
  writeFile(dir.file("long.txt"), bytes);
  R_XMLInputFile input(dir.file("long.txt").c_str());
  std::string read;
  while (input.canRead()) read += static_cast<char>(input.getChar());
  EXPECT_EQ(bytes + "\xFF", read);
  EXPECT_EQ(1 + (200000 + 6) / 7 - 1, input.getLine());
  EXPECT_FALSE(R_XMLInputFile(dir.file("missing.txt").c_str()).canRead());
  EXPECT_FALSE(R_XMLInputFile("").canRead());
}
