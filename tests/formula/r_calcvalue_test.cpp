#include "formula/r_calcvalue.h"

#include <gtest/gtest.h>

#include "tests/formula/calcvalue_text.h"

TEST(CalcValueTest, SetAndSetTextMakeScalarsOrTheUndefinedValue) {
  const struct { const char* text; const char* expected; } rows[] = {
      {"12.5", "12.5"},   {"12abc", "12"},     {"1E2", "100"},        {"1.2.3", "1.2"},
      {"?", "undefined"}, {"", "undefined"},   {"abc", "undefined"},  {"+1", "undefined"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    R_CalcValue value;
    value.setText(row.text);
    EXPECT_EQ(row.expected, valueText(value));
  }
  R_CalcValue value;
  value.set(3);
  EXPECT_EQ("3", valueText(value));
  value.set(R_Number());
  EXPECT_EQ("undefined", valueText(value));
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

TEST(CalcValueTest, SetNWithTheSameCountKeepsXAndAgeAndDropsYAsSetUndefinedDoes) {
  R_CalcValue value = rawSeries({{1, 10, 0.5}, {2, 20, 1.5}});
  value.setN(2);
  EXPECT_EQ("{1 ? 0.5|2 ? 1.5}", valueText(value));
  value.setN(3);
  EXPECT_EQ("{? ? ?|? ? ?|? ? ?}", valueText(value));
  value.setN(0);
  EXPECT_FALSE(value.isDefined());
  value = series({{1, 10, 0.5}, {2, 20, 1.5}});
  value.setUndefined();
  EXPECT_EQ(0, value.getN());
  value.setN(2);
  EXPECT_EQ("{1 ? 0.5|2 ? 1.5}", valueText(value));
}

// A point is valid with all of x, y and age; clearing one keeps its x and age.
TEST(CalcValueTest, NormaliseAndKeepPointClearPoints) {
  R_CalcValue value = rawSeries({{U, 5, 1}, {2, 6, 2}, {3, 7, U}});
  value.normalise();
  EXPECT_EQ("{? ? 1|2 6 2|3 ? ?}", valueText(value));
  R_CalcValue empty = rawSeries({{U, 5, 1}, {2, U, 2}});
  empty.normalise();
  EXPECT_FALSE(empty.isDefined());
  value = series({{1, 5, 1}, {2, 6, 2}, {3, 7, 3}});
  value.keepPoint(1);
  EXPECT_EQ("{1 ? 1|2 6 2|3 ? 3}", valueText(value));
  R_CalcValue number = scalar(4);
  number.keepPoint(0);
  EXPECT_FALSE(number.isDefined());
}
