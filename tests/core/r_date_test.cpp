#include "core/r_date.h"

#include <gtest/gtest.h>

#include <cstring>

#include "core/r_number.h"
#include "tests/support/stored_bytes.h"

TEST(DateTest, ParseReadsDayMonthYearSeparatedByAnyNonDigits) {
  const struct {
    const char* text;
    int day, month, year;
  } rows[] = {
      {"1.2.2003", 1, 2, 2003},    {"01/02/03", 1, 2, 2003},   {"1. 2. 2003", 1, 2, 2003},
      {"x1-2-2003 y", 1, 2, 2003}, {"5.3.2001abc", 5, 3, 2001}, {"29.2.2000", 29, 2, 2000},
      {"29.2.1900", 29, 2, 1900},  {"29.2.2100", 29, 2, 2100},  {"1.1.99", 1, 1, 1999},
      {"1.1.69", 1, 1, 2069},      {"1.1.70", 1, 1, 1970},      {"1.1.00", 1, 1, 2000},
      {"1.1.1900", 1, 1, 1900},    {"31.12.2100", 31, 12, 2100}, {"31.1.2000.5", 31, 1, 2000},
      {"\xC8" "1\xE8" "2\xA0" "2003", 1, 2, 2003},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    R_Date date;
    ASSERT_TRUE(date.parse(row.text));
    EXPECT_EQ(row.day, date.getDay());
    EXPECT_EQ(row.month, date.getMonth());
    EXPECT_EQ(row.year, date.getYear());
  }
}

TEST(DateTest, ParseRefusesNearMissesAndLeavesTheDateUndefined) {
  const char* texts[] = {
      "31.4.2001", "29.2.2001", "1.1.1899", "1.1.2101", "1.1.123", "123.4.2000", "",   "abc",
      "1.2",       "1.2.",      "0.1.2000", "1.0.2000", "1.13.2000", "32.1.2000", "1.1.12345",
      "1.1.2",     "1.1.02003", "1 1",
  };
  for (const char* text : texts) {
    SCOPED_TRACE(text);
    R_Date date("1.1.2000");
    EXPECT_FALSE(date.parse(text));
    EXPECT_FALSE(date.isDefined());
  }
}

TEST(DateTest, SetFromTextNormalisesACopyFirst) {
  R_Date date;
  EXPECT_TRUE(date.setFromText(" \n 1.2.2003 \r\n"));
  EXPECT_EQ(R_Date(1, 2, 2003), date);
  EXPECT_FALSE(date.setFromText(nullptr));
  EXPECT_FALSE(date.isDefined());
}

TEST(DateTest, FixYearMapsTwoDigitYearsAroundNineteenSeventy) {
  const int rows[][2] = {{0, 2000},    {69, 2069},  {70, 1970},    {99, 1999},    {100, -1},
                         {1899, -1},   {-5, -1},    {1900, 1900},  {2100, 2100},  {2101, 2101}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row[0]);
    EXPECT_EQ(row[1], R_Date::fixYear(row[0]));
  }
  R_Date date(1, 1, 2000);
  date.setYear(5);
  EXPECT_EQ(2005, date.getYear());
}

TEST(DateTest, FormatExpandsTheConversionsAndCopiesTheRest) {
  const struct {
    const char* format;
    const char* expected;
  } rows[] = {
      {"%D.%M.%y", "05.03.01"}, {"%d.%m.%Y", "5.3.2001"}, {"%m/%d/%Y", "3/5/2001"},
      {"%%%x", "%x"},           {"a%Yb", "a2001b"},       {"", ""},
  };
  char buffer[64];
  for (const auto& row : rows) {
    SCOPED_TRACE(row.format);
    R_Date(5, 3, 2001).format(buffer, row.format);
    EXPECT_STREQ(row.expected, buffer);
  }
  R_Date(25, 12, 1999).format(buffer, "%d.%m.%Y %y");
  EXPECT_STREQ("25.12.1999 99", buffer);
  R_Date(1, 1, 2000).format(buffer, "%y");
  EXPECT_STREQ("00", buffer);
  strcpy(buffer, "junk");
  R_Date().format(buffer, "%d.%m.%Y");
  EXPECT_STREQ("", buffer);
}

TEST(DateTest, DayNumberIsTheJulianDayAndPartsFromTheLeapRuleIn1900) {
  const struct {
    R_Date date;
    int expected;
  } rows[] = {
      {R_Date(1, 1, 2000), 2451545}, {R_Date(1, 1, 2001), 2451911}, {R_Date(1, 1, 1900), 2415021},
      {R_Date(1, 3, 1900), 2415080}, {R_Date(29, 2, 1900), 2415080}, {R_Date(31, 12, 2100), 2488434},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.expected);
    EXPECT_EQ(row.expected, row.date.getDayNumber());
  }
}

TEST(DateTest, AgeIsInYearsOf365QuarterDaysToThreeDecimals) {
  const struct {
    R_Date from, to;
    double age;
  } rows[] = {
      {R_Date(1, 1, 2000), R_Date(1, 1, 2001), 1.002},
      {R_Date(1, 1, 2001), R_Date(1, 1, 2002), 0.999},
      {R_Date(15, 6, 2000), R_Date(1, 2, 2003), 2.631},
      {R_Date(7, 7, 2007), R_Date(7, 7, 2007), 0.0},
  };
  for (const auto& row : rows) {
    R_Number age;
    row.to.getAgeFrom(age, row.from);
    ASSERT_TRUE(age.isDefined());
    EXPECT_DOUBLE_EQ(row.age, age.getValue());
  }
}

TEST(DateTest, AgeIsUndefinedInReverseOrderOrWithoutBothDates) {
  R_Number age(5.0);
  R_Date(1, 1, 2000).getAgeFrom(age, R_Date(2, 1, 2000));
  EXPECT_FALSE(age.isDefined());
  age.set(5.0);
  R_Date(1, 1, 2000).getAgeFrom(age, R_Date());
  EXPECT_FALSE(age.isDefined());
  age.set(5.0);
  R_Date().getAgeFrom(age, R_Date(1, 1, 2000));
  EXPECT_FALSE(age.isDefined());
}

TEST(DateTest, StoredFormIsDayMonthAndYearWord) {
  EXPECT_EQ("20 05 03 D1 07", hexOf(savedBytes(R_Date(5, 3, 2001))));
  EXPECT_EQ("20 00 00 00 00", hexOf(savedBytes(R_Date())));
  EXPECT_EQ("20 00 00 00 00", hexOf(savedBytes(R_Date(31, 4, 2001))));
  for (const char* hex : {"20 1D 02 6C 07", "20 00 00 00 00", "20 1F 0C 34 08"}) {
    SCOPED_TRACE(hex);
    EXPECT_EQ(hex, hexOf(reloadAndSave<R_Date>(bytesOf(hex))));
  }
}

TEST(DateTest, LoadJudgesTheFieldsAndKeepsOkForANoDate) {
  for (const char* hex : {"20 00 00 00 00", "20 1F 04 D1 07", "20 01 01 6B 07", "20 01 01 35 08"}) {
    SCOPED_TRACE(hex);
    Bytes bytes = bytesOf(hex);
    R_BufferInputStream in(bytes.data(), static_cast<int>(bytes.size()));
    bool ok = true;
    R_Date date(in, &ok);
    EXPECT_TRUE(ok);
    EXPECT_FALSE(date.isDefined());
  }
}

TEST(DateTest, ACutOrMistypedBlockFailsAndASkippedLoadLeavesTheDate) {
  forEachTruncation<R_Date>(savedBytes(R_Date(5, 3, 2001)), [](const R_Date& date, bool ok, R_InputStream&) {
    EXPECT_FALSE(ok);
    EXPECT_FALSE(date.isDefined());
  });
  Bytes bytes = bytesOf("03 05 03 D1 07");
  R_BufferInputStream in(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  R_Date date(1, 1, 2000);
  date.load(in, &ok);
  EXPECT_FALSE(ok);
  EXPECT_FALSE(date.isDefined());
  date = R_Date(1, 1, 2000);
  date.load(in, &ok);
  EXPECT_EQ(R_Date(1, 1, 2000), date);
  EXPECT_EQ(0x05, in.readByte()) << "a load after a failure must not read";
}
