// The canvas as text for whole-picture comparisons: one line a row, '.' for
// colour index 0 and a hexadecimal digit for the others.
#ifndef TESTS_OUTPUT_CANVAS_DUMP_H
#define TESTS_OUTPUT_CANVAS_DUMP_H

#include <string>

#include "output/r_a_bitmapdraw.h"

inline std::string dumpCanvas(const R_A_BitmapDraw& canvas) {
  std::string text;
  for (int y = 0; y < canvas.getHeight(); ++y) {
    for (int x = 0; x < canvas.getWidth(); ++x) {
      const int color = canvas.getPixel(x, y);
      text += color == 0 ? '.' : "0123456789abcdef"[color];
    }
    text += '\n';
  }
  return text;
}

#endif
