#include "core/r_stringlist.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

TEST(StringListTest, SplitsAtControlBytesAndBlanksWithoutEmptyWords) {
  const struct { const char* text; std::vector<std::string> words; } rows[] = {
      {"  alpha\tbeta  ", {"alpha", "beta"}}, {"", {}}, {"   \t\n", {}}, {"one", {"one"}},
      {"a\x01" "b\x1F" "c d", {"a", "b", "c", "d"}},
      {"\xC8" "esk\xE1 \xA0rep\x7F", {"\xC8" "esk\xE1", "\xA0rep\x7F"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    R_StringList list(row.text);
    std::vector<std::string> words;
    for (int i = 0; i < list.getCount(); ++i) words.push_back(list[i]);
    EXPECT_EQ(row.words, words);
  }
}
