// The canvas as text for whole-picture comparisons: one line a row, '.' for
// colour index 0 and a hexadecimal digit for the others.
#ifndef TESTS_OUTPUT_CANVAS_DUMP_H
#define TESTS_OUTPUT_CANVAS_DUMP_H

#include <string>

#include "output/r_a_bitmapdraw.h"
#include "tests/support/test_files.h"

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

// The canvas named `name` in tests/data/output/canvases.txt.
inline std::string expectedCanvas(const std::string& name) {
  const std::string all = readFile(testData("output/canvases.txt"));
  const size_t start = all.find("== " + name + "\n");
  if (start == std::string::npos) return "no canvas " + name;
  const size_t from = start + name.size() + 4;
  return all.substr(from, all.find("==", from) - from);
}

#endif
