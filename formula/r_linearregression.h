// Linear interpolation between two points, (x0, y0) and (x1, y1): the
// position of x between x0 and x1 is fixed once, then any pair of y values
// can be read at it. Outside x0 to x1 it extrapolates. Plain value.
#ifndef FORMULA_R_LINEARREGRESSION_H
#define FORMULA_R_LINEARREGRESSION_H

class R_LinearRegression {
 public:
  // Requires: x0 != x1.
  R_LinearRegression(double x0, double x1, double x);

  // The value at x on the line through (x0, y0) and (x1, y1).
  double get(double y0, double y1) const;

 private:
  double ratio;  // (x - x0) / (x1 - x0)
};

#endif
