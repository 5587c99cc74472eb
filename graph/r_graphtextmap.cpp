#include "graph/r_graphtextmap.h"

#include "output/r_outputinterface.h"

namespace {

// How far an edge lies before the anchor for alignment 0, 1 and 2; other
// alignments count as 0, as they do for drawText.
int shift(int size, int align) { return align == 1 ? size : align == 2 ? size / 2 : 0; }

}  // namespace

R_GraphTextMap::R_GraphTextMap(int capacity_in) : capacity(capacity_in > 0 ? capacity_in : 0) {}

bool R_GraphTextMap::Box::contains(long long px, long long py) const {
  return px >= x && px < static_cast<long long>(x) + width && py >= y && py < static_cast<long long>(y) + height;
}

bool R_GraphTextMap::add(int x, int y, const char* text, R_OutputInterface& output, int font, int horizontalAlign,
                         int verticalAlign) {
  Box box;
  box.width = output.getTextWidth(font, text);
  box.height = output.getFontHeight(font);
  box.x = x - shift(box.width, horizontalAlign);
  box.y = y - shift(box.height, verticalAlign);
  const long long left = box.x, top = box.y;
  const long long right = left + box.width, bottom = top + box.height;
  for (const Box& taken : boxes) {
    if (taken.contains(left, top) || taken.contains(right, top) || taken.contains(left, bottom) ||
        taken.contains(right, bottom))
      return false;
  }
  if (getCount() < capacity) boxes.push_back(box);
  return true;
}
