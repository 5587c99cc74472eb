#include "graph/r_graphdraw.h"

#include <cassert>
#include <cmath>

#include "core/r_number.h"
#include "core/r_string.h"
#include "graph/r_graphblockdata.h"
#include "graph/r_graphcalculator.h"
#include "graph/r_graphcontainer.h"
#include "graph/r_graphlayout.h"
#include "graph/r_graphplot.h"
#include "graph/r_graphplotcalculated.h"
#include "graph/r_graphreference.h"
#include "graph/r_graphtextmap.h"
#include "knowledge/r_graphreflinesformat.h"
#include "knowledge/r_probability.h"
#include "knowledge/r_refdata.h"
#include "knowledge/r_reference.h"
#include "knowledge/r_variable.h"
#include "output/r_outputinterface.h"

namespace {

// A grid or axis of a damaged file may ask for ever so many steps; no image
// is that wide.
const int kMaxSteps = 10000;
// The texts of captions and labels are cut to what a text buffer holds.
const size_t kTextLimit = 16383;
// The fine grid leaves out the fine lines that fall on main lines; the
// tolerance is a tenth of the X variable's precision, else this.
const double kDefaultTolerance = 0.01;

// Calls each(v) for v = from, from + step, ... while v <= to. The values
// are computed as from + k*step, and a last value that rounding pushed a
// hair past `to` is taken as `to`, so that the scale's end keeps its line.
// Nothing for an undefined number or a step that is not above 0.
template <class Each>
void forEachStep(const R_Number& from, const R_Number& to, const R_Number& step, Each each) {
  if (!from.isDefined() || !to.isDefined() || !step.isDefined()) return;
  const double a = from.getValue(), b = to.getValue(), s = step.getValue();
  if (!(s > 0)) return;
  for (int k = 0; k < kMaxSteps; ++k) {
    double v = a + k * s;
    if (v > b) {
      if (v > b + s * 1e-9) break;
      v = b;
    }
    each(v);
  }
}

std::string cut(std::string text) {
  if (text.size() > kTextLimit) text.resize(kTextLimit);
  return text;
}

// "name (unit)", or only the name without a unit.
std::string named(const char* name, const char* unit) {
  std::string text = name;
  if (unit != nullptr && *unit != '\0') text = text + " (" + unit + ")";
  return cut(text);
}

}  // namespace

R_GraphDraw::R_GraphDraw(const R_GraphContainer& GC_in, const R_GraphReference& GR_in,
                         const R_GraphCalculator& CALC_in, const R_GraphLayout& layout_in,
                         const R_GraphRefLinesFormat& format_in, R_OutputInterface& output_in)
    : GC(&GC_in), GR(&GR_in), CALC(&CALC_in), layout(&layout_in), format(&format_in), output(&output_in) {
  assert(GR->ok() && layout->ok());
}

void R_GraphDraw::draw(const char* caption) {
  const int width = layout->getImageWidth(), height = layout->getImageHeight();
  const int blocks = GC->getCount();
  output->beginGraph(0, caption, width, height);
  output->fillArea(0, 0, width - 1, height - 1, areaBackground, -1);
  drawBackgrounds();
  for (int b = 0; b < blocks; ++b) {
    if (const R_RefData* data = shownRefData(b)) drawRefArea(b, *data);
  }
  for (int b = 0; b < blocks; ++b) drawGrid(b);
  for (int b = 0; b < blocks; ++b) {
    if (const R_RefData* data = shownRefData(b)) drawRefLines(b, *data);
  }
  drawXAxis();
  for (int b = 0; b < blocks; ++b) {
    drawYAxis(b);
    output->frameArea(layout->getFrameLeft(), layout->getBlockTop(b), layout->getFrameRight(),
                      layout->getBlockBottom(b), areaCode(b), b);
  }
  for (int b = 0; b < blocks; ++b) drawTargets(b);
  for (int b = 0; b < blocks; ++b) drawData(b);
  output->endGraph(0, caption);
}

// Only data that fit the block's variable are drawn: a damaged file may
// pair an anamnestic block with followed data or the other way round.
const R_RefData* R_GraphDraw::shownRefData(int block) const {
  if (!GR->isRef(block) || !GC->getBlock(block).getRefData().isShown()) return nullptr;
  const R_RefData* data = GR->getReference(block).getData();
  if (data == nullptr) return nullptr;
  bool anamnestic = GR->getBlockVariable(block).isAnamnestic();
  return (anamnestic ? data->isAnamnestic() : data->isFollowed()) ? data : nullptr;
}

int R_GraphDraw::areaCode(int block) const {
  const R_Variable& var = GR->getBlockVariable(block);
  if (GC->getBlock(block).isAnalysedSD()) return areaAnalysis;
  if (var.isAnamnestic()) return areaAnamnestic;
  if (var.isList()) return areaList;
  return areaData;
}

// A list variable that is its own X is described along X by its reference
// and shown along Y.
bool R_GraphDraw::isTransposed(int block) const {
  const R_Variable& var = GR->getBlockVariable(block);
  return var.isList() && var.isOwnX();
}

void R_GraphDraw::drawBackgrounds() {
  for (int b = 0; b < GC->getCount(); ++b)
    output->fillArea(layout->getFrameLeft(), layout->getBlockTop(b), layout->getFrameRight(),
                     layout->getBlockBottom(b), areaCode(b), b);
}

// The area between the lowest and the highest line is shaded: a strip
// across the single line of anamnestic data, one strip at each value of a
// transposed block, and else a band from each X to the next.
void R_GraphDraw::drawRefArea(int block, const R_RefData& data) {
  output->setClip(layout->getFrameLeft(), layout->getBlockBottom(block), layout->getFrameRight(),
                  layout->getBlockTop(block));
  double low = 0, high = 0;
  if (GR->getBlockVariable(block).isAnamnestic()) {
    const int h = output->getFontHeight(fontYNumber) / 2, y = layout->toPixelY(block, 1);
    if (lineBand(data, -1, low, high))
      output->drawBand(layout->toPixelX(low), y - h, y + h, layout->toPixelX(high), y - h, y + h, 1);
    return;
  }
  if (isTransposed(block)) {
    const int h = output->getFontHeight(fontYNumber) / 2;
    for (int i = 0; i < data.getXCount(); ++i) {
      if (!data.getX(i).isDefined()) continue;
      const int y = layout->toPixelY(block, data.getX(i).getValue());
      if (lineBand(data, i, low, high))
        output->drawBand(layout->toPixelX(low), y - h, y + h, layout->toPixelX(high), y - h, y + h, 1);
    }
    return;
  }
  bool has_previous = false;
  double previous_x = 0, previous_low = 0, previous_high = 0;
  for (int i = 0; i < data.getXCount(); ++i) {
    if (!data.getX(i).isDefined() || !lineBand(data, i, low, high)) continue;
    const double x = data.getX(i).getValue();
    if (has_previous)
      output->drawBand(layout->toPixelX(previous_x), layout->toPixelY(block, previous_low),
                       layout->toPixelY(block, previous_high), layout->toPixelX(x), layout->toPixelY(block, low),
                       layout->toPixelY(block, high), 0);
    has_previous = true;
    previous_x = x, previous_low = low, previous_high = high;
  }
}

bool R_GraphDraw::lineBand(const R_RefData& data, int index_x, double& low, double& high) const {
  bool found = false;
  for (int line = 0; line < data.getLineCount(*format); ++line) {
    R_Number value;
    if (index_x < 0)
      data.getLineValue(line, *format, value);
    else
      data.getLineValue(index_x, line, *format, value);
    if (!value.isDefined()) continue;
    const double v = value.getValue();
    if (!found || v < low) low = v;
    if (!found || v > high) high = v;
    found = true;
  }
  return found;
}

// Anamnestic and list blocks have no horizontal grid; an SD block has its
// main line at 0 and fine lines at the other steps.
void R_GraphDraw::drawGrid(int block) {
  const int top = layout->getBlockTop(block), bottom = layout->getBlockBottom(block);
  const int left = layout->getFrameLeft(), right = layout->getFrameRight();
  const R_Number& precision = GR->getXVariable().getPrecision();
  const double tol = precision.isDefined() ? precision.getValue() / 10 : kDefaultTolerance;
  const double x_min = GR->getXMin().getValue(), x_step = GR->getXStep().getValue();
  if (GR->isXsmall()) {
    forEachStep(GR->getXMin(), GR->getXMax(), GR->getXSmall(), [&](double x) {
      const int px = layout->toPixelX(x);
      if (std::fmod(x - x_min, x_step) > tol) output->drawRasterLine(px, top, px, bottom, rasterFine);
    });
  }
  forEachStep(GR->getXMin(), GR->getXMax(), GR->getXStep(), [&](double x) {
    const int px = layout->toPixelX(x);
    output->drawRasterLine(px, top, px, bottom, rasterMain);
  });
  const R_Variable& var = GR->getBlockVariable(block);
  const R_Number &y_min = GR->getYMin(block), &y_max = GR->getYMax(block), &y_step = GR->getYStep(block);
  if (GC->getBlock(block).isAnalysedSD()) {
    forEachStep(y_min, y_max, y_step, [&](double y) {
      const int py = layout->toPixelY(block, y);
      output->drawRasterLine(left, py, right, py, y == 0 ? rasterMain : rasterFine);
    });
    return;
  }
  if (var.isAnamnestic() || var.isList()) return;
  if (GR->isYsmall(block)) {
    forEachStep(y_min, y_max, GR->getYSmall(block), [&](double y) {
      const int py = layout->toPixelY(block, y);
      if (std::fmod(y - y_min.getValue(), y_step.getValue()) > tol)
        output->drawRasterLine(left, py, right, py, rasterFine);
    });
  }
  forEachStep(y_min, y_max, y_step, [&](double y) {
    const int py = layout->toPixelY(block, y);
    output->drawRasterLine(left, py, right, py, rasterMain);
  });
}

// The central lines go first, so that their labels win the places.
void R_GraphDraw::drawRefLines(int block, const R_RefData& data) {
  const int count = data.getLineCount(*format);
  R_GraphTextMap map(count);
  const R_Variable& var = GR->getBlockVariable(block);
  const struct {
    int line_class, style;
  } passes[] = {{0, 0}, {1, 0}, {2, 1}};
  for (const auto& pass : passes) {
    for (int line = 0; line < count; ++line) {
      if (data.getLineClass(line, *format) != pass.line_class) continue;
      if (var.isAnamnestic())
        drawRefLinesAnamnestic(block, data, line, pass.style, map);
      else if (isTransposed(block))
        drawRefLinesTransposed(block, data, line, pass.style, map);
      else
        drawRefLinesOverX(block, data, line, pass.style, map);
    }
  }
}

// A short upright stroke at the line's value, labelled below.
void R_GraphDraw::drawRefLinesAnamnestic(int block, const R_RefData& data, int line, int style,
                                         R_GraphTextMap& map) {
  const int h = output->getFontHeight(fontYNumber) / 2;
  R_Number value;
  data.getLineValue(line, *format, value);
  if (!value.isDefined()) return;
  const int y = layout->toPixelY(block, 1), x = layout->toPixelX(value.getValue());
  output->drawRefLine(x, y - h, x, y + h, style);
  const int font = style == 1 ? fontRefOtherShort : fontRefMainShort;
  const char* label = data.getLineText(line, *format).get();
  if (map.add(x, y + h, label, *output, font, 2, 0)) output->drawText(x, y + h, 0, 2, font, label);
}

// A short upright stroke at the line's value for each value of the list,
// labelled under the lowest stroke; a label whose stroke lies outside the
// scale still takes its place but is not drawn.
void R_GraphDraw::drawRefLinesTransposed(int block, const R_RefData& data, int line, int style,
                                         R_GraphTextMap& map) {
  const int h = output->getFontHeight(fontYNumber) / 2;
  bool found = false, lowest_in_scale = false;
  int lowest_x = 0, lowest_y = 0;
  for (int i = 0; i < data.getXCount(); ++i) {
    const R_Number& X = data.getX(i);
    R_Number value;
    if (!X.isDefined()) continue;
    data.getLineValue(i, line, *format, value);
    if (!value.isDefined()) continue;
    const int y = layout->toPixelY(block, X.getValue()), x = layout->toPixelX(value.getValue());
    const bool in_scale = layout->isInScale(block, value, X);
    if (in_scale) output->drawRefLine(x, y - h, x, y + h, style);
    if (!found || y > lowest_y) {
      found = true;
      lowest_x = x, lowest_y = y, lowest_in_scale = in_scale;
    }
  }
  if (!found) return;
  const int font = style == 1 ? fontRefOtherShort : fontRefMainShort;
  const char* label = data.getLineText(line, *format).get();
  if (map.add(lowest_x, lowest_y + h, label, *output, font, 2, 0) && lowest_in_scale)
    output->drawText(lowest_x, lowest_y + h, 0, 2, font, label);
}

// The line from value to value, clipped to the plot, labelled right of its
// rightmost end. The walk leaves out the line at the first x.
void R_GraphDraw::drawRefLinesOverX(int block, const R_RefData& data, int line, int style, R_GraphTextMap& map) {
  bool has_previous = false, has_last = false;
  R_Number previous_x, previous_value;
  int last_x = 0, last_y = 0;
  for (int i = 1; i < data.getXCount(); ++i) {
    const R_Number& X = data.getX(i);
    R_Number value;
    if (!X.isDefined()) continue;
    data.getLineValue(i, line, *format, value);
    if (!value.isDefined()) continue;
    int x0 = 0, y0 = 0, x1 = 0, y1 = 0;
    if (has_previous && layout->clipLine(block, previous_x, previous_value, X, value, x0, y0, x1, y1)) {
      output->drawRefLine(x0, y0, x1, y1, style);
      has_last = true;
      last_x = x1 > x0 ? x1 : x0;
      last_y = x1 > x0 ? y1 : y0;
    }
    has_previous = true;
    previous_x = X, previous_value = value;
  }
  if (!has_last || last_x < 0 || last_y < 0) return;
  const int align = last_y <= layout->getBlockTop(block) ? 0 : last_y >= layout->getBlockBottom(block) ? 1 : 2;
  const int font = style == 1 ? fontRefOther : fontRefMain;
  const char* label = data.getLineText(line, *format).get();
  if (map.add(last_x, last_y, label, *output, font, 0, align)) output->drawText(last_x, last_y, align, 0, font, label);
}

// Under the last block. A number that would lie on its neighbour is left
// out, its tick is drawn all the same.
void R_GraphDraw::drawXAxis() {
  const int t = output->getHeightMetric(0) / 2;
  const int b = layout->getBlockBottom(GC->getCount() - 1);
  const R_Variable& var = GR->getXVariable();
  R_GraphTextMap map(GR->getXCellCount());
  forEachStep(GR->getXMin(), GR->getXMax(), GR->getXStep(), [&](double x) {
    const int px = layout->toPixelX(x);
    R_String text;
    var.formatValue(R_Number(x), text, false);
    if (map.add(px, b + t, text.get(), *output, fontXNumber, 2, 0))
      output->drawText(px, b + t, 0, 2, fontXNumber, text.get());
    output->drawRasterLine(px, b - t, px, b + t, rasterTick);
  });
  const std::string caption = named(var.getName().get(), var.getUnit().get());
  if (!caption.empty()) output->drawText(layout->getFrameRight(), b - t, 1, 1, fontCaption, caption.c_str());
}

// Numbers and ticks left of the frame, in SD texts for an SD block; an
// anamnestic block has no Y scale and shows only its caption.
void R_GraphDraw::drawYAxis(int block) {
  const int t = output->getWidthMetric(2) / 2;
  const int frame_left = layout->getFrameLeft(), lx = frame_left - t;
  const bool sd = GC->getBlock(block).isAnalysedSD();
  if (!GR->getBlockVariable(block).isAnamnestic()) {
    R_GraphTextMap map(GR->getYCellCount(block));
    forEachStep(GR->getYMin(block), GR->getYMax(block), GR->getYStep(block), [&](double y) {
      const int py = layout->toPixelY(block, y);
      R_String text;
      if (sd) {
        char buffer[64];
        R_Probability::formatSD(buffer, R_Number(y));
        text = buffer;
      } else if (GR->isVarY(block)) {
        GR->getYVariable(block).formatValue(R_Number(y), text, false);
      }
      if (map.add(lx, py, text.get(), *output, fontYNumber, 1, 2)) output->drawText(lx, py, 2, 1, fontYNumber, text.get());
      output->drawRasterLine(frame_left - t, py, frame_left + t, py, rasterTick);
    });
  }
  const std::string caption = yCaption(block);
  if (!caption.empty()) output->drawText(frame_left + t, layout->getBlockTop(block), 0, 0, fontCaption, caption.c_str());
}

std::string R_GraphDraw::yCaption(int block) const {
  if (GR->isVarY(block)) {
    const R_Variable& var = GR->getYVariable(block);
    return named(var.getName().get(), var.getUnit().get());
  }
  if (GC->getBlock(block).isAnalysedSD())
    return named(GR->getBlockVariable(block).getName().get(), output->getSDAppend(0));
  return std::string();
}

// Target values are not clipped: a target beyond the scale stands where it
// falls.
void R_GraphDraw::drawTargets(int block) {
  const int w = output->getWidthMetric(3);
  const int mid = layout->getFrameRight() + w / 2, tx = layout->getFrameRight() + w;
  int py[R_graphBlockTargetCount] = {0, 0, 0};
  bool defined[R_graphBlockTargetCount] = {false, false, false};
  for (int t = 0; t < R_graphBlockTargetCount; ++t) {
    const R_Number& value = CALC->getTarget(block, t);
    if (!value.isDefined()) continue;
    defined[t] = true;
    py[t] = layout->toPixelY(block, value.getValue());
    output->drawText(tx, py[t], 2, 0, fontTarget, GC->getBlock(block).getTarget(t).getName().get());
  }
  if (defined[0]) output->drawRangeBar(mid, py[0], py[0], 1);
  if (defined[1] && defined[2]) output->drawRangeBar(mid, py[1], py[2], 0);
}

// Secondary plots lie under the primary one.
void R_GraphDraw::drawData(int block) {
  for (int i = 0; i < CALC->getSecondaryCount(block); ++i) drawPlot(block, CALC->getSecondary(block, i), 1);
  if (CALC->hasPrimary(block)) drawPlot(block, CALC->getPrimary(block), 0);
}

// A scalar is an anamnestic value, marked on the block's one line; a series
// is drawn as lines and marks as the plot asks.
void R_GraphDraw::drawPlot(int block, const R_GraphPlotCalculated& value, int series) {
  const R_GraphPlot& plot = value.getPlot();
  if (value.isScalar()) {
    if (GR->getBlockVariable(block).isAnamnestic())
      output->drawMark(layout->toPixelX(value.getScalar().getValue()), layout->toPixelY(block, 1), series,
                       plot.isSmall());
    return;
  }
  if (!value.isXY()) return;
  const bool swap = GR->isVarY(block) && GR->getYVariable(block).isOwnX();
  if (plot.isConnected()) drawLines(block, value, swap, series);
  if (plot.hasMarks()) drawMarks(block, value, swap, series);
}

// Each point with both numbers is joined to the last such point before it;
// the line is cut at the plot's edges.
void R_GraphDraw::drawLines(int block, const R_CalcValue& value, bool swap, int series) {
  R_Number previous_x, previous_y;
  for (int i = 0; i < value.getN(); ++i) {
    const R_CalcPoint& point = value.getPoint(i);
    const R_Number& x = swap ? point.getY() : point.getX();
    const R_Number& y = swap ? point.getX() : point.getY();
    if (!previous_x.isDefined() || !previous_y.isDefined()) {
      previous_x = x, previous_y = y;
      continue;
    }
    if (!x.isDefined() || !y.isDefined()) continue;
    int x0 = 0, y0 = 0, x1 = 0, y1 = 0;
    if (layout->clipLine(block, previous_x, previous_y, x, y, x0, y0, x1, y1))
      output->drawDataLine(x0, y0, x1, y1, series);
    previous_x = x, previous_y = y;
  }
}

// Marks and arrows outside the scale are left out whole.
void R_GraphDraw::drawMarks(int block, const R_GraphPlotCalculated& value, bool swap, int series) {
  const bool arrows = value.hasArrow() && value.getArrow().isXY();
  for (int i = 0; i < value.getN(); ++i) {
    const R_CalcPoint& point = value.getPoint(i);
    const R_Number& x = swap ? point.getY() : point.getX();
    const R_Number& y = swap ? point.getX() : point.getY();
    if (!x.isDefined() || !y.isDefined()) continue;
    const int px = layout->toPixelX(x.getValue()), py = layout->toPixelY(block, y.getValue());
    if (arrows && i < value.getArrow().getN()) {
      const R_CalcPoint& target = value.getArrow().getPoint(i);
      const R_Number& ax = swap ? target.getY() : target.getX();
      const R_Number& ay = swap ? target.getX() : target.getY();
      if (layout->isInScale(block, ax, ay))
        output->drawDataArrow(px, py, layout->toPixelX(ax.getValue()), layout->toPixelY(block, ay.getValue()), series);
    }
    if (layout->isInScale(block, x, y)) output->drawMark(px, py, series, value.getPlot().isSmall());
  }
}
