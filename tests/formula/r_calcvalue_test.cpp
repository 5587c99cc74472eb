#include "formula/r_calcvalue.h"

#include <gtest/gtest.h>

#include "tests/formula/calcvalue_text.h"

TEST(CalcValueTest, SetTextMakesScalarsOrTheUndefinedValue) {
  const struct { const char* text; const char* expected; } rows[] = {
      {"12.5", "12.5"},   {"12abc", "12"},     {"1E2", "100"},        {"1.2.3", "1.2"},
      {"?", "undefined"}, {"", "undefined"},   {"abc", "undefined"},  {"+1", "undefined"},
  };
  for (const auto& row : rows) {
    R_CalcValue value;
    value.setText(row.text);
    EXPECT_EQ(row.expected, valueText(value)) << row.text;
  }
}

TEST(CalcValueTest, APointIsASeriesWithExactlyOneValidPointAndOnlyNonZeroScalarsAndPointsAreTrue) {
  const struct { R_CalcValue value; int point; bool is_true; } rows[] = {
      {rawSeries({{1, U, 1}, {2, U, 2}}), -1, false}, {series({{1, U, 1}, {2, 7, 2}, {3, U, 3}}), 1, true},
      {series({{1, 5, 1}, {2, 7, 2}}), -1, false},    {series({{1, U, 1}, {2, 0, 2}}), 1, false},
      {scalar(7), -1, true},                          {scalar(-0.5), -1, true},
      {scalar(0), -1, false},                         {scalar(U), -1, false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(valueText(row.value));
    EXPECT_EQ(row.point, row.value.getPointIndex());
    EXPECT_EQ(row.point >= 0, row.value.isPoint());
    EXPECT_EQ(row.is_true, row.value.isTrue());
  }
}
