// Builds R_CalcValue objects from short tables and prints them as text, so
// that whole values compare in one expectation. A series prints as
// "{x y age|x y age|...}", a scalar as "%g", the undefined value as
// "undefined"; an undefined number inside a point prints as "?".
#ifndef TESTS_FORMULA_CALCVALUE_TEXT_H
#define TESTS_FORMULA_CALCVALUE_TEXT_H

#include <cmath>
#include <initializer_list>
#include <limits>
#include <string>

#include "core/r_number.h"
#include "formula/r_calcvalue.h"

// Marks an undefined number in the tables of the tests.
const double U = std::numeric_limits<double>::quiet_NaN();

inline R_Number num(double v) { return std::isnan(v) ? R_Number() : R_Number(v); }

struct TestPoint {
  double x;
  double y;
  double age;
};

// The points as given, not normalised.
inline R_CalcValue rawSeries(std::initializer_list<TestPoint> points) {
  R_CalcValue value;
  value.setN(static_cast<int>(points.size()));
  int i = 0;
  for (const TestPoint& p : points) {
    value.getPoint(i).getX() = num(p.x);
    value.getPoint(i).getY() = num(p.y);
    value.getPoint(i).getAge() = num(p.age);
    ++i;
  }
  return value;
}

inline R_CalcValue series(std::initializer_list<TestPoint> points) {
  R_CalcValue value = rawSeries(points);
  value.normalise();
  return value;
}

inline R_CalcValue scalar(double v) {
  R_CalcValue value;
  value.set(num(v));
  return value;
}

inline std::string numberText(const R_Number& number) {
  char buffer[64];
  number.toText(buffer);
  return buffer;
}

inline std::string valueText(const R_CalcValue& value) {
  if (value.isScalar()) return numberText(value.getScalar());
  if (!value.isXY()) return "undefined";
  std::string text = "{";
  for (int i = 0; i < value.getN(); ++i) {
    const R_CalcPoint& p = value.getPoint(i);
    if (i > 0) text += "|";
    text += numberText(p.getX()) + " " + numberText(p.getY()) + " " + numberText(p.getAge());
  }
  return text + "}";
}

#endif
