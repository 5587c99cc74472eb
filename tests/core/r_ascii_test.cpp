#include "core/r_ascii.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

TEST(AsciiTest, NormalizeWhitespaceSqueezesRunsAndTrimsBothEnds) {
  const struct { const char* text; const char* expected; } rows[] = {
      {"  a   b \n", "a b"},   {"", ""},          {" \t\r\n ", ""},          {"a", "a"},
      {"a\x01" "b", "a b"},    {"a\x20\x1F", "a"}, {"\xA0x\xA0", "\xA0x\xA0"}, {"x \xFF y", "x \xFF y"},
      {"\n\nab\tcd\n", "ab cd"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    std::string text = row.text;
    int length = R_normalizeWhitespace(&text[0]);
    EXPECT_STREQ(row.expected, text.c_str());
    EXPECT_EQ(static_cast<int>(strlen(row.expected)), length);
  }
}

TEST(AsciiTest, StricmpFoldsAsciiLettersOnlyAndSortsHighBytesBehindThem) {
  const struct { const char* a; const char* b; int expected; } rows[] = {
      {"abc", "ABC", 0},           {"a", "B", -1},          {"Zebra", "apple", 1},
      {"", "a", -1},               {"ab", "a", 1},          {"\xC8", "z", 1},
      {"\xC8", "Z", 1},            {"\xC8", "\xE8", -1},    {"\xE8", "\xC8", 1},
      {"\xC8" "a", "\xC8" "A", 0}, {"a\x80", "a\x7F", 1},   {"", "", 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.a) + " / " + row.b);
    int result = R_stricmp(row.a, row.b);
    EXPECT_EQ(row.expected, (result > 0) - (result < 0));
  }
}
