// The one value type of the formula engine: undefined, a scalar, or a series
// of points, one position per visit of a proband (position i is visit i, also
// where the point is not valid). Undefined is a value, not a failure: it
// passes through every operator.
//
// After normalise() a scalar is defined, and a series has at least one valid
// point while every point that is not valid has an undefined `y`; every
// operator of the engine restores this. A series with exactly one valid point
// is a point (isPoint): it is a series for all data purposes, but binary
// operators and truth tests treat it as a single value bound to its visit.
//
// The value owns its points; copying copies them all. Values have no virtual
// operations; R_CalcEquation extends this class with the references of an
// equation.
#ifndef FORMULA_R_CALCVALUE_H
#define FORMULA_R_CALCVALUE_H

#include "core/r_number.h"
#include "formula/r_calcpoint.h"

class R_CalcValue {
 public:
  R_CalcValue();
  R_CalcValue(const R_CalcValue& other);
  ~R_CalcValue();
  // A deep copy: a series comes with `x`, `y` and `age` of all its points,
  // also those that are not valid.
  R_CalcValue& operator=(const R_CalcValue& other);

  bool isDefined() const { return type != typeUndefined; }
  bool isScalar() const { return type == typeScalar; }
  bool isXY() const { return type == typeSeries; }
  bool isPoint() const { return isXY() && getPointIndex() >= 0; }
  // The number of positions of a series; 0 for a scalar or undefined value.
  int getN() const { return isXY() ? count : 0; }
  // Requires: isXY(), 0 <= index < getN().
  R_CalcPoint& getPoint(int index);
  const R_CalcPoint& getPoint(int index) const;
  // The position of the only valid point; -1 for a value that is no series,
  // for a series without a valid point and for one with several.
  int getPointIndex() const;
  // Requires: isScalar().
  const R_Number& getScalar() const;
  // A defined scalar other than 0, or a point whose `y` is defined and not 0.
  // Any other value, a series of several points included, is not true.
  bool isTrue() const;

  // Undefined, with the `y` of all points undefined; the points and their
  // `x` and `age` stay allocated for reuse.
  void setUndefined();
  // A scalar, or undefined for an undefined number.
  void set(const R_Number& number);
  void set(double number);
  void set(int number);
  // A scalar read from a number text ("12.5", "?" being undefined); any text
  // that does not read as a defined number gives the undefined value.
  void setText(const char* text);
  // A series of `n` points whose `y` are all undefined. With the same `n` as
  // before the points keep their `x` and `age`; with another `n` they are
  // fresh. `n` 0 releases the points and leaves the value undefined. The
  // series is not normalised: the caller fills the points first.
  // Requires: n >= 0.
  void setN(int n);
  // For a series: the `y` of every point but `index` becomes undefined.
  // Anything else becomes undefined.
  void keepPoint(int index);
  // Restores the invariants: an undefined scalar makes the value undefined; a
  // series clears its points that are not valid and is undefined when none
  // is left valid.
  void normalise();

 private:
  enum Type { typeUndefined, typeScalar, typeSeries };

  void release();
  void copyPoints(const R_CalcValue& other);

  int count;  // allocated points, kept through setUndefined and set
  R_Number scalar;
  R_CalcPoint* data;  // owned; null when count is 0
  Type type;
};

#endif
