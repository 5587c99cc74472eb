#include "graph/r_graphreference.h"

#include <gtest/gtest.h>

#include <string>

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

// Per block in the order of adding its reference, chosen variant, Y
// variable and Y scale; then the X variable and scale. Only "failed" when
// the stage failed.
Lines dump(const R_File& f, const R_GraphContainer& container, const R_GraphReference& reference) {
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

// The boy's heights are (age 1.999, 86) and (2.497, 90), his weights 12 at
// 1.999 and 14.1 at 3.001, his one BMI 12/0.86^2 = 16.225 and his one
// Tanner stage 1 at 1.999. The girl has one height, 85 at 1.999.
//
// Worked scales (precision: age 0.01, heights, weights and BMI 0.1, Tanner
// none, so minimum widths 0.1, 1, 1 and 5):
//  ages 1.999-3.001: raw 1.002/5 = 0.2004, magnitude 0.1, q 2.004, step 0.2,
//    from floor(9.995)*0.2 = 1.8, ceil(1.201/0.2 = 6.005) = 7 steps: to 3.2;
//  ages 1.999-2.497: raw 0.0996, magnitude 0.01, q 9.96, step 10*0.01 = 0.1,
//    from 1.9, ceil(0.597/0.1 = 5.97) = 6 steps: to 2.5;
//  weights 12-14.1: raw 0.42, q 4.2, step 0.5, from 12, ceil(4.2) = 5: 14.5;
//  heights 86-90: raw 0.8, q 8, step 1, from 86, 4 steps: 90;
//  BMI 16.225 alone: 15.225-17.225, raw 0.4, step 0.5, from 15, ceil(4.45) = 5
//    steps: 17.5;
//  Tanner 1-90 (arrows to the heights): raw 17.8, magnitude 10, q 1.78,
//    step 20, 0 to ceil(4.5) = 5 steps: 100.
// Variants against the boy's heights (area, points missed): boys 0 (3200, 0),
// 1 (300, 0), 2 (300, 0); on the kept X 1.8-3.2: 224, 84, 84. Girls 0 (20,
// 1: age 1.999 < 2), 1 (10, 2), 2 (1000, 2); for the girl's point: 1 (10, 0,
// 85 is the inclusive end), 0 and 2 miss it.
TEST_F(GraphTest, ReferencesAndScalesForEachBlock) {
  const struct {
    const char* id;
    const char* who;
    int only;
    Lines expected;
  } rows[] = {
      // The weights rank first and give X; the heights are judged on it: of
      // two variants of area 84 the earlier wins. No reference for weights
      // or BMI: their scales come from the data.
      {"ranked", "boy", -1,
       {"block 0 ref Boys' heights variant 1 Y HEIGHT 60 120 10 ?", "block 1 ref - variant -1 Y WEIGHT 12 14.5 0.5 ?",
        "block 2 ref - variant -1 Y BMI 15 17.5 0.5 ?", "X AGE 1.8 3.2 0.2 ?"}},
      // refdata "female" for a boy: the girls' reference, chosen by its age
      // 2.5; the variant missing one point beats those missing two. The
      // anamnestic block keeps its 1 to 1; the SD block's weights (up to
      // 14.1) need the widest SD scale.
      {"plots", "boy", -1,
       {"block 0 ref - variant -1 Y SIBLING_HT 1 1 1 ?", "block 1 ref Girls' heights variant 0 Y HEIGHT 80 100 10 ?",
        "block 2 ref - variant -1 Y TANNER_PH 0 100 20 ?", "block 3 ref - variant -1 Y - -6 6 1 ?",
        "X AGE 2 3 1 ?"}},
      {"plots", "girl", 1, {"block 0 ref Girls' heights variant 1 Y HEIGHT 80 85 5 ?", "X AGE 0 2 1 ?"}},
      // A range asked by the block: the first covering variant, however
      // large; none covers 1 to 30, and the data decide.
      {"ranges", "boy", -1,
       {"block 0 ref Boys' heights variant 0 Y HEIGHT 40 200 20 ?", "block 1 ref - variant -1 Y WEIGHT 12 14.5 0.5 ?",
        "X AGE 0 20 5 ?"}},
      {"uncovered", "boy", -1, {"block 0 ref Boys' heights variant -1 Y HEIGHT 86 90 1 ?", "X AGE 1.9 2.5 0.1 ?"}},
      // Blocks with no X variable, and a weight block without weights or a
      // reference: no X scale.
      {"plots", "boy", 0, {"failed"}},
      {"plots", "boy", 3, {"failed"}},
      {"ranked", "girl", 1, {"failed"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.id) + " " + row.who + " " + std::to_string(row.only));
    GraphStages stages(*file, proband(row.who), graph(row.id), row.only);
    EXPECT_EQ(row.expected, dump(*file, stages.container, *stages.reference));
  }
}

TEST_F(GraphTest, CellsAndUnitsFollowTheScales) {
  GraphStages stages(*file, proband("boy"), graph("plots"));
  const R_GraphReference& reference = *stages.reference;
  ASSERT_TRUE(reference.ok());
  EXPECT_EQ(1, reference.getXCellCount());                 // 2 to 3 by 1
  EXPECT_EQ(5, reference.getYCellCount(2));                // 0 to 100 by 20
  EXPECT_DOUBLE_EQ(0.25, reference.toUnitX(2.25));         // (2.25 - 2)/1
  EXPECT_DOUBLE_EQ(0.75, reference.toUnitY(1, 95.0));      // (95 - 80)/20
  EXPECT_DOUBLE_EQ(-0.25, reference.toUnitY(3, -9.0));     // (-9 + 6)/12
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
