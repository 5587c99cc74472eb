#include "output/r_a_bitmapsave.h"

#include <cassert>

#include "output/r_a_colorname.h"

R_A_BitmapSave::~R_A_BitmapSave() = default;

bool R_A_BitmapSave::setColorName(int index, const char* name) {
  assert(name != nullptr && index >= 0 && index < _paletteSize);
  int r = 0, g = 0, b = 0;
  if (!resolveColorName(name, &r, &g, &b)) return false;
  setColor(index, r, g, b);
  return true;
}
