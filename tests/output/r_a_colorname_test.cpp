#include "output/r_a_colorname.h"

#include <gtest/gtest.h>


namespace {

TEST(ColorNameTest, ResolvesNamesWithoutRegardToCaseAndHexColours) {
  struct Row {
    const char* name;
    int r, g, b;
  } rows[] = {
      {"red", 255, 0, 0},         {"RED", 255, 0, 0},          {"Red", 255, 0, 0},
      {"#ff8000", 255, 128, 0},   {"#FF8000x", 255, 128, 0},   {"#gg0000", 0, 0, 0},
      {"#1A2b3C", 26, 43, 60},    {"gray", 190, 190, 190},     {"grey86", 219, 219, 219},
      {"grey50", 127, 127, 127},  {"gray90", 229, 229, 229},   {"grey100", 255, 255, 255},
      {"gray0", 0, 0, 0},         {"grey11", 28, 28, 28},      {"green", 0, 255, 0},
      {"maroon", 176, 48, 96},    {"purple", 160, 32, 240},    {"navyblue", 0, 0, 128},
      {"DarkSlateBlue", 72, 61, 139}, {"lightslateblue", 132, 112, 255}, {"thistle4", 139, 123, 139},
      {"lightgoldenrodyellow", 250, 250, 210}, {"snow1", 255, 250, 250},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    int r = -1, g = -1, b = -1;
    ASSERT_TRUE(resolveColorName(row.name, &r, &g, &b));
    EXPECT_EQ(row.r, r);
    EXPECT_EQ(row.g, g);
    EXPECT_EQ(row.b, b);
  }
}

TEST(ColorNameTest, UnknownNamesAndShortHexColoursLeaveTheValuesAlone) {
  for (const char* name : {"#ff80", "#", "", "grey101", "snow5", "dark slate blue", "redd", "web gray"}) {
    SCOPED_TRACE(name);
    int r = -1, g = -2, b = -3;
    EXPECT_FALSE(resolveColorName(name, &r, &g, &b));
    EXPECT_EQ(-1, r);
    EXPECT_EQ(-2, g);
    EXPECT_EQ(-3, b);
  }
}

}  // namespace
