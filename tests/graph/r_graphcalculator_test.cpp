#include "graph/r_graphcalculator.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/graph/graph_fixture.h"
#include "tests/support/recording_output.h"

namespace {

std::string text(const R_Number& number) { return numberText(number); }

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

// A block's range on an axis, or with `axis` -1 the X range of the graph;
// over the blocks of graph `id`, or over its block `only` alone. The boy's
// ages and values are worked out in stages.txt.
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
