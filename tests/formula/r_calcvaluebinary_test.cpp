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

}  // namespace

TEST(CalcValueBinaryTest, LogicalOperatorsAreThreeValuedOnNumbersWhileUndefinedWinsOnValues) {
  // The truth tables by hand: an operand is true (1, or 5 for a true number
  // other than 1), 0, or undefined.
  const struct { double left, right; const char* results[3]; } rows[] = {
      {0, 0, {"0", "0", "1"}}, {1, 0, {"0", "1", "0"}}, {U, 0, {"0", "?", "?"}},
      {0, 5, {"0", "1", "1"}}, {1, 1, {"1", "1", "1"}}, {U, 1, {"?", "1", "1"}},
      {0, U, {"0", "?", "1"}}, {5, U, {"?", "1", "?"}}, {U, U, {"?", "?", "?"}},
  };
  const B::Operator ops[] = {B::opAnd, B::opOr, B::opImplies};
  for (const auto& row : rows) {
    for (int i = 0; i < 3; ++i) {
      SCOPED_TRACE(numberText(num(row.left)) + " op" + std::to_string(ops[i]) + " " + numberText(num(row.right)));
      EXPECT_EQ(row.results[i], applyNumbers(row.left, row.right, ops[i]));
      bool undefined = std::isnan(row.left) || std::isnan(row.right);
      EXPECT_EQ(undefined ? "undefined" : row.results[i], applyValues(scalar(row.left), scalar(row.right), ops[i]));
    }
  }
}

// Plain sums and true comparisons are pinned through r_calcexpression_test.cpp;
// here the edges: equal operands, zero divisors, undefined numbers.
TEST(CalcValueBinaryTest, ArithmeticAndComparisonsOnNumbers) {
  const struct { double left; B::Operator op; double right; const char* expected; } rows[] = {
      {7, B::opAdd, U, "?"},        {U, B::opSubtract, 2, "?"},     {7, B::opDivide, 0, "?"},
      {U, B::opPower, 0, "?"},      {0, B::opPower, -1, "inf"},
      // A missing factor next to 0 still gives 0.
      {0, B::opMultiply, U, "0"},   {U, B::opMultiply, 0, "0"},     {U, B::opMultiply, 1, "?"},
      {1, B::opNotEqual, 1, "0"},   {2, B::opLess, 2, "0"},         {2, B::opLessEqual, 2, "1"},
      {2, B::opGreater, 2, "0"},    {2, B::opGreaterEqual, 2, "1"}, {U, B::opEqual, U, "?"},
      {0.1 + 0.2, B::opEqual, 0.3, "0"} /* doubles compare exactly */,
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(numberText(num(row.left)) + " op" + std::to_string(row.op) + " " + numberText(num(row.right)));
    EXPECT_EQ(row.expected, applyNumbers(row.left, row.right, row.op));
  }
  R_Number number(-8.0);
  B::applyNumber(number, R_Number(0.5), B::opPower);
  ASSERT_TRUE(number.isDefined()) << "power has no guard on its arguments";
  EXPECT_TRUE(std::isnan(number.getValue()));
}

TEST(CalcValueBinaryTest, ScalarsSeriesAndPointsMeetByTheirRules) {
  const R_CalcValue gappy = series({{1, 1, 1}, {2, U, 2}, {3, 3, 3}});
  const R_CalcValue tens = series({{1, 10, 1}, {2, 20, 2}, {3, 30, 3}});
  const R_CalcValue tens_gap = series({{1, 10, 1}, {2, U, 2}, {3, 30, 3}});
  const R_CalcValue five_at_2 = series({{1, U, 1}, {2, 5, 2}, {3, U, 3}});
  const R_CalcValue zero_at_2 = series({{1, U, 1}, {2, 0, 2}, {3, U, 3}});
  const R_CalcValue five_at_1 = series({{1, 5, 1}, {2, U, 2}}), three_at_2 = series({{1, U, 1}, {2, 3, 2}});
  const R_CalcValue zero_at_1 = series({{1, U, 1}, {2, 0, 2}});
  const R_CalcValue zeros = series({{1, 0, 1}, {2, 4, 2}, {3, 0, 3}, {4, 1, 4}});
  const R_CalcValue holes = series({{1, U, 1}, {2, 2, 2}, {U, U, 3}, {4, 3, 4}});
  const struct { R_CalcValue left; B::Operator op; R_CalcValue right; const char* expected; } rows[] = {
      // Scalars meet as numbers, but undefined always wins at value level.
      {scalar(7), B::opSubtract, scalar(2), "5"},          {scalar(1), B::opDivide, scalar(0), "undefined"},
      {scalar(0), B::opMultiply, scalar(U), "undefined"},  {scalar(U), B::opMultiply, scalar(0), "undefined"},
      {zeros, B::opMultiply, scalar(U), "undefined"},
      // Scalar op series keeps the scalar on the left; 0 times a missing y is
      // 0 where x and age are.
      {scalar(10), B::opSubtract, gappy, "{1 9 1|2 ? 2|3 7 3}"},
      {scalar(0), B::opMultiply, gappy, "{1 0 1|2 0 2|3 0 3}"},
      {scalar(0), B::opMultiply, series({{1, 1, 1}, {U, U, 2}}), "{1 0 1|? ? 2}"},
      // Series op scalar works on each y.
      {gappy, B::opSubtract, scalar(10), "{1 -9 1|2 ? 2|3 -7 3}"},
      {gappy, B::opDivide, scalar(0), "undefined"},
      {series({{1, 1.5, 1}, {2, U, 2}, {U, U, 3}, {4, 4, 4}}), B::opMultiply, scalar(2), "{1 3 1|2 ? 2|? ? 3|4 8 4}"},
      // Points at different visits give a scalar, at one visit a point.
      {five_at_1, B::opSubtract, three_at_2, "2"},         {three_at_2, B::opSubtract, five_at_1, "-2"},
      {five_at_1, B::opDivide, zero_at_1, "undefined"},
      {series({{1, U, 1}, {2, 5, 2}}), B::opSubtract, three_at_2, "{1 ? 1|2 2 2}"},
      // Point op series takes the series at the point's visit; series op
      // point clears the other visits.
      {five_at_2, B::opSubtract, tens, "{1 ? 1|2 -15 2|3 ? 3}"}, {five_at_2, B::opSubtract, tens_gap, "undefined"},
      {tens, B::opSubtract, five_at_2, "{1 ? 1|2 15 2|3 ? 3}"},
      {tens_gap, B::opMultiply, zero_at_2, "{1 ? 1|2 0 2|3 ? 3}"},
      // Series op series works position by position; with the series that
      // lacks x at visit 3 on the left, that position has no point.
      {tens, B::opSubtract, gappy, "{1 9 1|2 ? 2|3 27 3}"},  {gappy, B::opSubtract, tens, "{1 -9 1|2 ? 2|3 -27 3}"},
      {zeros, B::opMultiply, holes, "{1 0 1|2 8 2|3 0 3|4 3 4}"},
      {holes, B::opMultiply, zeros, "{1 0 1|2 8 2|? ? 3|4 3 4}"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(valueText(row.left) + " op" + std::to_string(row.op) + " " + valueText(row.right));
    EXPECT_EQ(row.expected, applyValues(row.left, row.right, row.op));
  }
}
