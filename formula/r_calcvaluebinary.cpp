#include "formula/r_calcvaluebinary.h"

#include <cassert>
#include <cmath>

#include "formula/r_calcvalue.h"

namespace {

typedef R_CalcValueBinary::Operator Operator;

// Number level.

// The three truth values of the logical operators: an operand is true when
// defined and not 0, false when defined and 0, and unknown when undefined.
enum Truth { isFalse, isTrue, isUnknown };

Truth truthOf(const R_Number& number) {
  if (!number.isDefined()) return isUnknown;
  return number.getBool() ? isTrue : isFalse;
}

// Indexed [left][right]. A known side decides where it can: false AND
// anything is false, true OR anything is true, and an implication holds when
// its premise is false or its conclusion true.
const Truth andTable[3][3] = {
    {isFalse, isFalse, isFalse},
    {isFalse, isTrue, isUnknown},
    {isFalse, isUnknown, isUnknown},
};
const Truth orTable[3][3] = {
    {isFalse, isTrue, isUnknown},
    {isTrue, isTrue, isTrue},
    {isUnknown, isTrue, isUnknown},
};
const Truth impliesTable[3][3] = {
    {isTrue, isTrue, isTrue},
    {isFalse, isTrue, isUnknown},
    {isUnknown, isTrue, isUnknown},
};

template <const Truth (&table)[3][3]>
void logical(R_Number& left, const R_Number& right) {
  Truth result = table[truthOf(left)][truthOf(right)];
  if (result == isUnknown)
    left.setUndefined();
  else
    left.setBool(result == isTrue);
}

double add(double a, double b) { return a + b; }
double subtract(double a, double b) { return a - b; }
double power(double a, double b) { return pow(a, b); }
double equal(double a, double b) { return a == b ? 1.0 : 0.0; }
double notEqual(double a, double b) { return a != b ? 1.0 : 0.0; }
double less(double a, double b) { return a < b ? 1.0 : 0.0; }
double lessEqual(double a, double b) { return a <= b ? 1.0 : 0.0; }
double greater(double a, double b) { return a > b ? 1.0 : 0.0; }
double greaterEqual(double a, double b) { return a >= b ? 1.0 : 0.0; }

// Undefined as soon as one side is undefined.
template <double (*compute)(double, double)>
void strict(R_Number& left, const R_Number& right) {
  if (left.isDefined() && right.isDefined())
    left.set(compute(left.getValue(), right.getValue()));
  else
    left.setUndefined();
}

// A product with a factor 0 is 0 even when the other factor is missing.
void multiply(R_Number& left, const R_Number& right) {
  if (left.isDefined() && right.isDefined())
    left.set(left.getValue() * right.getValue());
  else if (left.isEqual(0.0) || right.isEqual(0.0))
    left.set(0.0);
  else
    left.setUndefined();
}

void divide(R_Number& left, const R_Number& right) {
  if (left.isDefined() && right.isDefined() && right.getValue() != 0.0)
    left.set(left.getValue() / right.getValue());
  else
    left.setUndefined();
}

typedef void (*NumberRule)(R_Number& left, const R_Number& right);

// In the order of R_CalcValueBinary::Operator.
const NumberRule numberRules[] = {
    strict<power>,        strict<add>,          strict<subtract>, multiply,
    divide,               strict<equal>,        strict<notEqual>, strict<less>,
    strict<lessEqual>,    strict<greater>,      strict<greaterEqual>,
    logical<andTable>,    logical<orTable>,     logical<impliesTable>,
};
static_assert(sizeof(numberRules) / sizeof(numberRules[0]) == R_CalcValueBinary::_opCount,
              "one number rule per operator");

// Value level.

// The `y` of `value` at `index`; undefined where a series of another length
// has no such position.
R_Number yAt(const R_CalcValue& value, int index) {
  if (index < 0 || index >= value.getN()) return R_Number();
  return value.getPoint(index).getY();
}

// y(index) of `left` op= `right`; nothing where `left` has no such position.
void applyAt(R_CalcValue& left, int index, const R_Number& right, Operator op) {
  if (index < 0 || index >= left.getN()) return;
  R_CalcValueBinary::applyNumber(left.getPoint(index).getY(), right, op);
}

void twoScalars(R_CalcValue& left, const R_CalcValue& right, Operator op) {
  R_Number number = left.getScalar();
  R_CalcValueBinary::applyNumber(number, right.getScalar(), op);
  left.set(number);
}

// The series takes the shape of `right`, and each `y` becomes the old scalar
// op that point's `y`: the scalar stays the left operand.
void scalarSeries(R_CalcValue& left, const R_CalcValue& right, Operator op) {
  R_Number scalar = left.getScalar();
  left = right;
  for (int i = 0; i < left.getN(); ++i) {
    R_Number y = scalar;
    R_CalcValueBinary::applyNumber(y, right.getPoint(i).getY(), op);
    left.getPoint(i).getY() = y;
  }
}

void seriesScalar(R_CalcValue& left, const R_CalcValue& right, Operator op) {
  for (int i = 0; i < left.getN(); ++i) applyAt(left, i, right.getScalar(), op);
}

// Points at different visits meet as plain numbers; at the same visit the
// result stays bound to that visit.
void twoPoints(R_CalcValue& left, const R_CalcValue& right, Operator op) {
  int i = left.getPointIndex();
  int j = right.getPointIndex();
  if (i == j) {
    applyAt(left, i, yAt(right, j), op);
    return;
  }
  R_Number y = yAt(left, i);
  R_CalcValueBinary::applyNumber(y, yAt(right, j), op);
  left.set(y);
}

void pointSeries(R_CalcValue& left, const R_CalcValue& right, Operator op) {
  int i = left.getPointIndex();
  applyAt(left, i, yAt(right, i), op);
}

void seriesPoint(R_CalcValue& left, const R_CalcValue& right, Operator op) {
  int j = right.getPointIndex();
  left.keepPoint(j);
  applyAt(left, j, yAt(right, j), op);
}

void twoSeries(R_CalcValue& left, const R_CalcValue& right, Operator op) {
  for (int i = 0; i < left.getN(); ++i) applyAt(left, i, yAt(right, i), op);
}

}  // namespace

void R_CalcValueBinary::apply(R_CalcValue& left, const R_CalcValue& right, Operator op) {
  if (left.isScalar() && right.isScalar())
    twoScalars(left, right, op);
  else if (left.isScalar() && right.isXY())
    scalarSeries(left, right, op);
  else if (left.isXY() && right.isScalar())
    seriesScalar(left, right, op);
  else if (left.isPoint() && right.isPoint())
    twoPoints(left, right, op);
  else if (left.isPoint() && right.isXY())
    pointSeries(left, right, op);
  else if (left.isXY() && right.isPoint())
    seriesPoint(left, right, op);
  else if (left.isXY() && right.isXY())
    twoSeries(left, right, op);
  else  // an undefined side: at value level undefined always wins
    left.setUndefined();
  left.normalise();
}

void R_CalcValueBinary::applyNumber(R_Number& left, const R_Number& right, Operator op) {
  assert(op >= 0 && op < _opCount);
  numberRules[op](left, right);
}
