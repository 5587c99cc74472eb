#include "formula/r_calcvaluebinary.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "formula/r_calcvalue.h"
#include "tests/formula/calcvalue_text.h"

namespace {

typedef R_CalcValueBinary B;

std::string applyNumbers(double left, double right, B::Operator op) {
  R_Number number = num(left);
  B::applyNumber(number, num(right), op);
  return numberText(number);
}

std::string applyValues(const R_CalcValue& left, const R_CalcValue& right, B::Operator op) {
  R_CalcValue result = left;
  B::apply(result, right, op);
  return valueText(result);
}

struct LogicRow {
  double left;
  double right;
  const char* expected;
};

// The truth tables by hand: an operand is 1 (defined, not 0), 0, or
// undefined; 5 stands for a true number other than 1.
const LogicRow andRows[] = {
    {0, 0, "0"}, {1, 0, "0"}, {U, 0, "0"},
    {0, 1, "0"}, {1, 1, "1"}, {U, 1, "?"},
    {0, U, "0"}, {5, U, "?"}, {U, U, "?"},
};
const LogicRow orRows[] = {
    {0, 0, "0"}, {1, 0, "1"}, {U, 0, "?"},
    {0, 1, "1"}, {1, 1, "1"}, {U, 1, "1"},
    {0, U, "?"}, {5, U, "1"}, {U, U, "?"},
};
const LogicRow impliesRows[] = {
    {0, 0, "1"}, {1, 0, "0"}, {U, 0, "?"},
    {0, 5, "1"}, {1, 1, "1"}, {U, 1, "1"},
    {0, U, "1"}, {1, U, "?"}, {U, U, "?"},
};

void checkLogicAtNumberLevel(const LogicRow (&rows)[9], B::Operator op) {
  for (const LogicRow& row : rows) {
    SCOPED_TRACE(numberText(num(row.left)) + " op " + numberText(num(row.right)));
    EXPECT_EQ(row.expected, applyNumbers(row.left, row.right, op));
  }
}

// At value level an undefined operand makes the whole value undefined.
void checkLogicAtValueLevel(const LogicRow (&rows)[9], B::Operator op) {
  for (const LogicRow& row : rows) {
    SCOPED_TRACE(numberText(num(row.left)) + " op " + numberText(num(row.right)));
    bool anyUndefined = std::isnan(row.left) || std::isnan(row.right);
    std::string expected = anyUndefined ? "undefined" : row.expected;
    EXPECT_EQ(expected, applyValues(scalar(row.left), scalar(row.right), op));
  }
}

}  // namespace

TEST(CalcValueBinaryTest, LogicalOperatorsOnNumbersAreThreeValued) {
  {
    SCOPED_TRACE("and");
    checkLogicAtNumberLevel(andRows, B::opAnd);
  }
  {
    SCOPED_TRACE("or");
    checkLogicAtNumberLevel(orRows, B::opOr);
  }
  {
    SCOPED_TRACE("implies");
    checkLogicAtNumberLevel(impliesRows, B::opImplies);
  }
}

TEST(CalcValueBinaryTest, LogicalOperatorsOnValuesLetUndefinedWin) {
  {
    SCOPED_TRACE("and");
    checkLogicAtValueLevel(andRows, B::opAnd);
  }
  {
    SCOPED_TRACE("or");
    checkLogicAtValueLevel(orRows, B::opOr);
  }
  {
    SCOPED_TRACE("implies");
    checkLogicAtValueLevel(impliesRows, B::opImplies);
  }
}

TEST(CalcValueBinaryTest, ArithmeticAndComparisonsOnNumbers) {
  struct Row {
    double left;
    B::Operator op;
    double right;
    const char* expected;
  };
  const Row rows[] = {
      {7, B::opAdd, 2, "9"},         {7, B::opSubtract, 2, "5"},   {7, B::opMultiply, 2, "14"},
      {7, B::opDivide, 2, "3.5"},    {2, B::opPower, 10, "1024"},  {7, B::opAdd, U, "?"},
      {U, B::opSubtract, 2, "?"},    {7, B::opDivide, 0, "?"},     {0, B::opDivide, 0, "?"},
      {U, B::opDivide, 0, "?"},      {U, B::opPower, 0, "?"},      {0, B::opPower, -1, "inf"},
      // A missing factor next to 0 still gives 0.
      {0, B::opMultiply, U, "0"},    {U, B::opMultiply, 0, "0"},   {U, B::opMultiply, 1, "?"},
      {1, B::opMultiply, U, "?"},    {U, B::opMultiply, U, "?"},
      {1, B::opEqual, 1, "1"},       {1, B::opEqual, 2, "0"},      {1, B::opNotEqual, 2, "1"},
      {1, B::opNotEqual, 1, "0"},    {1, B::opLess, 2, "1"},       {2, B::opLess, 2, "0"},
      {2, B::opLessEqual, 2, "1"},   {3, B::opLessEqual, 2, "0"},  {3, B::opGreater, 2, "1"},
      {2, B::opGreater, 2, "0"},     {2, B::opGreaterEqual, 2, "1"}, {1, B::opGreaterEqual, 2, "0"},
      {U, B::opEqual, U, "?"},       {1, B::opLess, U, "?"},
      // Doubles compare exactly.
      {0.1 + 0.2, B::opEqual, 0.3, "0"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(numberText(num(row.left)) + " op" + std::to_string(row.op) + " " +
                 numberText(num(row.right)));
    EXPECT_EQ(row.expected, applyNumbers(row.left, row.right, row.op));
  }
}

TEST(CalcValueBinaryTest, PowerHasNoGuardOnItsArguments) {
  R_Number number(-8.0);
  B::applyNumber(number, R_Number(0.5), B::opPower);
  ASSERT_TRUE(number.isDefined());
  EXPECT_TRUE(std::isnan(number.getValue()));
}

TEST(CalcValueBinaryTest, ScalarsMeetAsNumbersAndUndefinedAlwaysWinsAtValueLevel) {
  EXPECT_EQ("5", applyValues(scalar(7), scalar(2), B::opSubtract));
  EXPECT_EQ("undefined", applyValues(scalar(1), scalar(0), B::opDivide));
  EXPECT_EQ("undefined", applyValues(scalar(0), scalar(U), B::opMultiply));
  EXPECT_EQ("undefined", applyValues(scalar(U), scalar(0), B::opMultiply));
  R_CalcValue values = series({{1, 0, 1}, {2, 4, 2}});
  EXPECT_EQ("undefined", applyValues(values, scalar(U), B::opMultiply));
  EXPECT_EQ("undefined", applyValues(scalar(U), values, B::opMultiply));
}

TEST(CalcValueBinaryTest, ScalarOperatorSeriesKeepsTheScalarOnTheLeft) {
  R_CalcValue values = series({{1, 1, 1}, {2, U, 2}, {3, 3, 3}});
  EXPECT_EQ("{1 9 1|2 ? 2|3 7 3}", applyValues(scalar(10), values, B::opSubtract));
  EXPECT_EQ("{1 10 1|2 ? 2|3 3.33333 3}", applyValues(scalar(10), values, B::opDivide));
  // 0 times a missing y is 0, which the point with x and age takes.
  EXPECT_EQ("{1 0 1|2 0 2|3 0 3}", applyValues(scalar(0), values, B::opMultiply));
  R_CalcValue noX = series({{1, 1, 1}, {U, U, 2}});
  EXPECT_EQ("{1 0 1|? ? 2}", applyValues(scalar(0), noX, B::opMultiply));
}

TEST(CalcValueBinaryTest, SeriesOperatorScalarWorksOnEachY) {
  R_CalcValue values = series({{1, 1, 1}, {2, U, 2}, {3, 3, 3}});
  EXPECT_EQ("{1 -9 1|2 ? 2|3 -7 3}", applyValues(values, scalar(10), B::opSubtract));
  EXPECT_EQ("{1 0 1|2 0 2|3 0 3}", applyValues(values, scalar(0), B::opMultiply));
  EXPECT_EQ("undefined", applyValues(values, scalar(0), B::opDivide));
}

TEST(CalcValueBinaryTest, SeriesTimesTwoLeavesPointsWithoutValueInvalid) {
  R_CalcValue values = series({{1, 1.5, 1}, {2, U, 2}, {U, U, 3}, {4, 4, 4}});
  EXPECT_EQ("{1 3 1|2 ? 2|? ? 3|4 8 4}", applyValues(values, scalar(2), B::opMultiply));
}

TEST(CalcValueBinaryTest, PointsAtDifferentVisitsGiveAScalar) {
  R_CalcValue first = series({{1, 5, 1}, {2, U, 2}});
  R_CalcValue second = series({{1, U, 1}, {2, 3, 2}});
  EXPECT_EQ("2", applyValues(first, second, B::opSubtract));
  EXPECT_EQ("-2", applyValues(second, first, B::opSubtract));
  EXPECT_EQ("undefined", applyValues(first, series({{1, U, 1}, {2, 0, 2}}), B::opDivide));
}

TEST(CalcValueBinaryTest, PointsAtTheSameVisitStayAPointOfThatVisit) {
  R_CalcValue first = series({{1, U, 1}, {2, 5, 2}});
  R_CalcValue second = series({{1, U, 1}, {2, 3, 2}});
  EXPECT_EQ("{1 ? 1|2 2 2}", applyValues(first, second, B::opSubtract));
  EXPECT_EQ("undefined", applyValues(first, series({{1, U, 1}, {2, 0, 2}}), B::opDivide));
}

TEST(CalcValueBinaryTest, PointOperatorSeriesUsesTheSeriesAtThePointsVisit) {
  R_CalcValue point = series({{1, U, 1}, {2, 5, 2}, {3, U, 3}});
  R_CalcValue values = series({{1, 10, 1}, {2, 20, 2}, {3, 30, 3}});
  EXPECT_EQ("{1 ? 1|2 -15 2|3 ? 3}", applyValues(point, values, B::opSubtract));
  R_CalcValue gap = series({{1, 10, 1}, {2, U, 2}, {3, 30, 3}});
  EXPECT_EQ("undefined", applyValues(point, gap, B::opSubtract));
}

TEST(CalcValueBinaryTest, SeriesOperatorPointClearsTheOtherVisits) {
  R_CalcValue values = series({{1, 10, 1}, {2, 20, 2}, {3, 30, 3}});
  R_CalcValue point = series({{1, U, 1}, {2, 5, 2}, {3, U, 3}});
  EXPECT_EQ("{1 ? 1|2 15 2|3 ? 3}", applyValues(values, point, B::opSubtract));
  // The series has no value at the point's visit: 0 times it is still 0.
  R_CalcValue gap = series({{1, 10, 1}, {2, U, 2}, {3, 30, 3}});
  R_CalcValue zero = series({{1, U, 1}, {2, 0, 2}, {3, U, 3}});
  EXPECT_EQ("{1 ? 1|2 0 2|3 ? 3}", applyValues(gap, zero, B::opMultiply));
}

TEST(CalcValueBinaryTest, SeriesOperatorSeriesWorksPositionByPosition) {
  R_CalcValue left = series({{1, 10, 1}, {2, 20, 2}, {3, 30, 3}});
  R_CalcValue right = series({{1, 1, 1}, {2, U, 2}, {3, 3, 3}});
  EXPECT_EQ("{1 9 1|2 ? 2|3 27 3}", applyValues(left, right, B::opSubtract));
  EXPECT_EQ("{1 -9 1|2 ? 2|3 -27 3}", applyValues(right, left, B::opSubtract));
}

TEST(CalcValueBinaryTest, ZeroTimesAMissingValueInsideASeriesIsZeroWhereXAndAgeAreThere) {
  // a is 0 at visits 0 and 2, where b has no value; b also lacks x at visit 2,
  // so with b on the left that position has no point.
  R_CalcValue a = series({{1, 0, 1}, {2, 4, 2}, {3, 0, 3}, {4, 1, 4}});
  R_CalcValue b = series({{1, U, 1}, {2, 2, 2}, {U, U, 3}, {4, 3, 4}});
  EXPECT_EQ("{1 0 1|2 8 2|3 0 3|4 3 4}", applyValues(a, b, B::opMultiply));
  EXPECT_EQ("{1 0 1|2 8 2|? ? 3|4 3 4}", applyValues(b, a, B::opMultiply));
}
