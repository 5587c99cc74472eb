#include "knowledge/r_filestatistics.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/knowledge/knowledge_test_support.h"

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

TEST(FileStatisticsTest, AddVarStoresUpperCaseAndTheLookUpIgnoresCase) {
  R_FileStatistics statistics;
  EXPECT_TRUE(statistics.addVar("Father_Ht"));
  EXPECT_FALSE(statistics.addVar("FATHER_HT"));
  EXPECT_STREQ("FATHER_HT", statistics.getVarName(0));
  for (const char* unknown : {"FATHER", "FATHER_HT ", "", static_cast<const char*>(nullptr)})
    EXPECT_EQ(-1, statistics.getVarIndex(unknown));
  EXPECT_EQ(0, statistics.getVarIndex("father_HT"));
}
