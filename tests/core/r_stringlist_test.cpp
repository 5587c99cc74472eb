#include "core/r_stringlist.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string> wordsOf(const R_StringList& list) {
  std::vector<std::string> words;
  for (int i = 0; i < list.getCount(); ++i) words.push_back(list[i]);
  return words;
}

}  // namespace

TEST(StringListTest, SplitsAtControlBytesAndBlanksWithoutEmptyWords) {
  const struct {
    const char* text;
    std::vector<std::string> words;
  } rows[] = {
      {"  alpha\tbeta  ", {"alpha", "beta"}},
      {"", {}},
      {"   \t\n", {}},
      {"one", {"one"}},
      {"a\x01" "b\x1F" "c d", {"a", "b", "c", "d"}},
      {"\xC8" "esk\xE1 \xA0rep\x7F", {"\xC8" "esk\xE1", "\xA0rep\x7F"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    R_StringList list(row.text);
    EXPECT_EQ(row.words, wordsOf(list));
  }
}

TEST(StringListTest, GetAndIndexGiveTheSameWord) {
  R_StringList list("x yz");
  ASSERT_EQ(2, list.getCount());
  EXPECT_STREQ("yz", list.get(1));
  EXPECT_EQ(list.get(1), list[1]);
}
