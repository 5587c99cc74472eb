#include "knowledge/r_probability.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

// The exact values below come from an independent script that sums the same
// series and runs the same bisection in IEEE doubles; the reference column
// of the first table is 0.5 * (1 + erf(z / sqrt(2))), which the series
// approaches but does not reach in the last digits.

namespace {

R_Number undefined() { return R_Number(); }

std::string percentileText(const R_Number& number) {
  char buffer[64];
  R_Probability::formatPercentile(buffer, number);
  return buffer;
}

std::string sdText(const R_Number& number) {
  char buffer[64];
  R_Probability::formatSD(buffer, number);
  return buffer;
}

}  // namespace

TEST(ProbabilityTest, NormalCDFKeepsTheLastDigitsOfItsSeries) {
  struct Row {
    double z;
    double expected;
    double erfReference;
  };
  const Row rows[] = {
      {0, 0.5, 0.5},
      {1, 0.8413447460687473, 0.8413447460685429},
      {-1, 0.15865525393125268, 0.15865525393145707},
      {2, 0.977249868059419, 0.9772498680518208},
      {-2, 0.02275013194058101, 0.02275013194817921},
      {1.96, 0.9750021048555405, 0.9750021048517796},
      {-6, 9.818365565017473e-10, 9.865876449133282e-10},
      {6, 0.9999999990181634, 0.9999999990134123},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.z);
    EXPECT_EQ(row.expected, R_Probability::normalCDF(row.z));
    EXPECT_NEAR(row.erfReference, R_Probability::normalCDF(row.z), 1e-10);
  }
  EXPECT_NEAR(0.84134474607, R_Probability::normalCDF(1), 1e-11);
}

TEST(ProbabilityTest, NormalCDFIsZeroAndOneOnlyBeyondSix) {
  EXPECT_EQ(0.0, R_Probability::normalCDF(-6.0001));
  EXPECT_EQ(0.0, R_Probability::normalCDF(-100));
  EXPECT_EQ(1.0, R_Probability::normalCDF(6.0001));
  EXPECT_EQ(1.0, R_Probability::normalCDF(100));
  EXPECT_GT(R_Probability::normalCDF(-6), 0.0);
  EXPECT_LT(R_Probability::normalCDF(6), 1.0);
}

TEST(ProbabilityTest, InverseNormalCDFKeepsTheLastDigitsOfItsBisection) {
  struct Row {
    double p;
    double expected;
  };
  const Row rows[] = {
      {0.5, 0.0},
      {0.975, 1.9599639885127544},
      {0.025, -1.9599639885127544},
      {0.9, 1.2815515659749508},
      {0.1, -1.2815515659749508},
      {0.03, -1.8807936049997807},
      // Too close to 0 or 1 for the range: its ends.
      {1e-12, -6.0},
      {0.0, -6.0},
      {0.9999999999, 6.0},
      {1.0, 6.0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.p);
    EXPECT_EQ(row.expected, R_Probability::inverseNormalCDF(row.p));
  }
}

TEST(ProbabilityTest, InverseNormalCDFUndoesNormalCDF) {
  for (double z = -3; z <= 3; z += 0.25) {
    SCOPED_TRACE(z);
    EXPECT_NEAR(z, R_Probability::inverseNormalCDF(R_Probability::normalCDF(z)), 1e-6);
  }
  for (double p = 0.01; p < 1; p += 0.07) {
    SCOPED_TRACE(p);
    EXPECT_NEAR(p, R_Probability::normalCDF(R_Probability::inverseNormalCDF(p)), 1e-8);
  }
}

TEST(ProbabilityTest, PercentileToSDIsDefinedStrictlyBetweenZeroAndHundred) {
  struct Row {
    double percentile;
    bool defined;
    double sd;
  };
  const Row rows[] = {
      {50, true, 0.0},     {97.5, true, 1.9599639885127544}, {3, true, -1.8807936049997807},
      {0, false, 0},       {100, false, 0},                  {-5, false, 0},
      {150, false, 0},     {1e-12, true, -6.0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.percentile);
    R_Number number(row.percentile);
    R_Probability::percentileToSD(number);
    ASSERT_EQ(row.defined, number.isDefined());
    if (row.defined) {
      EXPECT_EQ(row.sd, number.getValue());
    }
  }
  R_Number none = undefined();
  R_Probability::percentileToSD(none);
  EXPECT_FALSE(none.isDefined());
}

TEST(ProbabilityTest, SDToPercentileHasNoPercentileBeyondSix) {
  struct Row {
    double sd;
    bool defined;
    double percentile;
  };
  const Row rows[] = {
      {0, true, 50.0},
      {1, true, 84.13447460687473},
      {-2, true, 2.2750131940581007},
      {6, true, 99.99999990181634},
      {-6, true, 9.818365565017473e-08},
      {6.5, false, 0},
      {-6.5, false, 0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.sd);
    R_Number number(row.sd);
    R_Probability::sdToPercentile(number);
    ASSERT_EQ(row.defined, number.isDefined());
    if (row.defined) {
      EXPECT_EQ(row.percentile, number.getValue());
    }
  }
  R_Number none = undefined();
  R_Probability::sdToPercentile(none);
  EXPECT_FALSE(none.isDefined());
}

TEST(ProbabilityTest, SDRangeIsClosedFromMinusSixToSix) {
  EXPECT_TRUE(R_Probability::isSDInRange(R_Number(-6.0)));
  EXPECT_TRUE(R_Probability::isSDInRange(R_Number(6.0)));
  EXPECT_TRUE(R_Probability::isSDInRange(R_Number(0.0)));
  EXPECT_FALSE(R_Probability::isSDInRange(R_Number(6.0001)));
  EXPECT_FALSE(R_Probability::isSDInRange(R_Number(-6.0001)));
  EXPECT_FALSE(R_Probability::isSDInRange(undefined()));
  EXPECT_TRUE(R_Probability::isSDInRange(-6.0));
  EXPECT_FALSE(R_Probability::isSDInRange(-6.5));
}

TEST(ProbabilityTest, FormatPercentileUsesFewerDigitsTowardsTheMiddle) {
  struct Row {
    double percentile;
    const char* text;
  };
  const Row rows[] = {
      {0.05, "<0.1"},  {0.1, "0.1"},   {9.96, "10.0"},  {12.4, "12"},    {24.5, "25"},
      {33, "35"},      {50, "50"},     {76, "76"},      {90, "90"},      {90.04, "90.0"},
      {99.9, "99.9"},  {99.95, ">99.9"}, {25, "25"},    {75, "75"},      {27.4, "25"},
      {27.5, "30"},    {0, ""},        {100, ""},       {-1, ""},        {101, ""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.percentile);
    EXPECT_EQ(row.text, percentileText(R_Number(row.percentile)));
  }
  EXPECT_EQ("", percentileText(undefined()));
}

TEST(ProbabilityTest, FormatPercentileOfSixSDIsAboveTheTopStep) {
  R_Number number(6.0);
  R_Probability::sdToPercentile(number);
  ASSERT_TRUE(number.isDefined());
  EXPECT_EQ(">99.9", percentileText(number));
}

TEST(ProbabilityTest, FormatSDRoundsHalvesAwayFromZero) {
  struct Row {
    double sd;
    const char* text;
  };
  const Row rows[] = {
      {-1.234, "-1.23"}, {6.0, "6.00"},  {6.01, ">6.0"},  {-6.5, "<-6.0"}, {12.5, ""},
      {-12.5, ""},       {12, ">6.0"},   {-12, "<-6.0"},  {-6, "-6.00"},   {0, "0.00"},
      {0.125, "0.13"},   {-0.125, "-0.13"}, {1.236, "1.24"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.sd);
    EXPECT_EQ(row.text, sdText(R_Number(row.sd)));
  }
  EXPECT_EQ("", sdText(undefined()));
}
