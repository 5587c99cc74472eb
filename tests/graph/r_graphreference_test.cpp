#include "graph/r_graphreference.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "graph/r_graphplot.h"
#include "knowledge/r_reference.h"
#include "knowledge/r_variable.h"
#include "tests/graph/graph_fixture.h"

namespace {

typedef R_GraphReference::Scale Scale;
std::string text(const R_Number& number) { return numberText(number); }

std::string id(const R_File& f, const R_Variable& var) { return f.getStatistics().getVarName(var.getIndex()); }

// "min max step small"
std::string text(const Scale& scale) {
  return text(scale.min) + " " + text(scale.max) + " " + text(scale.step) + " " + text(scale.small);
}

// " scalar 179.5" or " (x y age)" per point, "?" for undefined.
std::string valueText(const R_CalcValue& value) {
  if (value.isScalar()) return " scalar " + text(value.getScalar());
  std::string points;
  for (int i = 0; i < value.getN(); ++i) {
    const R_CalcPoint& p = value.getPoint(i);
    points += " (" + text(p.getX()) + " " + text(p.getY()) + " " + text(p.getAge()) + ")";
  }
  return points;
}

// "plot 2 (..)(..) arrow (..)": the plot's index in its block, its value and arrows.
std::string plotText(const R_GraphBlockData& block, const R_GraphPlotCalculated& plot) {
  int index = 0;
  while (index < block.getPlotCount() && &block.getPlot(index) != &plot.getPlot()) ++index;
  std::string line = "plot " + std::to_string(index) + valueText(plot);
  if (plot.hasArrow()) line += " arrow" + valueText(plot.getArrow());
  return line;
}

// Everything the calculator holds, block by block in the order of adding,
// then the ranks and the X range.
Lines calculatorDump(const R_GraphContainer& container, const R_GraphCalculator& calculator) {
  Lines lines;
  for (int b = 0; b < container.getCount(); ++b) {
    const R_GraphBlockData& block = container.getBlock(b);
    lines.push_back("block " + std::to_string(b));
    if (calculator.isPrimary(b)) lines.push_back(" primary " + plotText(block, calculator.getPrimary(b)));
    for (int s = 0; s < calculator.getSecondaryCount(b); ++s)
      lines.push_back(" secondary " + plotText(block, calculator.getSecondary(b, s)));
    lines.push_back(" targets " + text(calculator.getTarget(b, 0)) + " " + text(calculator.getTarget(b, 1)) + " " +
                    text(calculator.getTarget(b, 2)));
  }
  std::string ranks = "ranks";
  for (int i = 0; i < container.getCount(); ++i) ranks += " " + std::to_string(container.getRank(i));
  lines.push_back(ranks);
  lines.push_back("x " + text(calculator.getMinX()) + " " + text(calculator.getMaxX()));
  return lines;
}

// Per block in the order of adding its reference, chosen variant, Y
// variable and Y scale; then the X variable and scale. Only "failed" when
// the stage failed.
Lines referenceDump(const R_File& f, const R_GraphContainer& container, const R_GraphReference& reference) {
  if (!reference.ok()) return {"failed"};
  Lines lines;
  for (int b = 0; b < container.getCount(); ++b) {
    std::string ref = reference.isRef(b) ? reference.getReference(b).getName().get() : "-";
    std::string y = reference.isVarY(b) ? id(f, reference.getYVariable(b)) : "-";
    lines.push_back("block " + std::to_string(b) + " ref " + ref + " variant " + std::to_string(reference.getVariant(b)) +
                    " Y " + y + " " + text(reference.getYScale(b)));
  }
  lines.push_back("X " + id(f, reference.getXVariable()) + " " + text(reference.getXScale()));
  return lines;
}

// Each section of stages.txt: what its stage holds for its graph, proband
// and block.
TEST_F(GraphTest, TheStagesHoldWhatIsWorkedOutByHand) {
  for (const auto& section : sections("stages.txt")) {
    SCOPED_TRACE(section.first);
    std::istringstream name(section.first);
    std::string stage, id, who;
    int only = 0;
    name >> stage >> id >> who >> only;
    GraphStages stages(*file, proband(who), graph(id), only);
    EXPECT_EQ(joined(section.second), joined(stage == "calculator" ? calculatorDump(stages.container, *stages.calculator)
                                                               : referenceDump(*file, stages.container, *stages.reference)));
  }
}

TEST(GraphScaleTest, AutomaticAndSDScales) {
  const R_Number none;
  const struct {
    Scale scale;
    const char* expected;
  } rows[] = {
      // 100 alone: 95-105, raw 2, magnitude 1, q 2, step 2: 94 to 106.
      {R_GraphReference::autoScale(none, 100, 100), "94 106 2 ?"},
      // Precision 0.1: minimum 1, 99-101, raw 0.4, q 4, step 0.5.
      {R_GraphReference::autoScale(0.1, 100, 100), "99 101 0.5 ?"},
      {R_GraphReference::autoScale(none, 90, 1), "0 100 20 ?"},
      // No width and a precision of 0: no scale rather than a grid of nothing.
      {R_GraphReference::autoScale(0.0, 7, 7), "? ? ? ?"},
      {R_GraphReference::sdScale(-2.4, 1.0), "-3 3 1 ?"},
      {R_GraphReference::sdScale(0.0, 5.5), "-6 6 1 ?"},
      {R_GraphReference::sdScale(-2.0, 2.0), "-2 2 1 ?"},
      {R_GraphReference::sdScale(none, none), "-2 2 1 ?"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.expected);
    EXPECT_EQ(row.expected, text(row.scale));
  }
}

}  // namespace
