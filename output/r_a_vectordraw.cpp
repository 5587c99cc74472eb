#include "output/r_a_vectordraw.h"

#include "output/r_a_colorname.h"

int R_A_VectorDraw::getTextAlignFlags(int verticalAlign, int horizontalAlign) {
  const int vertical = verticalAlign == 1 ? 8 : verticalAlign == 2 ? 24 : 0;
  const int horizontal = horizontalAlign == 1 ? 2 : horizontalAlign == 2 ? 6 : 0;
  return vertical + horizontal;
}

bool R_A_VectorDraw::setColorName(int /*index*/, const char* name) {
  int r = 0, g = 0, b = 0;
  return name != nullptr && resolveColorName(name, &r, &g, &b);
}

void R_A_VectorDraw::drawText(int /*x*/, int /*y*/, int verticalAlign, int horizontalAlign,
                              int /*color*/, const char* /*text*/) {
  wmf.writeRecord(R_A_WMFCreator::_setTextAlign, getTextAlignFlags(verticalAlign, horizontalAlign));
}
