// R_Number, R_Integer, the number texts of r_numbertext.h, and R_Date.
#include "core/r_number.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

#include "core/r_date.h"
#include "core/r_integer.h"
#include "core/r_numbertext.h"
#include "tests/support/stored_bytes.h"

namespace {

const R_Number kNone;

// One text for a number, to compare defined and undefined ones alike.
std::string shown(const R_Number& n) {
  char text[64] = "?";
  if (n.isDefined()) snprintf(text, sizeof text, "%.15g", n.getValue());
  return text;
}

// Reads `text` by parse, or by setFromText when `normalise`: the number shown, or "refused" when the read failed and
// left the number undefined.
std::string read(const char* text, bool normalise) {
  R_Number n(7.0);
  bool ok = normalise ? n.setFromText(text) : n.parse(text);
  return ok ? shown(n) : n.isDefined() ? "refused but defined" : "refused";
}

// R_formatG's text (with `precision` unless negative), checked against its length.
std::string formatG(double value, int precision = -1) {
  char buffer[R_numberTextSize];
  int length = precision < 0 ? R_formatG(value, buffer) : R_formatG(value, precision, buffer);
  EXPECT_EQ(static_cast<int>(strlen(buffer)), length);
  return buffer;
}

// The C library's "%.*g" ("%g" is "%.6g"): the independent oracle for the texts.
std::string libraryG(double value, int precision = -1) {
  char buffer[64];
  snprintf(buffer, sizeof buffer, "%.*g", precision < 0 ? 6 : precision, value);
  return buffer;
}

bool sameAtof(const char* text) {
  double expected = atof(text), actual = R_atof(text);
  return memcmp(&expected, &actual, sizeof expected) == 0 || (std::isnan(expected) && std::isnan(actual));
}

}  // namespace

TEST(NumberTest, ParseReadsTheNumberAtTheStartAndSetFromTextNormalisesWhitespaceFirst) {
  const std::string nines(70, '9');  // only the first 64 bytes are read
  const struct { const char* text; bool normalise; const char* expected; } rows[] = {
      {"12", false, "12"},       {"3,5", false, "3.5"},    {",5", false, "0.5"},   {".5", false, "0.5"},
      {"-2.25", false, "-2.25"}, {"12abc", false, "12"},   {"-", false, "0"},      {"1e3", false, "1000"},
      {"?", false, "?"},         {"?junk", false, "?"},    {nines.c_str(), false, "1e+64"},
      {" \n 5 \r\n", true, "5"}, {"\t3,5\t", true, "3.5"}, {" ? ", true, "?"},
      {"", false, "refused"},    {"abc", false, "refused"}, {" 5", false, "refused"}, {"+5", false, "refused"},
      {"x?", false, "refused"},  {"\t?", false, "refused"}, {"", true, "refused"},    {" \n\t ", true, "refused"},
      {" +5", true, "refused"},  {nullptr, true, "refused"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.expected, read(row.text, row.normalise)) << (row.text ? row.text : "null");
  }
  R_Number n;
  EXPECT_FALSE(n.isEqual(0.0) || n.getBoolOrFalse()) << "undefined is no zero";
}

TEST(NumberTest, GetIntTruncatesAndSaturatesAndRoundMovesHalvesUpwards) {
  const struct { double value; int expected; } ints[] = {
      {2.9, 2}, {-2.9, -2}, {2147483647.5, INT_MAX}, {1e10, INT_MAX}, {-1e10, INT_MIN}, {-HUGE_VAL, INT_MIN},
      {std::nan(""), 0},
  };
  for (const auto& row : ints) EXPECT_EQ(row.expected, R_Number(row.value).getInt()) << row.value;
  const struct { double value, precision, expected; } rounds[] = {
      {2.5, 1, 3}, {-2.5, 1, -2}, {-2.6, 1, -3}, {17, 5, 15}, {0.125, 0.25, 0.25}, {-0.375, 0.25, -0.25},
  };
  for (const auto& row : rounds) {
    R_Number n(row.value);
    n.round(row.precision);
    EXPECT_EQ(row.expected, n.getValue()) << row.value << " by " << row.precision;
  }
}

// Each row: toText, then format with the decimals (clamped to 0..4), then formatToPrecision (halves upwards, one
// decimal for 0.5 and 0.25) and the number it rounded to.
TEST(NumberTest, TextFormsFormatClampsTheDecimalsAndFormatToPrecisionRoundsTheNumber) {
  const struct { R_Number value; int decimals; double precision; const char* texts; } rows[] = {
      {-0.25, 2, 0.5, "-0.25|-0.25|0.0|0"}, {1e20, 0, 5, "1e+20|100000000000000000000|100000000000000000000|1e+20"},
      {1234567, 9, 0.25, "1.23457e+06|1234567.0000|1234567.0|1234567"}, {2.6, -1, 1, "2.6|3|3|3"},
      {12.34, 1, 0.5, "12.34|12.3|12.5|12.5"},           {12.1, 1, 0.25, "12.1|12.1|12.0|12"},
      {17.4, 0, 5, "17.4|17|15|15"},                     {1.234567, 4, 0.00001, "1.23457|1.2346|1.2346|1.23457"},
      {kNone, 2, 0.5, "?|||?"},
  };
  for (const auto& row : rows) {
    char text[64], formatted[64] = "junk", precise[64] = "junk";
    R_Number n = row.value;
    n.toText(text);
    n.format(row.decimals, formatted);
    n.formatToPrecision(row.precision, precise);
    EXPECT_EQ(row.texts, std::string(text) + "|" + formatted + "|" + precise + "|" + shown(n));
  }
}

TEST(NumberTest, StoredFormsAreTypeFlagDoubleAndTypeInt32) {
  expectStoredForm(R_Number(2.5), "03 01 00 00 00 00 00 00 04 40");
  expectStoredForm(kNone, "03 00");
  expectStoredForm(R_Integer(-2), "02 FE FF FF FF");
  expectEveryCutFails<R_Integer>("02 4D 00 00 00", [](const R_Integer& n) { return n.get() == 0; });
  R_Number n;
  EXPECT_TRUE(loadFrom(bytesOf("03 07 00 00 00 00 00 00 F0 3F"), &n) && n.isEqual(1.0)) << "any flag but 0: defined";
  EXPECT_FALSE(loadFrom(bytesOf("02 01 00 00 00 00 00 00 F0 3F"), &n) || n.isDefined()) << "a wrong type byte";
  n.set(5.0);
  int next = 0;
  EXPECT_FALSE(loadFrom(bytesOf("03 01"), &n, &next, false));
  EXPECT_TRUE(!n.isDefined() && next == 0x03) << "a load after a failure must not read";
  // A cut number stays undefined; its short read fails the stream, and so the next block.
  forEachTruncation<R_Number>(savedBytes(R_Number(2.5)), [](const R_Number& cut, bool ok, R_InputStream& stream) {
    R_Integer after;
    after.load(stream, &ok);
    EXPECT_FALSE(ok || cut.isDefined());
  });
}

// The texts must be the C library's byte for byte: hand-picked rounding edges, ties and odd values, then random short
// decimals and doubles of every magnitude, each also read back through R_atof.
TEST(NumberTextTest, FormatGAndAtofAgreeWithTheLibrary) {
  const double edges[] = {123.4567, 1000000,  999999.4, 999999.5, 9.9999951, 0.00001,  -0.0,       1e-300,
                          1e300,    0.099999951, 12345.65, 1234565.0, 0.5,    2.5e-5,   INFINITY,   NAN,
                          1e15,     999999999999999.9};
  for (double value : edges) {
    EXPECT_EQ(libraryG(value), formatG(value));
    for (int precision : {1, 9, 17}) EXPECT_EQ(libraryG(value, precision), formatG(value, precision));
  }
  EXPECT_EQ("999999 1e+06 10 0.1", formatG(999999.4) + " " + formatG(999999.5) + " " + formatG(9.9999951) + " " +
                                       formatG(0.099999951));
  for (const char* text : {"109.2", "-0", ".5", "-.5", "1.", "12abc", "1.2.3", "-", "", "1E-2", "0x1A", "inf", "nan",
                           " 5", "+5", "-+5", "3,5", "9007199254740993", "123456789012345678901234",
                           "0.30000000000000004", "0.0000000000000000000000001", "5e", "00000000000000000000012.5"})
    EXPECT_TRUE(sameAtof(text)) << text;
  std::mt19937_64 random(42);
  char text[64];
  for (int i = 0; i < 600000; ++i) {
    uint64_t r = random();
    double value = i % 2 ? std::ldexp(static_cast<double>(r >> 11) / 9007199254740992.0, static_cast<int>(r % 120) - 60)
                         : static_cast<double>((r >> 8) % 100000000) / std::pow(10.0, static_cast<double>(r % 9));
    if (r & 1) value = -value;
    int precision = 1 + static_cast<int>((r >> 4) % 12);
    ASSERT_EQ(libraryG(value), formatG(value)) << "at " << i;
    ASSERT_EQ(libraryG(value, precision), formatG(value, precision)) << "at " << i << " precision " << precision;
    snprintf(text, sizeof text, "%.*f", static_cast<int>((r >> 5) % 8), value);
    ASSERT_TRUE(sameAtof(text)) << text;
  }
}

TEST(NumberTextTest, FormatIntGivesTheTextsOfPercentD) {
  char buffer[R_numberTextSize];
  std::string texts;
  for (int value : {0, -7, 1000000, INT_MIN, INT_MAX})
    texts += std::to_string(R_formatInt(value, buffer)) + ":" + buffer + " ";
  EXPECT_EQ("1:0 2:-7 7:1000000 11:-2147483648 10:2147483647 ", texts);
}

TEST(DateTest, ParseReadsDayMonthYearBetweenAnyNonDigitsAndRefusesNearMisses) {
  const struct { const char* text; int day, month, year; } rows[] = {
      {"1.2.2003", 1, 2, 2003},    {"01/02/03", 1, 2, 2003},    {"x1-2-2003 y", 1, 2, 2003},
      {"5.3.2001abc", 5, 3, 2001}, {"29.2.2000", 29, 2, 2000},  {"29.2.1900", 29, 2, 1900},
      {"1.1.69", 1, 1, 2069},      {"1.1.70", 1, 1, 1970},      {"1.1.00", 1, 1, 2000},
      {"31.12.2100", 31, 12, 2100}, {"31.1.2000.5", 31, 1, 2000}, {"\xC8" "1\xE8" "2\xA0" "2003", 1, 2, 2003},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    R_Date date;
    ASSERT_TRUE(date.parse(row.text));
    EXPECT_EQ(R_Date(row.day, row.month, row.year), date);
  }
  for (const char* text : {"31.4.2001", "29.2.2001", "1.1.1899", "1.1.2101", "1.1.123", "123.4.2000", "", "1.2.",
                           "0.1.2000", "1.13.2000", "32.1.2000", "1.1.02003", "1 1"}) {
    R_Date date("1.1.2000");
    EXPECT_FALSE(date.parse(text) || date.isDefined()) << text;
  }
  R_Date date;
  EXPECT_TRUE(date.setFromText(" \n 1.2.2003 \r\n") && date == R_Date(1, 2, 2003));
  EXPECT_FALSE(date.setFromText(nullptr) || date.isDefined());
}

TEST(DateTest, FixYearMapsTwoDigitYearsAroundNineteenSeventy) {
  const int rows[][2] = {{0, 2000}, {69, 2069}, {70, 1970}, {99, 1999}, {100, -1}, {-5, -1}, {2101, 2101}};
  for (const auto& row : rows) EXPECT_EQ(row[1], R_Date::fixYear(row[0])) << row[0];
}

TEST(DateTest, FormatExpandsTheConversionsAndCopiesTheRest) {
  const struct { R_Date date; const char* format; const char* expected; } rows[] = {
      {R_Date(5, 3, 2001), "%D.%M.%y", "05.03.01"}, {R_Date(5, 3, 2001), "%m/%d/%Y", "3/5/2001"},
      {R_Date(5, 3, 2001), "a%%%x%Yb", "a%x2001b"}, {R_Date(1, 1, 2000), "%y", "00"}, {R_Date(), "%d.%m.%Y", ""},
  };
  char buffer[64];
  for (const auto& row : rows) {
    strcpy(buffer, "junk");
    row.date.format(buffer, row.format);
    EXPECT_STREQ(row.expected, buffer);
  }
}

// Day numbers are Julian days (1.1.2000 is 2451545); 1900 counts as a leap year: 29.2.1900 is 1.3.1900.
TEST(DateTest, DayNumbersAndAgesInYearsOf365QuarterDaysToThreeDecimals) {
  const struct { R_Date date; int expected; } days[] = {
      {R_Date(1, 1, 2000), 2451545}, {R_Date(1, 1, 2001), 2451911},  {R_Date(1, 1, 1900), 2415021},
      {R_Date(1, 3, 1900), 2415080}, {R_Date(29, 2, 1900), 2415080}, {R_Date(31, 12, 2100), 2488434},
  };
  for (const auto& row : days) EXPECT_EQ(row.expected, row.date.getDayNumber());
  const double kNone = -1;  // no age
  const struct { R_Date from, to; double age; } ages[] = {
      {R_Date(1, 1, 2000), R_Date(1, 1, 2001), 1.002},   // 366 / 365.25 = 1.00205
      {R_Date(15, 6, 2000), R_Date(1, 2, 2003), 2.631},  // 961 / 365.25 = 2.63107
      {R_Date(1, 1, 2000), R_Date(2, 1, 2000), 0.003},   // 1 / 365.25 = 0.00274, rounded up
      {R_Date(7, 7, 2007), R_Date(7, 7, 2007), 0.0},     {R_Date(2, 1, 2000), R_Date(1, 1, 2000), kNone},
      {R_Date(), R_Date(1, 1, 2000), kNone},             {R_Date(1, 1, 2000), R_Date(), kNone},
  };
  for (const auto& row : ages) {
    R_Number age(5.0);
    row.to.getAgeFrom(age, row.from);
    EXPECT_EQ(row.age, age.isDefined() ? age.getValue() : kNone) << row.age;
  }
}

TEST(DateTest, StoredFormIsDayMonthAndYearWordAndLoadJudgesTheFields) {
  expectStoredForm(R_Date(5, 3, 2001), "20 05 03 D1 07");
  expectStoredForm(R_Date(29, 2, 1900), "20 1D 02 6C 07");
  expectStoredForm(R_Date(), "20 00 00 00 00");
  EXPECT_EQ("20 00 00 00 00", hexOf(savedBytes(R_Date(31, 4, 2001))));
  expectEveryCutFails<R_Date>("20 05 03 D1 07", [](const R_Date& date) { return !date.isDefined(); });
  // An impossible stored date loads as no date and keeps ok; a wrong type fails.
  for (const char* hex : {"20 1F 04 D1 07", "20 01 01 6B 07", "20 01 01 35 08", "03 05 03 D1 07"}) {
    R_Date date(1, 1, 2000);
    EXPECT_EQ(hex[0] == '2', loadFrom(bytesOf(hex), &date)) << hex;
    EXPECT_FALSE(date.isDefined()) << hex;
  }
  R_Date date(1, 1, 2000);
  int next = 0;
  EXPECT_FALSE(loadFrom(bytesOf("20 05 03 D1 07"), &date, &next, false));
  EXPECT_TRUE(date == R_Date(1, 1, 2000) && next == 0x20) << "a load after a failure must not read";
}
