#include "graph/r_auxogramdraw.h"

#include <cassert>
#include <cmath>
#include <string>

#include "core/r_string.h"
#include "graph/r_auxogramdata.h"
#include "graph/r_auxogramlayout.h"
#include "output/r_outputinterface.h"

namespace {

const int kAuxogramKind = 1;   // beginGraph and endGraph: an auxogram
const int kBackgroundArea = 0;
const int kFrameArea = 2;
const int kHeadingFont = 0;
const int kLabelFont = 1;
// drawRasterLine kinds.
const int kTick = 0;
const int kWedgeEnd = 1;
const int kZeroLine = 2;
const int kSDLine = 3;
// The part of a wedge's height at its score, in pixels above and below the
// line's middle; at the zero line it is half the label font's height.
const int kWedgeTip = 1;

// A score beyond any image is drawn as far as this, in pixels from the
// zero line, so that the painter's loops stay short.
const double kMaxWedge = 2.0 * R_AuxogramLayout::maxImageSize;

// value / limit * half, truncated towards 0.
int wedgeLength(double value, int limit, int half) {
  double length = value / limit * half;
  if (std::isnan(length)) return 0;
  if (length > kMaxWedge) length = kMaxWedge;
  if (length < -kMaxWedge) length = -kMaxWedge;
  return static_cast<int>(length);
}

}  // namespace

R_AuxogramDraw::R_AuxogramDraw(const R_AuxogramLayout& layout_in, const R_AuxogramData& AD_in,
                               R_OutputInterface& output_in)
    : layout(layout_in), AD(AD_in), output(output_in) {
  assert(layout.ok());
}

R_AuxogramDraw::Column R_AuxogramDraw::column(int index) const {
  Column c;
  c.left = layout.getColumnLeft(index);
  c.right = layout.getColumnRight(index);
  c.mid = (c.left + c.right) / 2;
  c.half = (c.right - c.left) / 2;
  return c;
}

void R_AuxogramDraw::draw(const R_File& file, const R_Proband& proband, const char* caption) {
  int width = layout.getImageWidth();
  int height = layout.getImageHeight();
  output.beginGraph(kAuxogramKind, caption, width, height);
  output.fillArea(0, 0, width - 1, height - 1, kBackgroundArea, -1);
  int limit = AD.getSDLimit();
  for (int index = 0; index < AD.getColumnCount(); ++index) drawColumn(file, proband, index, limit);
  int h = output.getFontHeight(kLabelFont) / 2;
  for (int line = 0; line < AD.getLineCount(); ++line) drawLine(file, line, limit, h);
  // The zero lines come last so that they lie over the wedges.
  int bottom = layout.getDataBottom();
  int top = layout.getDataTop();
  for (int index = 0; index < AD.getColumnCount(); ++index) {
    int mid = column(index).mid;
    output.drawRasterLine(mid, bottom, mid, top, kZeroLine);
  }
  output.endGraph(kAuxogramKind, caption);
}

void R_AuxogramDraw::drawColumn(const R_File& file, const R_Proband& proband, int index, int limit) {
  Column c = column(index);
  int bottom = layout.getDataBottom();
  int top = layout.getDataTop();
  int foot = layout.getImageHeight() - 1;
  R_String heading;
  AD.getColumnText(file, proband, output, index, heading);
  output.drawText(c.mid, 0, 0, 2, kHeadingFont, heading.get());
  output.frameArea(c.left, bottom, c.right, top, kFrameArea, -1);
  const std::string sd = std::to_string(limit) + "SD";
  output.drawText(c.mid, foot, 1, 2, kHeadingFont, "0");
  output.drawText(c.left, foot, 1, 0, kHeadingFont, ("-" + sd).c_str());
  output.drawText(c.right, foot, 1, 1, kHeadingFont, sd.c_str());
  for (int x : {c.right, c.left, c.mid}) output.drawRasterLine(x, bottom - 2, x, bottom + 2, kTick);
  for (int i = 1; i < limit; ++i) {
    int d = i * c.half / limit;
    output.drawRasterLine(c.mid + d, bottom, c.mid + d, top, kSDLine);
    output.drawRasterLine(c.mid - d, bottom, c.mid - d, top, kSDLine);
  }
}

void R_AuxogramDraw::drawLine(const R_File& file, int line, int limit, int h) {
  int y = layout.getLineY(line);
  R_String label;
  AD.getLineText(file, line, label);
  output.drawText(layout.getTextX(), y, 2, 0, kLabelFont, label.get());
  for (int index = 0; index < AD.getColumnCount(); ++index) {
    if (!AD.isDefined(line, index)) continue;
    Column c = column(index);
    int end = c.mid + wedgeLength(AD.getValue(line, index), limit, c.half);
    output.drawBand(c.mid, y - h, y + h, end, y - kWedgeTip, y + kWedgeTip, 0);
    output.drawRasterLine(end, y - kWedgeTip, end, y + kWedgeTip, kWedgeEnd);
  }
}
