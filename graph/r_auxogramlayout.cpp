#include "graph/r_auxogramlayout.h"

#include <cassert>

#include "core/r_string.h"
#include "graph/r_auxogramdata.h"
#include "output/r_outputinterface.h"

namespace {

// The metrics and fonts that an auxogram asks for.
const int kLineGapMetric = 3;      // height metric: auxogram spacer height
const int kColumnGapMetric = 5;    // width metric: auxogram spacer width
const int kImageWidthMetric = 0;   // width metric: graph width
const int kIndentMetric = 1;       // width metric: space right of the labels
const int kHeadingFont = 0;
const int kLabelFont = 1;

// The narrowest scale a column must show, and the widest it needs: a
// column is never drawn wider than the second text.
const char* const kShortScale = "-1SD 0 1SD";
const char* const kLongScale = "-1SD       0       1SD";

bool isPixelMeasure(long long value) { return value >= 0 && value <= R_AuxogramLayout::maxImageSize; }

}  // namespace

R_AuxogramLayout::R_AuxogramLayout(const R_AuxogramData& AD_in, R_OutputInterface& output_in,
                                   const R_File& file, const R_Proband& proband)
    : image_width(0),
      image_height(0),
      text_x(0),
      head(0),
      data_bottom(0),
      line_height(0),
      column_gap(0),
      line_gap(0),
      column_width(0),
      AD(AD_in),
      output(output_in),
      is_ok(false) {
  assert(AD.getColumnCount() >= 1);
  is_ok = measure(file) && textsFit(file, proband);
  if (!is_ok) return;
  int longest = output.getTextWidth(kHeadingFont, kLongScale);
  if (column_width > longest) column_width = longest;
}

// Every measure is checked before it is used, so that no sum or product
// below can pass the range of an int.
bool R_AuxogramLayout::measure(const R_File& file) {
  long long g = output.getHeightMetric(kLineGapMetric);
  long long c = output.getWidthMetric(kColumnGapMetric);
  long long f0 = output.getFontHeight(kHeadingFont);
  long long h = output.getFontHeight(kLabelFont);
  if (!isPixelMeasure(g) || !isPixelMeasure(c) || !isPixelMeasure(f0) || !isPixelMeasure(h)) return false;
  long long n = AD.getLineCount();
  long long m = AD.getColumnCount();
  long long top = f0 + g;
  long long bottom = top + n * h + (n + 1) * g;
  long long height = bottom + g + f0 + 2;
  long long width = output.getWidthMetric(kImageWidthMetric);
  if (!isPixelMeasure(height) || !isPixelMeasure(width)) return false;
  long long label = widestLabel(file);
  long long indent = output.getWidthMetric(kIndentMetric);
  if (!isPixelMeasure(label) || !isPixelMeasure(indent)) return false;
  long long right = width - label - indent;
  line_gap = static_cast<int>(g);
  column_gap = static_cast<int>(c);
  line_height = static_cast<int>(h);
  head = static_cast<int>(top);
  data_bottom = static_cast<int>(bottom);
  image_height = static_cast<int>(height);
  image_width = static_cast<int>(width);
  text_x = static_cast<int>(right);
  column_width = static_cast<int>((right - m * c) / m);
  return true;
}

int R_AuxogramLayout::widestLabel(const R_File& file) {
  int widest = 0;
  R_String label;
  for (int line = 0; line < AD.getLineCount(); ++line) {
    AD.getLineText(file, line, label);
    int width = output.getTextWidth(kLabelFont, label.get());
    if (width > widest) widest = width;
  }
  return widest;
}

bool R_AuxogramLayout::textsFit(const R_File& file, const R_Proband& proband) {
  if (column_width < 0) return false;
  R_String heading;
  for (int column = 0; column < AD.getColumnCount(); ++column) {
    AD.getColumnText(file, proband, output, column, heading);
    if (output.getTextWidth(kHeadingFont, heading.get()) > column_gap / 2 + column_width) return false;
  }
  return output.getTextWidth(kHeadingFont, kShortScale) <= column_width;
}

int R_AuxogramLayout::getColumnLeft(int column) const {
  assert(is_ok && column >= 0 && column < AD.getColumnCount());
  return column * (column_width + column_gap);
}

int R_AuxogramLayout::getColumnRight(int column) const {
  assert(is_ok && column >= 0 && column < AD.getColumnCount());
  return column * column_gap + (column + 1) * column_width;
}

int R_AuxogramLayout::getLineY(int line) const {
  assert(is_ok && line >= 0 && line < AD.getLineCount());
  return head + (line + 1) * line_gap + line * line_height + line_height / 2;
}
