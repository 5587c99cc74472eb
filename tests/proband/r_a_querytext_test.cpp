#include "proband/r_a_querytext.h"

#include <gtest/gtest.h>

#include <string>


TEST(QueryTextTest, ValuesKeepOnlyTheSafeBytes) {
  std::string all;
  for (int c = 1; c < 256; ++c) all += static_cast<char>(c);
  std::string expected;
  const std::string safe = "!#$()*,-./0123456789;@ABCDEFGHIJKLMNOPQRSTUVWXYZ[]_abcdefghijklmnopqrstuvwxyz{}";
  for (int c = 1; c < 256; ++c) {
    char hex[4];
    snprintf(hex, sizeof(hex), "%%%02X", c);
    if (c == ' ')
      expected += '+';
    else if (safe.find(static_cast<char>(c)) != std::string::npos)
      expected += static_cast<char>(c);
    else
      expected += hex;
  }
  char buffer[2048];
  R_A_QueryText query(buffer, sizeof(buffer));
  query.add("v", all.c_str());
  EXPECT_EQ("v=" + expected + "&", std::string(buffer));
}

TEST(QueryTextTest, AValueIsNeverCutInsideAnEscape) {
  struct Row {
    int size;
    const char* text;
  } rows[] = {{9, "n=a%E1&"}, {8, "n=a%E1&"}, {7, "n=a%E1"}, {6, "n=a&"}, {5, "n=&"}, {4, "n=&"}, {3, "n="}, {1, ""}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.size);
    char buffer[16];
    R_A_QueryText query(buffer, row.size);
    query.add("n", "a\xE1\xE1");
    EXPECT_STREQ(row.text, buffer);
  }
}
