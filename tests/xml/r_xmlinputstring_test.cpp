#include "xml/r_xmlinputstring.h"

#include <gtest/gtest.h>

TEST(XMLInputStringTest, AStringEndsAtItsTerminatorAndCountsNoLines) {
  R_XMLInputString input("a\n");
  EXPECT_EQ('a', input.getChar());
  EXPECT_EQ('\n', input.getChar());
  EXPECT_EQ(0, input.getLine());
  EXPECT_FALSE(input.canRead());
  EXPECT_EQ(0, input.getChar());
  EXPECT_FALSE(R_XMLInputString(nullptr).canRead());
}
