#include "knowledge/r_probability.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

// The exact values below come from an independent script that sums the same
// series and runs the same bisection in IEEE doubles; the reference column
// of the first table is 0.5 * (1 + erf(z / sqrt(2))), which the series
// approaches but does not reach in the last digits.

TEST(ProbabilityTest, NormalCDFKeepsTheLastDigitsOfItsSeriesAndStopsBeyondSix) {
  const struct { double z, expected, erf_reference; } rows[] = {
      {0, 0.5, 0.5}, {1, 0.8413447460687473, 0.8413447460685429}, {-1, 0.15865525393125268, 0.15865525393145707},
      {2, 0.977249868059419, 0.9772498680518208}, {-2, 0.02275013194058101, 0.02275013194817921},
      {1.96, 0.9750021048555405, 0.9750021048517796}, {-6, 9.818365565017473e-10, 9.865876449133282e-10},
      {6, 0.9999999990181634, 0.9999999990134123},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.z);
    EXPECT_EQ(row.expected, R_Probability::normalCDF(row.z));
    EXPECT_NEAR(row.erf_reference, R_Probability::normalCDF(row.z), 1e-10);
  }
  for (double z : {6.0001, 100.0}) {
    EXPECT_EQ(0.0, R_Probability::normalCDF(-z));
    EXPECT_EQ(1.0, R_Probability::normalCDF(z));
  }
}

TEST(ProbabilityTest, InverseNormalCDFKeepsTheLastDigitsOfItsBisection) {
  const struct { double p, expected; } rows[] = {
      {0.5, 0.0}, {0.975, 1.9599639885127544}, {0.025, -1.9599639885127544}, {0.9, 1.2815515659749508},
      {0.1, -1.2815515659749508}, {0.03, -1.8807936049997807},
      {1e-12, -6.0}, {0.0, -6.0}, {0.9999999999, 6.0}, {1.0, 6.0},  // too close to 0 or 1 for the range: its ends
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.p);
    EXPECT_EQ(row.expected, R_Probability::inverseNormalCDF(row.p));
  }
}

namespace {

// NaN stands for the undefined number in the tables below.
R_Number numberOf(double value) { return std::isnan(value) ? R_Number() : R_Number(value); }

void expectNumber(double expected, const R_Number& number) {
  ASSERT_EQ(!std::isnan(expected), number.isDefined());
  if (number.isDefined()) {
    EXPECT_EQ(expected, number.getValue());
  }
}

}  // namespace

TEST(ProbabilityTest, PercentilesAndSDScoresConvertOnlyInsideTheirRanges) {
  const struct { void (*convert)(R_Number&); double from, expected; } rows[] = {
      {R_Probability::percentileToSD, 50, 0.0},     {R_Probability::percentileToSD, 97.5, 1.9599639885127544},
      {R_Probability::percentileToSD, 1e-12, -6.0}, {R_Probability::percentileToSD, 3, -1.8807936049997807},
      {R_Probability::percentileToSD, 0, NAN},      {R_Probability::percentileToSD, 100, NAN},
      {R_Probability::percentileToSD, NAN, NAN},    {R_Probability::sdToPercentile, 1, 84.13447460687473},
      {R_Probability::sdToPercentile, 0, 50.0},     {R_Probability::sdToPercentile, -2, 2.2750131940581007},
      {R_Probability::sdToPercentile, 6, 99.99999990181634}, {R_Probability::sdToPercentile, -6, 9.818365565017473e-08},
      {R_Probability::sdToPercentile, 6.5, NAN},    {R_Probability::sdToPercentile, -6.5, NAN},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.from);
    R_Number number = numberOf(row.from);
    row.convert(number);
    expectNumber(row.expected, number);
  }
  EXPECT_TRUE(R_Probability::isSDInRange(-6.0) && R_Probability::isSDInRange(R_Number(6.0)));
  EXPECT_FALSE(R_Probability::isSDInRange(R_Number(6.0001)) || R_Probability::isSDInRange(-6.0001) ||
               R_Probability::isSDInRange(R_Number()));
}

// Display forms: percentiles with fewer digits towards the middle, SD scores
// rounded half away from zero; out of range nothing, beyond 6 SD a bound.
TEST(ProbabilityTest, DisplayFormsOfPercentilesAndSDScores) {
  const struct { void (*format)(char*, const R_Number&); double value; const char* text; } rows[] = {
      {R_Probability::formatPercentile, 0.05, "<0.1"}, {R_Probability::formatPercentile, 9.96, "10.0"},
      {R_Probability::formatPercentile, 27.4, "25"},   {R_Probability::formatPercentile, 27.5, "30"},
      {R_Probability::formatPercentile, 76, "76"},     {R_Probability::formatPercentile, 99.95, ">99.9"},
      {R_Probability::formatPercentile, 100, ""},      {R_Probability::formatSD, -0.125, "-0.13"},
      {R_Probability::formatSD, 6.0, "6.00"},          {R_Probability::formatSD, 6.01, ">6.0"},
      {R_Probability::formatSD, -6.5, "<-6.0"},        {R_Probability::formatSD, 12.5, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.value);
    char buffer[64];
    row.format(buffer, numberOf(row.value));
    EXPECT_STREQ(row.text, buffer);
  }
}
