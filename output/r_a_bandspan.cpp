#include "output/r_a_bandspan.h"

R_A_BandSpan::R_A_BandSpan(int x1, int yA1, int yB1, int x2, int yA2, int yB2, int64_t clipLeft,
                           int64_t clipRight, int64_t width) {
  const bool swap = x2 < x1;
  left = swap ? x2 : x1;
  right = swap ? x1 : x2;
  aLeft = swap ? yA2 : yA1;
  aRight = swap ? yA1 : yA2;
  bLeft = swap ? yB2 : yB1;
  bRight = swap ? yB1 : yB2;
  first = left > clipLeft ? left : clipLeft;
  if (first < 0) first = 0;
  last = right - 1 < clipRight ? right - 1 : clipRight;
  if (last > width - 1) last = width - 1;
}

double R_A_BandSpan::at(double yLeft, double yRight, double x) const {
  return yLeft + (yRight - yLeft) * (x - static_cast<double>(left)) / static_cast<double>(right - left);
}
