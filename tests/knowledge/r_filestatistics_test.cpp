#include "knowledge/r_filestatistics.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/knowledge/knowledge_test_support.h"

namespace {

// A name of letters only for the number i: "V" and i in base 26.
std::string letterName(int i) {
  std::string name = "V";
  do {
    name += static_cast<char>('A' + i % 26);
    i /= 26;
  } while (i > 0);
  return name;
}

}  // namespace

TEST(FileStatisticsTest, IsNewValidNameWantsTwoOrMoreLettersOrUnderscoresNotYetTaken) {
  NamedStatistics statistics({"HEIGHT"});
  const struct { const char* name; bool valid; } rows[] = {
      {"AB", true},      {"a_b", true},  {"__", true},   {"A", false},        {"", false},
      {"A1", false},     {"AB C", false}, {"A-B", false}, {"\xC8\xC8", false}, {"height", false},
      {"HEIGHTS", true},
  };
  for (const auto& row : rows) EXPECT_EQ(row.valid, statistics.isNewValidName(row.name)) << row.name;
  EXPECT_FALSE(statistics.isNewValidName(nullptr));
}

TEST(FileStatisticsTest, AddVarStoresUpperCaseAndTheLookUpIgnoresCaseAmongManyNames) {
  R_FileStatistics statistics;
  EXPECT_TRUE(statistics.addVar("Father_Ht"));
  EXPECT_FALSE(statistics.addVar("FATHER_HT"));
  EXPECT_STREQ("FATHER_HT", statistics.getVarName(0));
  for (const char* unknown : {"FATHER", "FATHER_HT ", "", static_cast<const char*>(nullptr)})
    EXPECT_EQ(-1, statistics.getVarIndex(unknown));
  const int count = 20000;
  for (int i = 0; i < count; ++i) ASSERT_TRUE(statistics.addVar(letterName(i).c_str())) << i;
  for (int i = 0; i < count; ++i) {
    std::string lower = letterName(i);
    for (char& c : lower) c = static_cast<char>(c + 32);
    ASSERT_EQ(i + 1, statistics.getVarIndex(lower.c_str())) << letterName(i);
  }
  EXPECT_EQ(-1, statistics.getVarIndex((letterName(count) + "Q").c_str()));
}
