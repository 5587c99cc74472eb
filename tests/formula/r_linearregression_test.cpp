#include "formula/r_linearregression.h"

#include <gtest/gtest.h>

TEST(LinearRegressionTest, InterpolatesBetweenAndExtrapolatesBeyondTheTwoPoints) {
  // The line through (2, 10) and (6, 30): y = 5x.
  const struct { double x, expected; } rows[] = {{2, 10}, {6, 30}, {4, 20}, {3, 15}, {10, 50}, {0, 0}, {-2, -10}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.x);
    EXPECT_DOUBLE_EQ(row.expected, R_LinearRegression(2, 6, row.x).get(10, 30));
  }
  // The same position serves any pair of values; falling lines too.
  EXPECT_DOUBLE_EQ(-1.0, R_LinearRegression(2, 6, 4).get(1, -3));
}
