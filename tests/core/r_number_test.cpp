#include "core/r_number.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

#include "core/r_integer.h"
#include "tests/support/stored_bytes.h"

namespace {

// One text for a number, to compare defined and undefined ones alike.
std::string shown(const R_Number& n) {
  char text[64] = "?";
  if (n.isDefined()) snprintf(text, sizeof text, "%.15g", n.getValue());
  return text;
}

const R_Number kNone;

// Reads `text` by parse, or by setFromText when `normalise`: the number
// shown, or "refused" when the read failed and left the number undefined.
std::string read(const char* text, bool normalise) {
  R_Number n(7.0);
  bool ok = normalise ? n.setFromText(text) : n.parse(text);
  return ok ? shown(n) : n.isDefined() ? "refused but defined" : "refused";
}

}  // namespace

TEST(NumberTest, ParseReadsTheNumberAtTheStartOfTheTextAndSetFromTextNormalisesWhitespaceFirst) {
  const std::string nines(70, '9');  // only the first 64 bytes are read
  const struct { const char* text; bool normalise; const char* expected; } rows[] = {
      {"12", false, "12"},        {"3,5", false, "3.5"},      {",5", false, "0.5"},  {".5", false, "0.5"},
      {"-2.25", false, "-2.25"},  {"12abc", false, "12"},     {"-", false, "0"},     {"1e3", false, "1000"},
      {"?", false, "?"},          {"?junk", false, "?"},      {nines.c_str(), false, "1e+64"},
      {" \n 5 \r\n", true, "5"}, {"\t3,5\t", true, "3.5"},    {" ? ", true, "?"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(row.expected, read(row.text, row.normalise));
  }
}

TEST(NumberTest, ParseAndSetFromTextRefuseNearMissesAndLeaveTheNumberUndefined) {
  for (const char* text : {"", "abc", " 5", "+5", "\n5", "x?", "\t?"}) EXPECT_EQ("refused", read(text, false)) << text;
  for (const char* text : {"", " \n\t ", " +5", "abc"}) EXPECT_EQ("refused", read(text, true)) << text;
  EXPECT_EQ("refused", read(nullptr, true));
}

TEST(NumberTest, UndefinedIsKeptApartFromZero) {
  R_Number n;
  EXPECT_FALSE(n.isEqual(0.0) || n.getBoolOrFalse());
  n.setBool(true);
  EXPECT_TRUE(n.isEqual(1.0));
  n.setUndefined();
  EXPECT_FALSE(n.isEqual(1.0) || R_Number(0.0).getBool());
}

TEST(NumberTest, GetIntTruncatesTowardsZeroAndSaturatesOutsideTheIntRange) {
  const struct { double value; int expected; } rows[] = {
      {2.9, 2},        {-2.9, -2},          {2147483647.5, INT_MAX}, {1e10, INT_MAX},
      {-1e10, INT_MIN}, {HUGE_VAL, INT_MAX}, {-HUGE_VAL, INT_MIN},   {std::nan(""), 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.value);
    EXPECT_EQ(row.expected, R_Number(row.value).getInt());
  }
}

TEST(NumberTest, RoundMovesHalvesUpwardsAlsoBelowZero) {
  const struct { double value, precision, expected; } rows[] = {
      {2.5, 1, 3}, {-2.5, 1, -2},       {-2.6, 1, -3},     {2.4, 1, 2},
      {17, 5, 15}, {0.125, 0.25, 0.25}, {-0.125, 0.25, 0}, {-0.375, 0.25, -0.25},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::to_string(row.value) + " by " + std::to_string(row.precision));
    R_Number n(row.value);
    n.round(row.precision);
    EXPECT_EQ(row.expected, n.getValue());
  }
}

TEST(NumberTest, TextFormsUseTheCLocaleLayoutAndFormatClampsTheDecimalsToZeroToFour) {
  const struct { R_Number value; int decimals; const char* text; const char* formatted; } rows[] = {
      {2.5, 1, "2.5", "2.5"},           {-0.25, 2, "-0.25", "-0.25"},     {1e20, 0, "1e+20", "100000000000000000000"},
      {1234567, 9, "1.23457e+06", "1234567.0000"}, {0.0001, 4, "0.0001", "0.0001"}, {2.6, -1, "2.6", "3"},
      {-1.23456, 4, "-1.23456", "-1.2346"},        {kNone, 2, "?", ""},
  };
  char buffer[64];
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    row.value.toText(buffer);
    EXPECT_STREQ(row.text, buffer);
    strcpy(buffer, "junk");
    row.value.format(row.decimals, buffer);
    EXPECT_STREQ(row.formatted, buffer);
  }
}

TEST(NumberTest, FormatToPrecisionRoundsTheNumberAndPrintsTheDecimalsThePrecisionNeeds) {
  const struct { R_Number value; double precision; const char* text; R_Number rounded; } rows[] = {
      {12.34, 0.5, "12.5", 12.5},   {12.1, 0.25, "12.0", 12.0},             {1.2345, 0.01, "1.23", 1.23},
      {17.4, 5, "15", 15},          {1.234567, 0.00001, "1.2346", 1.23457}, {0.7, 1, "1", 1},
      {kNone, 0.5, "", kNone},
  };
  char buffer[64];
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    R_Number n = row.value;
    strcpy(buffer, "junk");
    n.formatToPrecision(row.precision, buffer);
    EXPECT_STREQ(row.text, buffer);
    EXPECT_EQ(shown(row.rounded), shown(n));
  }
}

TEST(NumberTest, StoredFormIsTypeFlagAndLittleEndianDouble) {
  expectStoredForm(R_Number(2.5), "03 01 00 00 00 00 00 00 04 40");
  expectStoredForm(kNone, "03 00");
  R_Number n;
  EXPECT_TRUE(loadFrom(bytesOf("03 07 00 00 00 00 00 00 F0 3F"), &n));
  EXPECT_TRUE(n.isEqual(1.0)) << "any flag but 0 means defined";
  EXPECT_FALSE(loadFrom(bytesOf("02 01 00 00 00 00 00 00 F0 3F"), &n));
  EXPECT_FALSE(n.isDefined()) << "a wrong type byte";
  n.set(5.0);
  int next = 0;
  EXPECT_FALSE(loadFrom(bytesOf("03 01"), &n, &next, false));
  EXPECT_FALSE(n.isDefined());
  EXPECT_EQ(0x03, next) << "a load after a failure must not read";
}

TEST(NumberTest, ACutStoredNumberStaysUndefinedAndFailsTheNextBlock) {
  forEachTruncation<R_Number>(savedBytes(R_Number(2.5)), [](const R_Number& n, bool ok, R_InputStream& stream) {
    EXPECT_FALSE(n.isDefined());
    EXPECT_FALSE(ok && stream.isOK());
    R_Integer next;
    next.load(stream, &ok);
    EXPECT_FALSE(ok);
  });
}
