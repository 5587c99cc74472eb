#include "graph/r_graphcalculator.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "graph/r_graphplot.h"
#include "tests/graph/graph_fixture.h"
#include "tests/support/recording_output.h"

namespace {

std::string text(const R_Number& number) { return numberText(number); }

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
Lines dump(const R_GraphContainer& container, const R_GraphCalculator& calculator) {
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

TEST(GraphContainerTest, AnEmptyContainerDoesNotPrepareAndExtraBlocksAreDropped) {
  R_GraphContainer container(1);
  EXPECT_FALSE(container.prepare());
  R_GraphBlockData a(0, 5, 1), b(0, 9, 1);
  container.add(&a);
  container.add(&b);
  ASSERT_TRUE(container.prepare());
  EXPECT_EQ(1, container.getCount());
  EXPECT_EQ(&a, &container.getBlock(0));
}

TEST_F(GraphTest, GreaterPrioritiesRankFirstAndEqualOnesKeepTheirOrder) {
  const struct {
    const char* id;
    std::vector<int> ranks;
  } rows[] = {
      {"ranked", {1, 2, 0}},    // priorities 10, 30, 20
      {"equal", {1, 3, 0, 2}},  // priorities 5, 9, 5, 9
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.id);
    GraphStages stages(*file, proband("boy"), graph(row.id));
    std::vector<int> ranks;
    for (int i = 0; i < stages.container.getCount(); ++i) ranks.push_back(stages.container.getRank(i));
    EXPECT_EQ(row.ranks, ranks);
  }
}

// The boy (born 1.1.2010) was seen on 1.1.2012, 1.7.2012 and 1.1.2013: after
// 730, 912 and 1096 days, ages 730/365.25 = 1.999, 912/365.25 = 2.497 and
// 1096/365.25 = 3.001 (3 decimals). Heights 86, 90 and none; weights 12,
// none, 14.1; Tanner stage 1 at the first visit only; parents 180 and 166
// cm, so the target height is (180 + 166 + 13)/2 = 179.5. No sibling.
const char* const kHeights = " (1.999 86 1.999) (2.497 90 2.497) (3.001 ? 3.001)";
const char* const kWeights = " (1.999 12 1.999) (2.497 ? 2.497) (3.001 14.1 3.001)";
const char* const kTanner = " (1.999 1 1.999) (2.497 ? 2.497) (3.001 ? 3.001)";

TEST_F(GraphTest, TheCalculatorWorksOutEveryBlockOnce) {
  GraphStages stages(*file, proband("boy"), graph("plots"));
  ASSERT_TRUE(stages.calculator->ok());
  Lines expected = {
      // No sibling's height: neither a primary plot nor targets.
      "block 0", " targets ? ? ?",
      // Plot 0 gives nothing, so plot 2 is the primary one and plot 5 is
      // never looked at; the secondary plot 3 gives nothing either. The
      // heights have two valid points (no target); the Tanner stage one.
      "block 1", std::string(" primary plot 2") + kHeights, std::string(" secondary plot 1") + kWeights,
      std::string(" secondary plot 4") + kHeights, " targets 179.5 ? 1",
      "block 2", std::string(" primary plot 0") + kTanner + " arrow" + kHeights, " targets ? ? ?",
      "block 3", " primary plot 0 scalar 179.5", std::string(" secondary plot 1") + kWeights,
      std::string(" secondary plot 2") + kHeights, " targets ? ? ?",
      // Priorities 900, 800, 1, 2. The first ranked block has no data, so
      // the X range is that of the valid heights of the second.
      "ranks 0 1 3 2", "x 1.999 2.497"};
  EXPECT_EQ(expected, dump(stages.container, *stages.calculator));
}

// A block's range on an axis, or with `axis` -1 the X range of the graph;
// over the blocks of graph `id`, or over its block `only` alone.
TEST_F(GraphTest, RangesComeFromThePrimaryPlotOrElseFromTheSecondaryOnesInTurn) {
  const struct {
    const char* id;
    int only;
    int axis;
    int block;
    const char* range;
  } rows[] = {
      {"plots", -1, R_GraphCalculator::axisY, 1, "86 90"},          // the primary heights; weights not looked at
      {"plots", -1, R_GraphCalculator::axisAge, 1, "1.999 2.497"},  // only valid points count
      {"plots", -1, R_GraphCalculator::axisX, 2, "1.999 2.497"},    // the Tanner point and the arrows' heights
      {"plots", -1, R_GraphCalculator::axisY, 2, "1 90"},
      {"plots", -1, R_GraphCalculator::axisY, 3, "12 14.1"},  // a scalar primary: the first secondary alone
      {"plots", -1, R_GraphCalculator::axisY, 0, "? ?"},
      {"plots", 2, -1, 0, "1.999 2.497"},  // one Tanner point at 1.999; its arrows reach 2.497
      {"plots", 0, -1, 0, "? ?"},          // no data at all
      {"plots", 3, -1, 0, "? ?"},          // a scalar primary; the secondary plots don't count
      {"ranked", -1, -1, 0, "1.999 3.001"},  // the weights rank first; the heights are not added
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.id) + " " + std::to_string(row.only) + " axis " + std::to_string(row.axis) +
                 " of block " + std::to_string(row.block));
    GraphStages stages(*file, proband("boy"), graph(row.id), row.only);
    const R_GraphCalculator& calculator = *stages.calculator;
    R_Number min(-1.0), max(-1.0);
    if (row.axis >= 0) calculator.getRange(row.axis, row.block, min, max);
    if (row.axis < 0) min = calculator.getMinX(), max = calculator.getMaxX();
    EXPECT_EQ(row.range, text(min) + " " + text(max));
  }
}

TEST_F(GraphTest, ConditionsDropBlocksAndAGraphWithoutRoomOnlyAsksTheOutput) {
  auto boy = proband("boy");
  auto girl = proband("girl");
  const R_TextGraph& girls = graph("girls");
  // Block 0 holds for girls only; block 1 asks a sibling's height, which
  // nobody has: a condition that cannot be worked out drops its block.
  EXPECT_FALSE(girls.isBlockAvailable(*file, *boy, R_Number(3.0), girls.getBlock(0)));
  EXPECT_TRUE(girls.isBlockAvailable(*file, *girl, R_Number(3.0), girls.getBlock(0)));
  EXPECT_FALSE(girls.isBlockAvailable(*file, *girl, R_Number(3.0), girls.getBlock(1)));
  EXPECT_TRUE(graph("ranked").isBlockAvailable(*file, *boy, R_Number(3.0), graph("ranked").getBlock(0)));
  for (const char* id : {"girls", "ranked", "plots"}) {
    for (const R_Proband* who : {boy.get(), girl.get()}) {
      SCOPED_TRACE(id);
      RecordingOutput output;
      EXPECT_TRUE(graph(id).write(*file, *who, R_Number(3.0), output));
      // Measures for the layout; with every measure 100 the image is 100
      // wide, too narrow for a plot, so nothing is drawn.
      for (const std::string& call : output.calls())
        EXPECT_TRUE(call.rfind("get", 0) == 0 || call == "isGraphInSD") << call;
    }
  }
}

}  // namespace
