// The columns of a band between two lines that run from x1 to x2 (line A
// from yA1 to yA2, line B from yB1 to yB2), in whichever order the ends
// come, cut to a clip's columns and a canvas's width. The raster and the
// SVG surface fill the same columns, so their bands agree.
#ifndef OUTPUT_R_A_BANDSPAN_H
#define OUTPUT_R_A_BANDSPAN_H
#include <cstdint>

struct R_A_BandSpan {
  R_A_BandSpan(int x1, int yA1, int yB1, int x2, int yA2, int yB2, int64_t clipLeft, int64_t clipRight,
               int64_t width);
  // No column is both on the canvas and inside the clip.
  bool isEmpty() const { return first > last; }
  // Line A's or B's y at column position x (not rounded).
  double yA(double x) const { return at(aLeft, aRight, x); }
  double yB(double x) const { return at(bLeft, bRight, x); }

  int64_t left, right;  // the band's ends, left first
  int64_t first, last;  // the columns to fill, both included
 private:
  double at(double yLeft, double yRight, double x) const;
  double aLeft, aRight, bLeft, bRight;
};
#endif
