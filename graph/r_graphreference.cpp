#include "graph/r_graphreference.h"

#include <cassert>
#include <cmath>
#include <utility>

#include "formula/r_calcvalue.h"
#include "graph/r_graphblockdata.h"
#include "graph/r_graphcalculator.h"
#include "graph/r_graphcontainer.h"
#include "knowledge/r_file.h"
#include "knowledge/r_granularity.h"
#include "knowledge/r_interval.h"
#include "knowledge/r_reference.h"
#include "knowledge/r_variable.h"
#include "proband/r_proband.h"

namespace {

bool inRange(const R_Number& value, double from, double to) {
  return value.getValue() >= from && value.getValue() <= to;
}

// The valid points of `value` that lie outside the ranges, ends included in
// them. A scalar has no points and misses nothing.
int countMissed(const R_CalcValue& value, double x_from, double x_to, double y_from, double y_to) {
  int missed = 0;
  for (int i = 0; i < value.getN(); ++i) {
    const R_CalcPoint& p = value.getPoint(i);
    if (p.isValid() && (!inRange(p.getX(), x_from, x_to) || !inRange(p.getY(), y_from, y_to))) ++missed;
  }
  return missed;
}

R_GraphReference::Scale scaleOf(const R_Number& min, const R_Number& max, const R_Number& step, const R_Number& small) {
  R_GraphReference::Scale scale;
  scale.min = min, scale.max = max, scale.step = step, scale.small = small;
  return scale;
}

}  // namespace

bool R_GraphReference::Scale::isValid() const {
  if (!min.isDefined() || !max.isDefined() || !step.isDefined() || min.getValue() >= max.getValue()) return false;
  double width = max.getValue() - min.getValue();
  return step.getValue() <= width && (!small.isDefined() || small.getValue() <= width);
}

R_GraphReference::R_GraphReference(const R_GraphContainer& GC_in, const R_GraphCalculator& CALC_in, const R_File& F,
                                   const R_Proband& proband_in)
    : x_variable(-1), GC(&GC_in), CALC(&CALC_in), file(&F), proband(&proband_in), success(true) {
  int count = GC->getCount();
  data.resize(static_cast<size_t>(count));
  std::vector<int> x_vars(static_cast<size_t>(count));
  for (int b = 0; b < count; ++b) {
    findVariables(b, x_vars[b], data[b].y_variable);
    data[b].reference = findReference(b);
  }
  for (int r = 0; r < count && x_variable < 0; ++r) x_variable = x_vars[GC->getRank(r)];
  if (x_variable < 0) {
    success = false;
    return;
  }
  for (int r = 0; r < count && !X.isValid(); ++r) setScale(GC->getRank(r), true);
  if (!X.isValid()) success = false;
  for (int b = 0; b < count; ++b) {
    if (!data[b].Y.isValid()) setScale(b, false);
  }
  // An anamnestic block has no height in the graph and needs no Y scale.
  for (int b = 0; b < count; ++b) {
    if (!getBlockVariable(b).isAnamnestic() && !data[b].Y.isValid()) success = false;
  }
}

const R_Reference& R_GraphReference::getReference(int block) const {
  assert(isRef(block));
  return *file->getReference(data[block].reference);
}

const R_Variable& R_GraphReference::getBlockVariable(int block) const {
  return *file->getVariable(GC->getBlock(block).getVariable());
}

const R_Variable& R_GraphReference::getXVariable() const {
  assert(ok() && x_variable >= 0);
  return *file->getVariable(x_variable);
}

const R_Variable& R_GraphReference::getYVariable(int block) const {
  assert(isVarY(block));
  return *file->getVariable(data[block].y_variable);
}

// A list variable that is its own X is described along X by its reference
// but shown along Y: its axes swap.
void R_GraphReference::findVariables(int block, int& x_var, int& y_var) const {
  const R_Variable& var = getBlockVariable(block);
  const R_XYVar& xy = var.getXYVar();
  x_var = -1, y_var = -1;
  if (var.isAnamnestic()) {
    y_var = xy.getAVar();
  } else if (!var.isList() || var.isOwnY()) {
    x_var = xy.getXVar(), y_var = xy.getYVar();
  } else if (var.isOwnX()) {
    x_var = xy.getYVar(), y_var = xy.getXVar();
  }
  if (GC->getBlock(block).isAnalysedSD()) y_var = -1;
  // A damaged binary file may name variables that the file lacks.
  if (x_var >= file->getVarCount()) x_var = -1;
  if (y_var >= file->getVarCount()) y_var = -1;
}

int R_GraphReference::findReference(int block) const {
  const R_GraphBlockData& definition = GC->getBlock(block);
  if (definition.isAnalysedSD()) return -1;
  const R_GraphRefData& refdata = definition.getRefData();
  int sex = refdata.isSexDefined() ? refdata.getSex() : proband->getSex();
  if (sex != 0 && sex != 1) return -1;
  const R_Variable& var = getBlockVariable(block);
  int found = -1;
  if (refdata.getAge().isDefined()) {
    found = file->findReference(sex, refdata.getAge(), var.getXYVar());
  } else if (proband->isSexDefined()) {
    R_Number min, max;
    CALC->getRange(R_GraphCalculator::axisAge, block, min, max);
    found = file->findReference(sex, R_Interval(min, max), var.getXYVar());
  }
  if (found < 0) found = file->findReference(sex, R_Number(), var.getXYVar());
  if (found < 0) return -1;
  // The data must be of the variable's kind: one line for an anamnestic
  // variable, a course over X for a followed one.
  const R_RefData* ref = file->getReference(found)->getData();
  if (ref == nullptr) return -1;
  if (var.isAnamnestic() ? ref->isFollowed() : ref->isAnamnestic()) return -1;
  return found;
}

void R_GraphReference::setScale(int block, bool first) {
  if (GC->getBlock(block).isAnalysedSD()) {
    setScaleSD(block, first);
  } else if (getBlockVariable(block).isAnamnestic()) {
    // Deliberately not a valid scale: Y has no meaning in such a block.
    data[block].Y = scaleOf(1.0, 1.0, 1.0, R_Number());
  } else {
    setScaleFromReference(block, first);
  }
}

void R_GraphReference::setScaleSD(int block, bool first) {
  R_Number min, max;
  CALC->getRange(R_GraphCalculator::axisY, block, min, max);
  data[block].Y = sdScale(min, max);
  if (first && !X.isValid() && CALC->getMinX().isDefined())
    autoScaleX(CALC->getMinX().getValue(), CALC->getMaxX().getValue());
}

void R_GraphReference::setScaleFromReference(int block, bool first) {
  Block& record = data[block];
  record.variant = isRef(block) ? chooseVariant(block, !first, false) : -1;
  if (record.variant >= 0) {
    applyVariant(block, getReference(block).getGranularity(record.variant), first);
    return;
  }
  const R_Variable& var = getBlockVariable(block);
  R_Number min, max;
  if (first) {
    if (var.isList() && var.isOwnX()) {
      // The data's y values are what lies along X.
      CALC->getRange(R_GraphCalculator::axisY, block, min, max);
      if (min.isDefined() && max.isDefined()) autoScaleX(min.getValue(), max.getValue());
    } else if (CALC->getMinX().isDefined()) {
      autoScaleX(CALC->getMinX().getValue(), CALC->getMaxX().getValue());
    }
  }
  if (var.isList()) {
    record.Y = listScale(block);
    return;
  }
  CALC->getRange(R_GraphCalculator::axisY, block, min, max);
  if (min.isDefined() && max.isDefined()) {
    R_Number precision = isVarY(block) ? getYVariable(block).getPrecision() : R_Number();
    record.Y = autoScale(precision, min.getValue(), max.getValue());
  }
}

void R_GraphReference::applyVariant(int block, const R_Granularity& g, bool first) {
  const R_Variable& var = getBlockVariable(block);
  if (first) {
    if (var.isList() && var.isOwnX()) {
      if (g.isYDefined()) X = scaleOf(g.getYFrom(), g.getYTo(), g.getYStep(), g.getYSmall());
    } else if (g.isXDefined()) {
      X = scaleOf(g.getXFrom(), g.getXTo(), g.getXStep(), g.getXSmall());
    }
  }
  if (var.isList()) {
    data[block].Y = listScale(block);
  } else if (g.isYDefined()) {
    data[block].Y = scaleOf(g.getYFrom(), g.getYTo(), g.getYStep(), g.getYSmall());
  }
}

R_GraphReference::Scale R_GraphReference::listScale(int block) const {
  const R_Interval& values = getBlockVariable(block).getInterval();
  return scaleOf(values.getMin(), values.getMax(), 1.0, R_Number());
}

void R_GraphReference::autoScaleX(double a, double b) {
  X = autoScale(file->getVariable(x_variable)->getPrecision(), a, b);
}

// With a range asked by the block, the first variant that covers it wins
// and the proband's points play no part. Otherwise the variant that holds
// the most points wins, then the one with the smallest picture, then the
// earlier one.
int R_GraphReference::chooseVariant(int block, bool keepX, bool keepY) const {
  const R_Reference& ref = getReference(block);
  const R_GraphRefData& refdata = GC->getBlock(block).getRefData();
  const R_Variable& var = getBlockVariable(block);
  if (refdata.isRangeX()) {
    double from = refdata.getXFrom().getValue(), to = refdata.getXTo().getValue();
    if (var.isOwnX()) return ref.findGranularityY(from, to);
    if (var.isOwnY()) return ref.findGranularityX(from, to);
    return -1;
  }
  if (!CALC->hasPrimary(block)) return ref.getDefaultGranularity();
  int best = -1;
  double best_area = 0.0;
  int best_missed = 0;
  for (int g = 0; g < ref.getGranularityCount(); ++g) {
    double area = 0.0;
    int missed = 0;
    if (!judgeVariant(ref.getGranularity(g), keepX, keepY, block, area, missed)) continue;
    if (best < 0 || missed < best_missed || (missed == best_missed && area < best_area)) {
      best = g, best_area = area, best_missed = missed;
    }
  }
  return best;
}

// A variant without Y numbers, judged on its own Y, is not judged at all:
// it has no picture to compare, and a made-up one could win by accident.
bool R_GraphReference::judgeVariant(const R_Granularity& g, bool keepX, bool keepY, int block, double& area,
                                    int& missed) const {
  const Scale& Y = data[block].Y;
  if (keepX ? !(X.min.isDefined() && X.max.isDefined()) : !g.isXDefined()) return false;
  if (keepY ? !(Y.min.isDefined() && Y.max.isDefined()) : !g.isYDefined()) return false;
  double x_from = (keepX ? X.min : g.getXFrom()).getValue(), x_to = (keepX ? X.max : g.getXTo()).getValue();
  double y_from = (keepY ? Y.min : g.getYFrom()).getValue(), y_to = (keepY ? Y.max : g.getYTo()).getValue();
  area = (x_to - x_from) * (y_to - y_from);
  const R_GraphPlotCalculated& primary = CALC->getPrimary(block);
  missed = countMissed(primary, x_from, x_to, y_from, y_to);
  if (primary.hasArrow() && primary.getArrow().isXY())
    missed += countMissed(primary.getArrow(), x_from, x_to, y_from, y_to);
  return true;
}

R_GraphReference::Scale R_GraphReference::autoScale(const R_Number& precision, double a, double b) {
  if (a > b) std::swap(a, b);
  double minimum = precision.isDefined() ? precision.getValue() * 10 : 5.0;
  if (b - a < minimum) a -= minimum, b += minimum;
  double raw = (b - a) / 5;
  // A zero or unreadable width gives no scale rather than a grid of nothing.
  if (!(raw > 0) || !std::isfinite(raw)) return Scale();
  double magnitude = std::pow(10.0, std::floor(std::log10(raw)));
  double q = raw / magnitude;
  double nice = q <= 1.5 ? 1 : q <= 3.5 ? 2 : q <= 7.5 ? 5 : 10;
  double step = nice * magnitude;
  double from = std::floor(a / step) * step;
  double count = std::ceil((b - from) / step);
  return scaleOf(from, count * step + from, step, R_Number());
}

R_GraphReference::Scale R_GraphReference::sdScale(const R_Number& min, const R_Number& max) {
  int limit = 2;
  if (min.isDefined() && max.isDefined()) {
    for (limit = 2; limit <= 5; ++limit) {
      if (max.getValue() <= limit && min.getValue() >= -limit) break;
    }
  }
  return scaleOf(-limit, limit, 1.0, R_Number());
}

// A damaged file may give a grid too fine to count; the count stays an int.
int R_GraphReference::cellCount(const Scale& scale) {
  double cells = std::floor((scale.max.getValue() - scale.min.getValue()) / scale.step.getValue());
  if (!(cells > -1e9 && cells < 1e9)) return 0;
  return static_cast<int>(cells);
}

double R_GraphReference::toUnit(const Scale& scale, double value) {
  return (value - scale.min.getValue()) / (scale.max.getValue() - scale.min.getValue());
}
