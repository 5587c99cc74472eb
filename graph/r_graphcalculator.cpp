#include "graph/r_graphcalculator.h"

#include <cassert>

#include "graph/r_graphcontainer.h"
#include "graph/r_graphplot.h"

namespace {

void widen(const R_Number& value, R_Number& min, R_Number& max) {
  if (!value.isDefined()) return;
  if (!min.isDefined() || min.getValue() > value.getValue()) min = value;
  if (!max.isDefined() || max.getValue() < value.getValue()) max = value;
}

const R_Number& coordinate(const R_CalcPoint& point, int axis) {
  switch (axis) {
    case R_GraphCalculator::axisX: return point.getX();
    case R_GraphCalculator::axisY: return point.getY();
  }
  return point.getAge();
}

// Only series count: a scalar has no place on an axis.
void accumulateValue(const R_CalcValue& value, int axis, R_Number& min, R_Number& max) {
  for (int i = 0; i < value.getN(); ++i) {
    const R_CalcPoint& point = value.getPoint(i);
    if (point.isValid()) widen(coordinate(point, axis), min, max);
  }
}

void accumulate(const R_GraphPlotCalculated& plot, int axis, R_Number& min, R_Number& max) {
  accumulateValue(plot, axis, min, max);
  if (plot.hasArrow()) accumulateValue(plot.getArrow(), axis, min, max);
}

bool bothDefined(const R_Number& min, const R_Number& max) { return min.isDefined() && max.isDefined(); }

}  // namespace

R_GraphCalculator::R_GraphCalculator(const R_File& file_in, const R_Proband& proband_in, const R_Number& age_in,
                                     const R_GraphContainer& GC_in)
    : file(file_in), proband(proband_in), age(age_in), GC(&GC_in), success(true) {
  assert(GC->getCount() >= 1);
  data.resize(static_cast<size_t>(GC->getCount()));
  for (int i = 0; i < GC->getCount(); ++i) {
    const R_GraphBlockData& definition = GC->getBlock(i);
    calculateTargets(definition, data[i]);
    calculatePrimary(definition, data[i]);
    calculateSecondary(definition, data[i]);
  }
  calculateRangeX();
}

const R_GraphPlotCalculated& R_GraphCalculator::getPrimary(int block) const {
  assert(isPrimary(block));
  return *data[block].primary;
}

const R_GraphPlotCalculated& R_GraphCalculator::getSecondary(int block, int index) const {
  assert(index >= 0 && index < getSecondaryCount(block));
  return *data[block].secondary[index];
}

const R_Number& R_GraphCalculator::getTarget(int block, int tgt) const {
  assert(tgt >= 0 && tgt < R_graphBlockTargetCount);
  return data[block].target[tgt];
}

// A target is one number: a scalar, or the y of a series with exactly one
// valid point. Any other shape leaves it undefined.
void R_GraphCalculator::calculateTargets(const R_GraphBlockData& definition, Block& block) {
  for (int t = 0; t < R_graphBlockTargetCount; ++t) {
    if (!definition.getTarget(t).isDefined()) continue;
    R_CalcValue value;
    R_GraphPlotCalculated::evaluate(file, proband, age, definition.getTarget(t), value);
    if (value.isScalar()) {
      block.target[t] = value.getScalar();
    } else if (value.isPoint()) {
      block.target[t] = value.getPoint(value.getPointIndex()).getY();
    }
  }
}

// Later primary plots are alternatives: they are not even evaluated once
// one has given a value.
void R_GraphCalculator::calculatePrimary(const R_GraphBlockData& definition, Block& block) {
  for (int p = 0; p < definition.getPlotCount() && !block.primary; ++p) {
    if (definition.getPlot(p).isPrimary()) block.primary = calculatePlot(definition.getPlot(p));
  }
}

void R_GraphCalculator::calculateSecondary(const R_GraphBlockData& definition, Block& block) {
  block.secondary.resize(static_cast<size_t>(definition.getPlotCount()));
  for (int p = 0; p < definition.getPlotCount(); ++p) {
    if (definition.getPlot(p).isPrimary()) continue;
    std::unique_ptr<R_GraphPlotCalculated> value = calculatePlot(definition.getPlot(p));
    if (value) block.secondary[block.secondary_count++] = std::move(value);
  }
}

// The arrows are evaluated whatever the method gave; a defined value keeps
// its undefined arrows.
std::unique_ptr<R_GraphPlotCalculated> R_GraphCalculator::calculatePlot(const R_GraphPlot& plot) const {
  std::unique_ptr<R_GraphPlotCalculated> value(new R_GraphPlotCalculated(plot));
  value->calculate(file, proband, age, plot.getMethod());
  if (plot.hasArrow()) value->calculateArrow(file, proband, age, plot.getArrow());
  if (!value->isDefined()) value.reset();
  return value;
}

void R_GraphCalculator::getRange(int axis, int block, R_Number& min, R_Number& max) const {
  min.setUndefined();
  max.setUndefined();
  const Block& record = data[block];
  if (record.primary) accumulate(*record.primary, axis, min, max);
  for (int s = 0; s < record.secondary_count && !bothDefined(min, max); ++s)
    accumulate(*record.secondary[s], axis, min, max);
}

// Only the primary plot of the first block in rank order that has points
// counts; blocks after it do not widen the range.
void R_GraphCalculator::calculateRangeX() {
  for (int i = 0; i < GC->getCount() && !bothDefined(x_min, x_max); ++i) {
    const Block& record = data[GC->getRank(i)];
    if (record.primary) accumulate(*record.primary, axisX, x_min, x_max);
  }
}
