#include "core/r_numbertext.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

std::string formatG(double value) {
  char buffer[R_numberTextSize];
  int length = R_formatG(value, buffer);
  EXPECT_EQ(static_cast<int>(strlen(buffer)), length);
  return buffer;
}

std::string libraryG(double value) {
  char buffer[64];
  snprintf(buffer, sizeof buffer, "%g", value);
  return buffer;
}

uint64_t nextRandom(uint64_t* state) {
  uint64_t z = (*state += 0x9E3779B97F4A7C15ULL);
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
  return z ^ (z >> 31);
}

bool sameBits(double a, double b) { return memcmp(&a, &b, sizeof a) == 0; }

TEST(NumberTextTest, FormatGivesTheTextsOfPercentG) {
  struct Row {
    double value;
    const char* text;
  };
  const Row rows[] = {
      {123.4567, "123.457"},   {1000000, "1e+06"},       {109.2, "109.2"},         {0.0001, "0.0001"},
      {0.00001, "1e-05"},      {999999.4, "999999"},     {999999.5, "1e+06"},      {9.9999951, "10"},
      {-2.5, "-2.5"},          {0.1, "0.1"},             {100000, "100000"},       {7.184, "7.184"},
      {0.000123456, "0.000123456"}, {123456789, "1.23457e+08"}, {1e14, "1e+14"}, {0, "0"},
      {-0.0, "-0"},            {1e-300, "1e-300"},       {1e300, "1e+300"},        {22.41, "22.41"},
      {0.099999951, "0.1"},    {5, "5"},                 {-1234.5678, "-1234.57"}, {12345.65, "12345.6"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(row.text, formatG(row.value));
  }
}

TEST(NumberTextTest, FormatLeavesTiesAndOddValuesToTheLibrary) {
  const double values[] = {1234565.0, 1234575.0, 0.5, 2.5e-5, INFINITY, -INFINITY, NAN, 1e15, 999999999999999.9};
  for (double value : values) {
    SCOPED_TRACE(libraryG(value));
    EXPECT_EQ(libraryG(value), formatG(value));
  }
}

// Short decimals as measurements have them, and doubles of every
// magnitude, each compared with the C library's own text.
TEST(NumberTextTest, FormatAgreesWithTheLibraryOnAMillionValues) {
  uint64_t state = 42;
  for (int i = 0; i < 1000000; ++i) {
    uint64_t r = nextRandom(&state);
    double value;
    if (i % 2 == 0) {
      value = static_cast<double>(r % 100000000) / std::pow(10.0, static_cast<double>(r % 9));
    } else {
      value = std::ldexp(static_cast<double>(r >> 11) / 9007199254740992.0, static_cast<int>(r % 120) - 60);
    }
    if (r & 1) value = -value;
    ASSERT_EQ(libraryG(value), formatG(value)) << "at " << i;
  }
}

std::string formatG(double value, int precision) {
  char buffer[R_numberTextSize];
  R_formatG(value, precision, buffer);
  return buffer;
}

std::string libraryG(double value, int precision) {
  char buffer[64];
  snprintf(buffer, sizeof buffer, "%.*g", precision, value);
  return buffer;
}

TEST(NumberTextTest, FormatWithAPrecisionGivesTheTextsOfPercentDotStarG) {
  EXPECT_EQ("0.123456789", formatG(0.123456789, 9));
  EXPECT_EQ("1.23456789e+09", formatG(1234567890.0, 9));
  EXPECT_EQ("-1.5", formatG(-1.5, 9));
  EXPECT_EQ("1e+02", formatG(123.0, 1));
  EXPECT_EQ("0.5", formatG(0.5, 1));
  EXPECT_EQ("0.10000000000000001", formatG(0.1, 17));
}

TEST(NumberTextTest, FormatWithEveryPrecisionAgreesWithTheLibrary) {
  uint64_t state = 99;
  for (int i = 0; i < 600000; ++i) {
    uint64_t r = nextRandom(&state);
    int precision = 1 + static_cast<int>(r % 12);
    double value = (i % 2 == 0) ? static_cast<double>((r >> 8) % 1000000000) / std::pow(10.0, static_cast<double>(r % 11))
                                : std::ldexp(static_cast<double>(r >> 11) / 9007199254740992.0, static_cast<int>(r % 80) - 30);
    ASSERT_EQ(libraryG(value, precision), formatG(value, precision)) << "at " << i << " precision " << precision;
  }
}

TEST(NumberTextTest, AtofGivesTheLibraryValueForAcceptedAndOddTexts) {
  const char* const texts[] = {
      "109.2", "-0", "0", ".5", "-.5", "1.", "12abc", "1.2.3", "-", ".", "", "1e5", "1E-2", "0x1A", "inf", "-inf",
      "nan", " 5", "+5", "-+5", "3,5", "0.1", "22.41", "9007199254740993", "123456789012345678901234",
      "0.30000000000000004", "1234567890.0987654321", "0.0000000000000000000000001", "5e", "1p5", "00000000000000000000012.5",
  };
  for (const char* text : texts) {
    SCOPED_TRACE(text);
    double expected = atof(text), actual = R_atof(text);
    EXPECT_TRUE(sameBits(expected, actual) || (std::isnan(expected) && std::isnan(actual)));
  }
}

TEST(NumberTextTest, AtofAgreesWithTheLibraryOnAMillionDecimals) {
  uint64_t state = 7;
  char text[64];
  for (int i = 0; i < 1000000; ++i) {
    uint64_t r = nextRandom(&state);
    int decimals = static_cast<int>(r % 8);
    snprintf(text, sizeof text, "%s%.*f", (r & 1) ? "-" : "", decimals,
             static_cast<double>((r >> 8) % 10000000000ULL) / 1000.0);
    ASSERT_TRUE(sameBits(atof(text), R_atof(text))) << text;
  }
}

}  // namespace

TEST(NumberTextTest, FormatIntGivesTheTextsOfPercentD) {
  const int values[] = {0, 7, -7, 10, 1000000, -2147483647 - 1, 2147483647};
  const char* const texts[] = {"0", "7", "-7", "10", "1000000", "-2147483648", "2147483647"};
  for (size_t i = 0; i < sizeof values / sizeof values[0]; ++i) {
    char buffer[R_numberTextSize];
    EXPECT_EQ(static_cast<int>(strlen(texts[i])), R_formatInt(values[i], buffer));
    EXPECT_STREQ(texts[i], buffer);
  }
}
