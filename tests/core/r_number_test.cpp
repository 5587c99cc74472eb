#include "core/r_number.h"

#include <gtest/gtest.h>

TEST(NumberTest, QuestionMarkIsTheTextOfTheUndefinedNumber) {
  R_Number n;
  EXPECT_TRUE(n.parse("?"));
  EXPECT_FALSE(n.isDefined());
  char buffer[64];
  n.toText(buffer);
  EXPECT_STREQ("?", buffer);
}
