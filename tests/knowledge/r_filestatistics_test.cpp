#include "knowledge/r_filestatistics.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

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

// Two identifiers "AB" and "ab", one reference, two texts, filename "f",
// copyright "c", date 1.2.2003.
const char* const kDuplicateBytes =
    "05 02 02 00 00 00 02 01 00 00 00 02 02 00 00 00 01 01 00 66 01 01 00 63 20 01 02 D3 07 "
    "01 02 00 41 42 01 02 00 61 62";

}  // namespace

TEST(FileStatisticsTest, IsNewValidNameWantsTwoOrMoreLettersOrUnderscoresNotYetTaken) {
  NamedStatistics statistics({"HEIGHT"});
  const struct {
    const char* name;
    bool valid;
  } rows[] = {
      {"AB", true},      {"a_b", true},  {"__", true},   {"A", false},        {"", false},
      {"A1", false},     {"AB C", false}, {"A-B", false}, {"\xC8\xC8", false}, {"height", false},
      {"Height", false}, {"HEIGHTS", true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.valid, statistics.isNewValidName(row.name));
  }
  EXPECT_FALSE(statistics.isNewValidName(nullptr));
}

TEST(FileStatisticsTest, AddVarStoresUpperCaseAndTheLookUpIgnoresCaseAmongManyNames) {
  R_FileStatistics statistics;
  EXPECT_FALSE(statistics.hasVar("VA"));
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
  EXPECT_TRUE(statistics.hasVar("va"));
  EXPECT_EQ(-1, statistics.getVarIndex("W"));
  EXPECT_EQ(-1, statistics.getVarIndex((letterName(count) + "Q").c_str()));
}

TEST(FileStatisticsTest, BinaryFormIsPinnedAndStoredIdentifiersAreTakenAsTheyAre) {
  // One identifier "AB", no file information, undefined date.
  expectPinnedForm("05 02 01 00 00 00 02 00 00 00 00 02 00 00 00 00 01 00 00 01 00 00 20 00 00 00 00 01 02 00 41 42",
                   savedBytes(NamedStatistics({"ab"})), reloaded<R_FileStatistics>);
  R_FileStatistics statistics;
  ASSERT_TRUE(reloads(kDuplicateBytes, [&](R_InputStream& stream, bool* ok) {
    statistics.load(stream, ok);
    return Bytes();
  }));
  expectPinnedForm(kDuplicateBytes, savedBytes(statistics), reloaded<R_FileStatistics>);
  EXPECT_EQ(1, statistics.getRefCount());
  EXPECT_EQ(2, statistics.getTextCount());
  EXPECT_STREQ("ab", statistics.getVarName(1));
  EXPECT_EQ(0, statistics.getVarIndex("ab"));  // the first equal identifier
  EXPECT_EQ("<info><filename>f</filename><copyright>c</copyright></info>",
            xmlWrittenBy([&](R_XMLTextOutput& out) { statistics.saveXML(out); }));
  // Also when the index grows past the equal pair: 40 identifiers.
  std::string many = "05 02 28 00 00 00 02 00 00 00 00 02 00 00 00 00 01 00 00 01 00 00 20 00 00 00 00 "
                     "01 02 00 41 42 01 02 00 61 62 ";
  for (int i = 0; i < 38; ++i) many += hexOf(savedBytes(R_String(letterName(i).c_str()))) + " ";
  R_FileStatistics grown;
  ASSERT_TRUE(reloads(many, [&](R_InputStream& stream, bool* ok) {
    grown.load(stream, ok);
    return Bytes();
  }));
  EXPECT_EQ(0, grown.getVarIndex("ab"));
  EXPECT_EQ(39, grown.getVarIndex(letterName(37).c_str()));
}

TEST(FileStatisticsTest, BinaryFormRefusesNegativeCountsAndSurvivesHugeOnes) {
  const char* const rows[] = {
      "05 02 FF FF FF FF 02 00 00 00 00 02 00 00 00 00 01 00 00 01 00 00 20 00 00 00 00",
      "05 02 00 00 00 00 02 FF FF FF FF 02 00 00 00 00 01 00 00 01 00 00 20 00 00 00 00",
      "05 02 00 00 00 00 02 00 00 00 00 02 FF FF FF FF 01 00 00 01 00 00 20 00 00 00 00",
      "05 02 FF FF FF 7F 02 00 00 00 00 02 00 00 00 00 01 00 00 01 00 00 20 00 00 00 00 01 02 00 41 42",
  };
  for (const char* hex : rows) EXPECT_FALSE(reloads(hex, reloaded<R_FileStatistics>)) << hex;
}
