#include "graph/r_graphlayout.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <utility>

#include "core/r_number.h"
#include "core/r_string.h"
#include "graph/r_graphblockdata.h"
#include "graph/r_graphcalculator.h"
#include "graph/r_graphcontainer.h"
#include "graph/r_graphreference.h"
#include "knowledge/r_graphreflinesformat.h"
#include "knowledge/r_probability.h"
#include "knowledge/r_reference.h"
#include "knowledge/r_variable.h"
#include "output/r_outputinterface.h"

namespace {

const int kMinPlotWidth = 50;
// Values far outside a scale are held to pixels that no image reaches, so
// that the arithmetic of clipping stays within ints.
const double kPixelLimit = 1e6;

int toPixel(double offset) {
  double pixel = std::floor(offset + 0.5);
  return static_cast<int>(std::max(-kPixelLimit, std::min(kPixelLimit, pixel)));
}

// -1 below from..to, 1 above it, 0 inside, ends included.
int code(int value, int from, int to) { return value < from ? -1 : value > to ? 1 : 0; }

// The a of the line (a0, b0)-(a1, b1) at b, divided with truncation.
int interpolate(int a0, int a1, int b0, int b1, int b) {
  return static_cast<int>(static_cast<long long>(a1 - a0) * (b - b0) / (b1 - b0) + a0);
}

}  // namespace

R_GraphLayout::R_GraphLayout(const R_GraphContainer& GC_in, const R_GraphReference& GR_in,
                             const R_GraphCalculator& CALC_in, const R_GraphRefLinesFormat& format_in,
                             R_OutputInterface& output_in)
    : GC(&GC_in), GR(&GR_in), CALC(&CALC_in), format(&format_in), output(&output_in) {
  assert(CALC->ok() && GR->ok());
  rows.resize(static_cast<size_t>(GC->getCount()));
  if (!computeColumns()) return;
  int y = 0;
  for (int b = 0; b < GC->getCount(); ++b) {
    int height = computeRows(b, y);
    if (height <= 0) return;
    y += height;
  }
  // The ticks and numbers of the one X axis under the stack.
  y += output->getHeightMetric(0) / 2 + output->getFontHeight(0);
  image_height = y;
  is_ok = image_height > 0;
}

// The reference lines end at plot_right and their labels stand right of it,
// inside the frame; target names stand right of the frame.
bool R_GraphLayout::computeColumns() {
  int y_label = -1, target = -1, refwidth = 0;
  for (int b = 0; b < GC->getCount(); ++b) {
    y_label = std::max(y_label, getYLabelWidth(b));
    target = std::max(target, getTargetWidth(b));
  }
  for (int b = 0; b < GC->getCount(); ++b) refwidth = std::max(refwidth, getRefLabelWidth(b));
  refwidth = std::max(refwidth, output->getWidthMetric(1));
  image_width = output->getWidthMetric(0);
  image_right = image_width - 1;
  frame_left = y_label + output->getWidthMetric(2) / 2;
  frame_right = image_right - (target >= 1 ? target + output->getWidthMetric(3) : 0);
  plot_left = frame_left + output->getWidthMetric(1);
  plot_right = frame_right - refwidth;
  return plot_right - plot_left >= kMinPlotWidth;
}

int R_GraphLayout::getYLabelWidth(int block) const {
  R_String text;
  char sd[64] = "";
  if (GC->getBlock(block).isAnalysedSD()) {
    R_Probability::formatSD(sd, GR->getYMin(block));
    return output->getTextWidth(1, sd);
  }
  if (GR->isVarY(block)) GR->getYVariable(block).formatValue(GR->getYMax(block), text, false);
  return output->getTextWidth(1, text.get());
}

int R_GraphLayout::getTargetWidth(int block) const {
  int widest = 0;
  for (int t = 0; t < R_graphBlockTargetCount; ++t) {
    if (CALC->getTarget(block, t).isDefined())
      widest = std::max(widest, output->getTextWidth(8, GC->getBlock(block).getTarget(t).getName().get()));
  }
  return widest;
}

// Only references drawn as lines over X have labels beside the plot.
int R_GraphLayout::getRefLabelWidth(int block) const {
  if (!GR->isRef(block) || !GC->getBlock(block).getRefData().isShown()) return 0;
  const R_RefData* data = GR->getReference(block).getData();
  if (data == nullptr || data->isAnamnestic()) return 0;
  int widest = 0;
  for (int line = 0; line < data->getLineCount(*format); ++line)
    widest = std::max(widest, output->getTextWidth(4, data->getLineText(line, *format).get()));
  return widest;
}

int R_GraphLayout::computeRows(int block, int y) {
  Row& row = rows[block];
  const R_Variable& var = GR->getBlockVariable(block);
  row.top = y;
  int head = output->getFontHeight(3) + output->getHeightMetric(2);
  row.plot_top = y + head;
  int h = plotHeight(block);
  row.plot_bottom = row.plot_top + h;
  int height = head + h;
  if (var.isAnamnestic() || var.isList()) height += output->getFontHeight(6);
  height += output->getFontHeight(3) + output->getHeightMetric(0) / 2;
  row.bottom = y + height;
  return height;
}

// A cell keeps the aspect of the cell metrics; an SD block is a third as
// tall per step and bounded by one and two text lines, so that it stays a
// narrow strip under the real-valued blocks.
int R_GraphLayout::plotHeight(int block) {
  // A scale of a damaged file may count no cells; a zero width metric would
  // divide by zero.
  int cellx = (plot_right - plot_left) / std::max(1, GR->getXCellCount());
  int t = output->getFontHeight(1);
  int ratio = output->getHeightMetric(1) * cellx;
  int w = std::max(1, output->getWidthMetric(4));
  int cells = GR->getYCellCount(block);
  const R_Variable& var = GR->getBlockVariable(block);
  if (GC->getBlock(block).isAnalysedSD()) return cells * std::min(std::max(ratio / (w * 3), t), 2 * t);
  if (var.isAnamnestic()) return 0;
  if (var.isList()) return (cells * t * 3) / 2;
  return cells * std::max(ratio / w, t);
}

int R_GraphLayout::toPixelX(double value) const {
  return plot_left + toPixel(GR->toUnitX(value) * (plot_right - plot_left));
}

int R_GraphLayout::toPixelY(int block, double value) const {
  const Row& row = rows[block];
  if (!(GR->getYMax(block).getValue() > GR->getYMin(block).getValue())) return row.plot_bottom;
  return row.plot_bottom - toPixel(GR->toUnitY(block, value) * (row.plot_bottom - row.plot_top));
}

bool R_GraphLayout::isInScale(int block, const R_Number& x, const R_Number& y) const {
  if (!x.isDefined() || !y.isDefined()) return false;
  double vx = x.getValue(), vy = y.getValue();
  return vx >= GR->getXMin().getValue() && vx <= GR->getXMax().getValue() && vy >= GR->getYMin(block).getValue() &&
         vy <= GR->getYMax(block).getValue();
}

// Moves one end onto an edge at a time until both lie inside or the line
// is seen to miss the plot.
bool R_GraphLayout::clipLine(int block, const R_Number& x0, const R_Number& y0, const R_Number& x1, const R_Number& y1,
                             int& px0, int& py0, int& px1, int& py1) const {
  if (!x0.isDefined() || !y0.isDefined() || !x1.isDefined() || !y1.isDefined()) return false;
  const Row& row = rows[block];
  int ax = toPixelX(x0.getValue()), ay = toPixelY(block, y0.getValue());
  int bx = toPixelX(x1.getValue()), by = toPixelY(block, y1.getValue());
  for (;;) {
    int acx = code(ax, plot_left, plot_right), acy = code(ay, row.plot_top, row.plot_bottom);
    int bcx = code(bx, plot_left, plot_right), bcy = code(by, row.plot_top, row.plot_bottom);
    if (acx == 0 && acy == 0 && bcx == 0 && bcy == 0) break;
    if ((acx != 0 && acx == bcx) || (acy != 0 && acy == bcy)) return false;
    if (acx == 0 && acy == 0) {
      std::swap(ax, bx), std::swap(ay, by);
      std::swap(acx, bcx), std::swap(acy, bcy);
    }
    if (acx != 0) {
      int edge = acx < 0 ? plot_left : plot_right;
      ay = interpolate(ay, by, ax, bx, edge);
      ax = edge;
    } else {
      int edge = acy < 0 ? row.plot_top : row.plot_bottom;
      ax = interpolate(ax, bx, ay, by, edge);
      ay = edge;
    }
  }
  px0 = ax, py0 = ay, px1 = bx, py1 = by;
  return true;
}
