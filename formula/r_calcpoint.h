// One point of a series: the value `y` at one visit of a proband, with the
// series' X variable `x` and the proband's `age` at that visit. Each of the
// three may be undefined; the point counts only when all three are defined.
// Plain value, copyable.
#ifndef FORMULA_R_CALCPOINT_H
#define FORMULA_R_CALCPOINT_H

#include "core/r_number.h"

class R_CalcPoint {
 public:
  R_Number& getX() { return x; }
  R_Number& getY() { return y; }
  R_Number& getAge() { return age; }
  const R_Number& getX() const { return x; }
  const R_Number& getY() const { return y; }
  const R_Number& getAge() const { return age; }

  // All three numbers are defined.
  bool isValid() const;
  // Undefines `y` only: `x` and `age` belong to the visit and stay, so that a
  // later operation can give the point a value again.
  void clear();

 private:
  R_Number x;
  R_Number y;
  R_Number age;
};

#endif
