// The URL template: expansion of its places and its limits.
#include "page/r_a_encodeurl.h"

#include <gtest/gtest.h>

#include <string>

TEST(EncodeURLTest, ExpandsThePlacesOfTheTemplate) {
  struct Row {
    std::string pattern;
    std::string expected;
    const char* used;  // isUsed for indexes 0 to 4
  } rows[] = {
      {"show?p=$0&t=$1", "show?p=P0&t=P1", "11000"},
      {"$$0 costs $4$", "$0 costs P4", "10001"},
      {"$9x$5$a", "9x5a", "00000"},
      {"$3$3$2", "P3P3P2", "00110"},
      {std::string(1100, 'a'), std::string(1024, 'a'), "00000"},
      {std::string(20, '$') + "$0" + std::string(20, '$'), std::string(10, '$') + "P0" + std::string(10, '$'), "10000"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.pattern);
    R_A_EncodeURL url(row.pattern.c_str());
    for (int i = 0; i < R_A_EncodeURLParamCount; i++) {
      url.setParam(i, ("P" + std::to_string(i)).c_str());
      EXPECT_EQ(row.used[i] == '1', url.isUsed(i)) << i;
    }
    EXPECT_EQ(row.expected, url.getResult());
  }
}

TEST(EncodeURLTest, CutsParametersAndTheResultToTheirLimits) {
  R_A_EncodeURL url("$0$0$0$0$0$0$0$0$0$0$0$0$0$0$0$0$0$0$0$0");
  url.setParam(0, std::string(100, 'p').c_str());
  EXPECT_EQ(std::string(1024, 'p'), url.getResult());
  url.setParam(0, nullptr);
  EXPECT_STREQ("", url.getResult());
}
