#include "formula/r_linearregression.h"

#include <cassert>

R_LinearRegression::R_LinearRegression(double x0, double x1, double x) {
  assert(x0 != x1);
  ratio = (x - x0) / (x1 - x0);
}

double R_LinearRegression::get(double y0, double y1) const { return (y1 - y0) * ratio + y0; }
