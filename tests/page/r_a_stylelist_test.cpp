// Style look-ups over a fixture list and two small ones.
#include "page/r_a_stylelist.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/test_files.h"

TEST(StyleListTest, EntriesTakeThePendingLimitsAndFindTheFirstThatHoldsTheSize) {
  R_A_StyleList styles(testData("page/styles.txt").c_str());
  std::string listed;
  for (int i = 0; i < styles.getCount(); i++) listed += std::string(styles.getName(i)) + "=" + styles.getValue(i) + "|";
  EXPECT_EQ("wide=wide.css|narrow=narrow.css|middle=middle.css  ; with what follows|plain=plain.css|", listed);
  const struct {
    int size;
    int expected;
  } kRows[] = {{5000, 0}, {1200, 0}, {1199, 2}, {800, 2}, {799, 1}, {-3, 1}};
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.size);
    EXPECT_EQ(row.expected, styles.find(row.size));
  }
}

TEST(StyleListTest, TwoEntriesSplitAt1000WhateverTheirLimitsAndNoneFittingGives0) {
  TempDir dir;
  writeFile(dir.file("two.txt"), "min-size = 5000\nbig = b\nmax-size = 10\nsmall = s\n");
  R_A_StyleList two(dir.file("two.txt").c_str());
  EXPECT_EQ(0, two.find(1000));
  EXPECT_EQ(1, two.find(999));
  EXPECT_EQ(0, two.find(20000));
  writeFile(dir.file("three.txt"), "max-size=10\na=1\nmax-size=20\nb=2\nmin-size=100\nc=3\n");
  R_A_StyleList three(dir.file("three.txt").c_str());
  EXPECT_EQ(1, three.find(15));
  EXPECT_EQ(0, three.find(50));
  R_A_StyleList missing(dir.file("missing.txt").c_str());
  EXPECT_EQ(0, missing.getCount());
  EXPECT_EQ(0, missing.find(500));
}
