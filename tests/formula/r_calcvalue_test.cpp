#include "formula/r_calcvalue.h"

#include <gtest/gtest.h>

#include "tests/formula/calcvalue_text.h"

TEST(CalcPointTest, IsValidOnlyWithAllThreeNumbersAndClearingKeepsTheVisit) {
  R_CalcPoint point;
  EXPECT_FALSE(point.isValid());
  point.getX() = R_Number(1.0);
  point.getY() = R_Number(2.0);
  EXPECT_FALSE(point.isValid());
  point.getAge() = R_Number(3.0);
  EXPECT_TRUE(point.isValid());
  point.clear();
  EXPECT_FALSE(point.isValid());
  EXPECT_TRUE(point.getX().isEqual(1.0));
  EXPECT_TRUE(point.getAge().isEqual(3.0));
}

TEST(CalcValueTest, SetMakesScalarsAndUndefinedNumbersMakeUndefinedValues) {
  R_CalcValue value;
  EXPECT_FALSE(value.isDefined());
  EXPECT_EQ(0, value.getN());
  value.set(2.5);
  EXPECT_EQ("2.5", valueText(value));
  value.set(3);
  EXPECT_EQ("3", valueText(value));
  value.set(R_Number());
  EXPECT_EQ("undefined", valueText(value));
}

TEST(CalcValueTest, SetTextReadsNumberTexts) {
  struct Row {
    const char* text;
    const char* expected;
  };
  const Row rows[] = {
      {"12.5", "12.5"}, {"12abc", "12"}, {"1E2", "100"},          {"1.2.3", "1.2"},
      {"?", "undefined"}, {"", "undefined"}, {"abc", "undefined"}, {"+1", "undefined"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.text);
    R_CalcValue value;
    value.setText(row.text);
    EXPECT_EQ(row.expected, valueText(value));
  }
}

TEST(CalcValueTest, SetNWithTheSameCountKeepsXAndAgeAndDropsY) {
  R_CalcValue value = rawSeries({{1, 10, 0.5}, {2, 20, 1.5}});
  value.setN(2);
  EXPECT_TRUE(value.isXY());
  EXPECT_EQ("{1 ? 0.5|2 ? 1.5}", valueText(value));
  value.setN(3);
  EXPECT_EQ("{? ? ?|? ? ?|? ? ?}", valueText(value));
  value.setN(0);
  EXPECT_FALSE(value.isDefined());
  EXPECT_EQ(0, value.getN());
}

TEST(CalcValueTest, SetUndefinedKeepsThePointsForReuse) {
  R_CalcValue value = series({{1, 10, 0.5}, {2, 20, 1.5}});
  value.setUndefined();
  EXPECT_FALSE(value.isDefined());
  EXPECT_EQ(0, value.getN());
  value.setN(2);
  EXPECT_EQ("{1 ? 0.5|2 ? 1.5}", valueText(value));
}

TEST(CalcValueTest, APointIsASeriesWithExactlyOneValidPoint) {
  R_CalcValue none = rawSeries({{1, U, 1}, {2, U, 2}});
  R_CalcValue one = series({{1, U, 1}, {2, 7, 2}, {3, U, 3}});
  R_CalcValue two = series({{1, 5, 1}, {2, 7, 2}});
  EXPECT_EQ(-1, none.getPointIndex());
  EXPECT_EQ(1, one.getPointIndex());
  EXPECT_TRUE(one.isPoint());
  EXPECT_EQ(-1, two.getPointIndex());
  EXPECT_FALSE(two.isPoint());
  EXPECT_EQ(-1, scalar(7).getPointIndex());
}

TEST(CalcValueTest, IsTrueForNonZeroScalarsAndPointsOnly) {
  EXPECT_TRUE(scalar(2).isTrue());
  EXPECT_TRUE(scalar(-0.5).isTrue());
  EXPECT_FALSE(scalar(0).isTrue());
  EXPECT_FALSE(scalar(U).isTrue());
  EXPECT_TRUE(series({{1, U, 1}, {2, 1, 2}}).isTrue());
  EXPECT_FALSE(series({{1, U, 1}, {2, 0, 2}}).isTrue());
  EXPECT_FALSE(series({{1, 1, 1}, {2, 1, 2}}).isTrue());
}

TEST(CalcValueTest, NormaliseClearsPointsThatAreNotValid) {
  R_CalcValue value = rawSeries({{U, 5, 1}, {2, 6, 2}, {3, 7, U}});
  value.normalise();
  EXPECT_EQ("{? ? 1|2 6 2|3 ? ?}", valueText(value));
  EXPECT_TRUE(value.isPoint());

  R_CalcValue empty = rawSeries({{U, 5, 1}, {2, U, 2}});
  empty.normalise();
  EXPECT_FALSE(empty.isDefined());
}

TEST(CalcValueTest, KeepPointClearsTheOthersAndUndefinesNonSeries) {
  R_CalcValue value = series({{1, 5, 1}, {2, 6, 2}, {3, 7, 3}});
  value.keepPoint(1);
  EXPECT_EQ("{1 ? 1|2 6 2|3 ? 3}", valueText(value));
  R_CalcValue number = scalar(4);
  number.keepPoint(0);
  EXPECT_FALSE(number.isDefined());
}

TEST(CalcValueTest, CopyIsDeepAndKeepsPointsThatAreNotValid) {
  R_CalcValue original = series({{1, 5, 1}, {2, U, 2}});
  R_CalcValue copy;
  copy = original;
  EXPECT_EQ("{1 5 1|2 ? 2}", valueText(copy));
  copy.getPoint(0).getY() = R_Number(9.0);
  EXPECT_EQ("{1 5 1|2 ? 2}", valueText(original));

  copy = scalar(3);
  EXPECT_EQ("3", valueText(copy));
  copy = R_CalcValue();
  EXPECT_FALSE(copy.isDefined());
  R_CalcValue constructed(original);
  EXPECT_EQ("{1 5 1|2 ? 2}", valueText(constructed));
}
