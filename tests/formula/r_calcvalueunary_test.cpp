#include "formula/r_calcvalueunary.h"

#include <gtest/gtest.h>

#include <string>

#include "formula/r_calcvalue.h"
#include "tests/formula/calcvalue_text.h"

namespace {

typedef R_CalcValueUnary O;

std::string applyValue(const R_CalcValue& value, O::Operator op) {
  R_CalcValue result = value;
  O::apply(result, op);
  return valueText(result);
}

}  // namespace

TEST(CalcValueUnaryTest, OperatorsOnNumbersKeepAnUndefinedNumberUndefined) {
  const struct { O::Operator op; double value; const char* expected; } rows[] = {
      // Plain values go through the expression suite; here the edges of each domain.
      {O::opNot, -0.1, "0"}, {O::opLn, 0, "?"},  {O::opLog, 0, "?"},    {O::opPsd, 0, "?"},
      {O::opPsd, 100, "?"},  {O::opSdp, 6.5, "?"}, {O::opDefined, 7, "1"}, {O::opExp, 1, "2.71828"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::to_string(row.op) + " of " + numberText(num(row.value)));
    R_Number number = num(row.value);
    O::applyNumber(number, row.op);
    EXPECT_EQ(row.expected, numberText(number));
  }
  for (int op = 0; op < O::_opCount; ++op) {
    SCOPED_TRACE(op);
    R_Number number;
    O::applyNumber(number, static_cast<O::Operator>(op));
    EXPECT_FALSE(number.isDefined());
  }
}

TEST(CalcValueUnaryTest, OnASeriesEachYChangesAndOnlyTheDefinedTestDefinesAnUndefinedValue) {
  const R_CalcValue values = series({{1, 2, 1}, {2, U, 2}, {3, -1, 3}}), point = series({{1, U, 1}, {2, 0, 2}});
  EXPECT_EQ("{1 -2 1|2 ? 2|3 1 3}", applyValue(values, O::opNegate));
  EXPECT_EQ("{1 0.30103 1|2 ? 2|3 ? 3}", applyValue(values, O::opLog));
  EXPECT_EQ("undefined", applyValue(series({{1, 0, 1}, {2, -1, 2}}), O::opLn)) << "normalised";
  EXPECT_EQ("{1 ? 1|2 1 2}", applyValue(point, O::opNot));
  EXPECT_EQ("undefined", applyValue(point, O::opLn));
  EXPECT_EQ("0", applyValue(scalar(U), O::opDefined));
  EXPECT_EQ("1", applyValue(scalar(0), O::opDefined));
  EXPECT_EQ("1", applyValue(series({{1, 2, 3}}), O::opDefined));
  EXPECT_EQ("undefined", applyValue(scalar(U), O::opNot));
}
