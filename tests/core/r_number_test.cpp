#include "core/r_number.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <string>

#include "core/r_integer.h"
#include "tests/support/stored_bytes.h"

namespace {

struct ParseRow {
  const char* text;
  bool result;
  bool defined;
  double value;
};

void expectRow(const ParseRow& row, bool result, const R_Number& n) {
  EXPECT_EQ(row.result, result);
  ASSERT_EQ(row.defined, n.isDefined());
  if (row.defined) {
    EXPECT_DOUBLE_EQ(row.value, n.getValue());
  }
}

}  // namespace

TEST(NumberTest, QuestionMarkIsTheTextOfTheUndefinedNumber) {
  R_Number n;
  EXPECT_TRUE(n.parse("?"));
  EXPECT_FALSE(n.isDefined());
  char buffer[64];
  n.toText(buffer);
  EXPECT_STREQ("?", buffer);
}

TEST(NumberTest, ParseReadsTheNumberAtTheStartOfTheText) {
  const ParseRow rows[] = {
      {"12", true, true, 12},       {"3,5", true, true, 3.5},     {",5", true, true, 0.5},
      {".5", true, true, 0.5},      {"-2.25", true, true, -2.25}, {"12abc", true, true, 12},
      {"-", true, true, 0},         {"1e3", true, true, 1000},    {"?", true, false, 0},
      {"?junk", true, false, 0},
  };
  for (const ParseRow& row : rows) {
    SCOPED_TRACE(row.text);
    R_Number n(7.0);
    expectRow(row, n.parse(row.text), n);
  }
}

TEST(NumberTest, ParseRefusesNearMissesAndLeavesTheNumberUndefined) {
  const char* texts[] = {"", "abc", " 5", "+5", "\n5", "x?", "\t?"};
  for (const char* text : texts) {
    SCOPED_TRACE(text);
    R_Number n(7.0);
    EXPECT_FALSE(n.parse(text));
    EXPECT_FALSE(n.isDefined());
  }
}

TEST(NumberTest, ParseCutsTheTextAtSixtyFourBytes) {
  R_Number n;
  ASSERT_TRUE(n.parse(std::string(70, '9').c_str()));
  EXPECT_DOUBLE_EQ(1e64, n.getValue());
}

TEST(NumberTest, SetFromTextNormalisesWhitespaceFirst) {
  const ParseRow rows[] = {
      {" \n 5 \r\n", true, true, 5}, {"\t3,5\t", true, true, 3.5}, {" ? ", true, false, 0},
      {"", false, false, 0},         {" \n\t ", false, false, 0},  {" +5", false, false, 0},
      {"abc", false, false, 0},
  };
  for (const ParseRow& row : rows) {
    SCOPED_TRACE(row.text);
    R_Number n(7.0);
    expectRow(row, n.setFromText(row.text), n);
  }
  R_Number n(7.0);
  EXPECT_FALSE(n.setFromText(nullptr));
  EXPECT_FALSE(n.isDefined());
}

TEST(NumberTest, UndefinedIsKeptApartFromZero) {
  R_Number n;
  EXPECT_FALSE(n.isEqual(0.0));
  EXPECT_FALSE(n.getBoolOrFalse());
  n.set(0.0);
  EXPECT_TRUE(n.isEqual(0.0));
  EXPECT_FALSE(n.getBool());
  n.setBool(true);
  EXPECT_TRUE(n.isEqual(1.0));
  n.setUndefined();
  EXPECT_FALSE(n.isDefined());
  EXPECT_FALSE(n.isEqual(1.0));
}

TEST(NumberTest, GetIntTruncatesTowardsZeroAndSaturatesOutsideTheIntRange) {
  const struct {
    double value;
    int expected;
  } rows[] = {
      {2.9, 2},       {-2.9, -2},      {2147483647.5, INT_MAX}, {1e10, INT_MAX},
      {-1e10, INT_MIN}, {HUGE_VAL, INT_MAX}, {-HUGE_VAL, INT_MIN}, {std::nan(""), 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.value);
    EXPECT_EQ(row.expected, R_Number(row.value).getInt());
  }
}

TEST(NumberTest, RoundMovesHalvesUpwardsAlsoBelowZero) {
  const struct {
    double value, precision, expected;
  } rows[] = {
      {2.5, 1, 3},   {-2.5, 1, -2},        {-2.6, 1, -3},    {2.4, 1, 2},
      {17, 5, 15},   {0.125, 0.25, 0.25},  {-0.125, 0.25, 0}, {-0.375, 0.25, -0.25},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::to_string(row.value) + " by " + std::to_string(row.precision));
    R_Number n(row.value);
    n.round(row.precision);
    EXPECT_EQ(row.expected, n.getValue());
  }
}

TEST(NumberTest, TextFormsUseTheCLocaleLayout) {
  const struct {
    double value;
    const char* expected;
  } rows[] = {{2.5, "2.5"}, {-0.25, "-0.25"}, {1e20, "1e+20"}, {1234567, "1.23457e+06"}, {0.0001, "0.0001"}};
  char buffer[64];
  for (const auto& row : rows) {
    SCOPED_TRACE(row.expected);
    R_Number(row.value).toText(buffer);
    EXPECT_STREQ(row.expected, buffer);
  }
}

TEST(NumberTest, FormatClampsTheDecimalsToZeroToFour) {
  const struct {
    double value;
    int decimals;
    const char* expected;
  } rows[] = {{3.14159, 2, "3.14"}, {1.0, 9, "1.0000"}, {2.6, -1, "3"}, {-1.23456, 4, "-1.2346"}, {7, 0, "7"}};
  char buffer[64];
  for (const auto& row : rows) {
    SCOPED_TRACE(row.expected);
    R_Number(row.value).format(row.decimals, buffer);
    EXPECT_STREQ(row.expected, buffer);
  }
  strcpy(buffer, "junk");
  R_Number().format(2, buffer);
  EXPECT_STREQ("", buffer);
}

TEST(NumberTest, FormatToPrecisionRoundsTheNumberAndPrintsTheDecimalsThePrecisionNeeds) {
  const struct {
    double value, precision;
    const char* text;
    double rounded;
  } rows[] = {
      {12.34, 0.5, "12.5", 12.5},      {12.1, 0.25, "12.0", 12.0},          {1.2345, 0.01, "1.23", 1.23},
      {17.4, 5, "15", 15},             {1.234567, 0.00001, "1.2346", 1.23457}, {0.7, 1, "1", 1},
  };
  char buffer[64];
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    R_Number n(row.value);
    n.formatToPrecision(row.precision, buffer);
    EXPECT_STREQ(row.text, buffer);
    EXPECT_DOUBLE_EQ(row.rounded, n.getValue());
  }
  R_Number undefined;
  strcpy(buffer, "junk");
  undefined.formatToPrecision(0.5, buffer);
  EXPECT_STREQ("", buffer);
}

TEST(NumberTest, StoredFormIsTypeFlagAndLittleEndianDouble) {
  EXPECT_EQ("03 01 00 00 00 00 00 00 04 40", hexOf(savedBytes(R_Number(2.5))));
  EXPECT_EQ("03 00", hexOf(savedBytes(R_Number())));
  for (const char* hex : {"03 01 00 00 00 00 00 00 E0 BF", "03 00"}) {
    SCOPED_TRACE(hex);
    EXPECT_EQ(hex, hexOf(reloadAndSave<R_Number>(bytesOf(hex))));
  }
}

TEST(NumberTest, LoadCountsAnyNonZeroFlagAsDefined) {
  Bytes bytes = bytesOf("03 07 00 00 00 00 00 00 F0 3F");
  R_BufferInputStream in(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  R_Number n(in, &ok);
  EXPECT_TRUE(ok);
  EXPECT_TRUE(n.isEqual(1.0));
}

TEST(NumberTest, LoadRefusesAWrongTypeByteAndReadsNothingAfterAFailure) {
  Bytes bytes = bytesOf("02 01 00 00 00 00 00 00 F0 3F");
  R_BufferInputStream in(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  R_Number n(5.0);
  n.load(in, &ok);
  EXPECT_FALSE(ok);
  EXPECT_FALSE(n.isDefined());
  n.set(5.0);
  n.load(in, &ok);
  EXPECT_FALSE(n.isDefined());
  EXPECT_EQ(0x01, in.readByte()) << "a load after a failure must not read";
}

TEST(NumberTest, ACutStoredNumberStaysUndefinedAndFailsTheNextBlock) {
  Bytes bytes = savedBytes(R_Number(2.5));
  forEachTruncation<R_Number>(bytes, [](const R_Number& n, bool ok, R_InputStream& stream) {
    EXPECT_FALSE(n.isDefined());
    EXPECT_FALSE(ok && stream.isOK());
    R_Integer next;
    next.load(stream, &ok);
    EXPECT_FALSE(ok);
  });
}
