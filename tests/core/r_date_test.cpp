#include "core/r_date.h"

#include <gtest/gtest.h>

#include <cstring>

#include "core/r_number.h"
#include "tests/support/stored_bytes.h"

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
    EXPECT_FALSE(date.parse(text)) << text;
    EXPECT_FALSE(date.isDefined()) << text;
  }
  R_Date date;
  EXPECT_TRUE(date.setFromText(" \n 1.2.2003 \r\n"));
  EXPECT_EQ(R_Date(1, 2, 2003), date);
  EXPECT_FALSE(date.setFromText(nullptr) || date.isDefined());
}

TEST(DateTest, FixYearMapsTwoDigitYearsAroundNineteenSeventy) {
  const int rows[][2] = {{0, 2000}, {69, 2069}, {70, 1970}, {99, 1999}, {100, -1}, {-5, -1}, {1900, 1900}, {2101, 2101}};
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

// Day numbers are Julian days (1.1.2000 is 2451545); 1900 counts as a leap
// year, so 29.2.1900 and 1.3.1900 are one day.
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
    SCOPED_TRACE(row.age);
    R_Number age(5.0);
    row.to.getAgeFrom(age, row.from);
    EXPECT_EQ(row.age, age.isDefined() ? age.getValue() : kNone);
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
  EXPECT_EQ(R_Date(1, 1, 2000), date);
  EXPECT_EQ(0x20, next) << "a load after a failure must not read";
}
