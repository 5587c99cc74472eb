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

// Identifiers "AB" and "ab" from a stored file, then 38 more: they are taken
// as they are, and the look-up finds the first of an equal pair.
TEST(FileStatisticsTest, StoredIdentifiersAreTakenAsTheyAre) {
  std::string hex = "05 02 28 00 00 00 02 01 00 00 00 02 02 00 00 00 01 01 00 66 01 01 00 63 20 01 02 D3 07 "
                    "01 02 00 41 42 01 02 00 61 62 ";
  for (int i = 0; i < 38; ++i) hex += hexOf(savedBytes(R_String(letterName(i).c_str()))) + " ";
  R_FileStatistics statistics;
  ASSERT_TRUE(reloads(hex, [&](R_InputStream& stream, bool* ok) {
    statistics.load(stream, ok);
    return Bytes();
  }));
  EXPECT_EQ(hex, hexOf(savedBytes(statistics)) + " ");
  EXPECT_EQ(1, statistics.getRefCount());
  EXPECT_EQ(2, statistics.getTextCount());
  EXPECT_STREQ("ab", statistics.getVarName(1));
  EXPECT_EQ(0, statistics.getVarIndex("ab"));
  EXPECT_EQ(39, statistics.getVarIndex(letterName(37).c_str()));
  EXPECT_EQ("<info><filename>f</filename><copyright>c</copyright></info>",
            xmlWrittenBy([&](R_XMLTextOutput& out) { statistics.saveXML(out); }));
}
