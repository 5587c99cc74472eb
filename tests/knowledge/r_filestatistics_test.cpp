#include "knowledge/r_filestatistics.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/knowledge/knowledge_test_support.h"
#include "tests/support/test_files.h"
#include "tests/support/xml_fakes.h"

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

std::string lowerCase(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
  }
  return text;
}

// Loads statistics from exactly `hex`; answers ok.
bool loadFromHex(R_FileStatistics& statistics, const std::string& hex) {
  Bytes bytes = bytesOf(hex);
  R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  statistics.load(stream, &ok);
  return ok;
}

// One identifier "AB", no file information, undefined date.
const char* const kStatisticsBytes =
    "05 02 01 00 00 00 02 00 00 00 00 02 00 00 00 00 01 00 00 01 00 00 20 00 00 00 00 01 02 00 41 42";
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

TEST(FileStatisticsTest, AddVarStoresUpperCaseAndRefusesWhatIsNotNewAndValid) {
  R_FileStatistics statistics;
  EXPECT_TRUE(statistics.addVar("Father_Ht"));
  EXPECT_FALSE(statistics.addVar("FATHER_HT"));
  EXPECT_FALSE(statistics.addVar("X"));
  EXPECT_TRUE(statistics.addVar("mother_ht"));
  ASSERT_EQ(2, statistics.getVarCount());
  EXPECT_STREQ("FATHER_HT", statistics.getVarName(0));
  EXPECT_STREQ("MOTHER_HT", statistics.getVarString(1));
}

TEST(FileStatisticsTest, GetVarIndexIgnoresCaseAndAnswersMinusOneForUnknownNames) {
  NamedStatistics statistics({"AGE", "FATHER_HT"});
  EXPECT_EQ(1, statistics.getVarIndex("Father_HT"));
  EXPECT_EQ(1, statistics.getVarIndex("father_ht"));
  EXPECT_EQ(0, statistics.getVarIndex("AGE"));
  EXPECT_EQ(-1, statistics.getVarIndex("FATHER"));
  EXPECT_EQ(-1, statistics.getVarIndex("FATHER_HT "));
  EXPECT_EQ(-1, statistics.getVarIndex(""));
  EXPECT_EQ(-1, statistics.getVarIndex(nullptr));
  EXPECT_TRUE(statistics.hasVar("age"));
  EXPECT_FALSE(R_FileStatistics().hasVar("AGE"));
}

TEST(FileStatisticsTest, GetVarIndexFindsEachOfManyNames) {
  R_FileStatistics statistics;
  const int count = 20000;
  for (int i = 0; i < count; ++i) ASSERT_TRUE(statistics.addVar(letterName(i).c_str())) << i;
  for (int i = 0; i < count; ++i) {
    ASSERT_EQ(i, statistics.getVarIndex(lowerCase(letterName(i)).c_str())) << letterName(i);
  }
  EXPECT_EQ(-1, statistics.getVarIndex("W"));
  EXPECT_EQ(-1, statistics.getVarIndex((letterName(count) + "Q").c_str()));
}

TEST(FileStatisticsTest, SaveXMLWritesTheInfoElement) {
  R_FileStatistics statistics;
  ASSERT_TRUE(loadFromHex(statistics, kDuplicateBytes));
  EXPECT_EQ("<info><filename>f</filename><copyright>c</copyright></info>",
            xmlWrittenBy([&](R_XMLTextOutput& out) { statistics.saveXML(out); }));
}

TEST(FileStatisticsTest, BinaryFormIsPinnedByItsBytes) {
  NamedStatistics statistics({"ab"});
  EXPECT_EQ(kStatisticsBytes, hexOf(savedBytes(statistics)));
}

TEST(FileStatisticsTest, BinaryFormLoadsAndSavesTheSameBytes) {
  for (const char* hex : {kStatisticsBytes, kDuplicateBytes}) {
    SCOPED_TRACE(hex);
    R_FileStatistics statistics;
    ASSERT_TRUE(loadFromHex(statistics, hex));
    EXPECT_EQ(hex, hexOf(savedBytes(statistics)));
  }
}

TEST(FileStatisticsTest, StoredIdentifiersAreTakenAsTheyAreAndTheFirstEqualOneIsFound) {
  R_FileStatistics statistics;
  ASSERT_TRUE(loadFromHex(statistics, kDuplicateBytes));
  EXPECT_EQ(2, statistics.getVarCount());
  EXPECT_EQ(1, statistics.getRefCount());
  EXPECT_EQ(2, statistics.getTextCount());
  EXPECT_STREQ("f", statistics.getFilename());
  EXPECT_STREQ("c", statistics.getCopyright());
  EXPECT_STREQ("ab", statistics.getVarName(1));
  EXPECT_EQ(0, statistics.getVarIndex("Ab"));
  EXPECT_EQ(0, statistics.getVarIndex("ab"));
}

TEST(FileStatisticsTest, BinaryFormCutAtAnyLengthFails) {
  for (const char* hex : {kStatisticsBytes, kDuplicateBytes}) {
    expectEveryTruncationFails(bytesOf(hex), [](R_InputStream& stream, bool* ok) {
      R_FileStatistics statistics;
      statistics.load(stream, ok);
    });
  }
}

TEST(FileStatisticsTest, BinaryFormRefusesNegativeCountsAndSurvivesHugeOnes) {
  const char* const rows[] = {
      "05 02 FF FF FF FF 02 00 00 00 00 02 00 00 00 00 01 00 00 01 00 00 20 00 00 00 00",
      "05 02 00 00 00 00 02 FF FF FF FF 02 00 00 00 00 01 00 00 01 00 00 20 00 00 00 00",
      "05 02 00 00 00 00 02 00 00 00 00 02 FF FF FF FF 01 00 00 01 00 00 20 00 00 00 00",
      "05 02 FF FF FF 7F 02 00 00 00 00 02 00 00 00 00 01 00 00 01 00 00 20 00 00 00 00 01 02 00 41 42",
  };
  for (const char* hex : rows) {
    SCOPED_TRACE(hex);
    R_FileStatistics statistics;
    EXPECT_FALSE(loadFromHex(statistics, hex));
  }
}

TEST(FileStatisticsTest, PrescanCountsAndCollectsTheNames) {
  R_FileStatistics statistics;
  CollectingReporter reporter;
  ASSERT_TRUE(statistics.prescan(testData("knowledge/minimal.xml").c_str(), &reporter));
  EXPECT_TRUE(reporter.lines().empty());
  const char* const names[] = {"AGE", "HEIGHT", "WEIGHT", "FATHER_HT", "MOTHER_HT", "TANNER_PH"};
  ASSERT_EQ(6, statistics.getVarCount());
  for (int i = 0; i < 6; ++i) EXPECT_STREQ(names[i], statistics.getVarName(i));
  EXPECT_EQ(0, statistics.getRefCount());
  EXPECT_EQ(0, statistics.getTextCount());
  EXPECT_STREQ("minimal.xml", statistics.getFilename());
  EXPECT_STREQ("Test fixture of the knowledge suites", statistics.getCopyright());
}
