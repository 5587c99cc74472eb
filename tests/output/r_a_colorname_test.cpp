#include "output/r_a_colorname.h"

#include <gtest/gtest.h>

#include <string>

// Names without regard to case, grey levels, hex colours; an unknown name or
// a short hex colour leaves the values alone.
TEST(ColorNameTest, ResolvesNamesAndHexColoursAndLeavesUnknownOnesAlone) {
  const struct {
    const char* name;
    const char* rgb;
  } rows[] = {
      {"red", "255 0 0"},          {"RED", "255 0 0"},          {"#ff8000", "255 128 0"},   {"#FF8000x", "255 128 0"},
      {"#gg0000", "0 0 0"},        {"#1A2b3C", "26 43 60"},     {"gray", "190 190 190"},    {"grey86", "219 219 219"},
      {"grey50", "127 127 127"},   {"gray90", "229 229 229"},   {"grey100", "255 255 255"}, {"gray0", "0 0 0"},
      {"grey11", "28 28 28"},      {"green", "0 255 0"},        {"maroon", "176 48 96"},    {"purple", "160 32 240"},
      {"navyblue", "0 0 128"},     {"DarkSlateBlue", "72 61 139"}, {"lightslateblue", "132 112 255"},
      {"thistle4", "139 123 139"}, {"lightgoldenrodyellow", "250 250 210"}, {"snow1", "255 250 250"},
      {"#ff80", "no"}, {"#", "no"}, {"", "no"}, {"grey101", "no"}, {"snow5", "no"}, {"dark slate blue", "no"},
      {"redd", "no"}, {"web gray", "no"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    int r = -1, g = -2, b = -3;
    const bool known = resolveColorName(row.name, &r, &g, &b);
    EXPECT_EQ(row.rgb, known ? std::to_string(r) + " " + std::to_string(g) + " " + std::to_string(b)
                             : "no" + std::string(r == -1 && g == -2 && b == -3 ? "" : " but changed"));
  }
}
