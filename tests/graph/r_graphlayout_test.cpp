#include "graph/r_graphlayout.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "knowledge/r_graphreflines.h"
#include "tests/graph/graph_fixture.h"
#include "tests/support/recording_output.h"

namespace {

// The stages up to the layout for the boy and graph "plots", on an output
// with the usual measures (image 512, indent 10, ticks 8, target space 16,
// cell 3 wide and 2 high, head space 6), fonts 10 high and 6 per byte.
class GraphLayoutTest : public GraphTest {
 protected:
  void SetUp() override {
    stages.reset(new GraphStages(*file, proband("boy"), graph("plots")));
    ASSERT_TRUE(stages->reference->ok());
    const int widths[] = {512, 10, 8, 16, 3}, heights[] = {8, 2, 6};
    for (int i = 0; i < 5; ++i) output.setWidthMetric(i, widths[i]);
    for (int i = 0; i < 3; ++i) output.setHeightMetric(i, heights[i]);
  }
  std::unique_ptr<R_GraphLayout> layout() {
    return std::unique_ptr<R_GraphLayout>(new R_GraphLayout(stages->container, *stages->reference, *stages->calculator,
                                                             file->getGraphRefLines().getFormat(R_GraphRefLines::sdKind),
                                                             output));
  }

  std::unique_ptr<GraphStages> stages;
  RecordingOutput output;
};

// Scales (worked out in stages.txt): X 2 to 3 by 1; sibling 1 to 1
// (anamnestic), heights 80 to 100 by 10, Tanner 0 to 100 by 20, SD -6 to 6.
// Widest Y label "100.0" or "-6.00", 30; widest target "Target", 36; no
// reference shown, so refwidth is the indent 10.
//   frame_left 30 + 8/2 = 34, frame_right 511 - (36 + 16) = 459,
//   plot 44 to 449 (405 wide), cellx 405/1 = 405, ratio 2*405 = 810.
// Each block: head 10 + 6 = 16, foot 10 + 8/2 = 14.
//   sibling: plot 0 high, + font 6: 16 + 0 + 10 + 14 = 40;       rows 0 16 16 40
//   heights: 2 cells of 810/3 = 270: 540; 16 + 540 + 14 = 570;   40 56 596 610
//   Tanner: 5 cells of 270: 1350; 1380;                          610 626 1976 1990
//   SD (of the anamnestic target height, so + font 6): 12 cells of 810/9 =
//     90, held to 2*10: 240; 16 + 240 + 10 + 14 = 280;         1990 2006 2246 2270
// Image height 2270 + 8/2 + 10 = 2284.
TEST_F(GraphLayoutTest, ColumnsAndRowsWorkedByHand) {
  auto l = layout();
  ASSERT_TRUE(l->ok());
  Lines rows;
  for (int b = 0; b < 4; ++b)
    rows.push_back(std::to_string(l->getBlockTop(b)) + " " + std::to_string(l->getPlotTop(b)) + " " +
                   std::to_string(l->getPlotBottom(b)) + " " + std::to_string(l->getBlockBottom(b)));
  EXPECT_EQ((Lines{"0 16 16 40", "40 56 596 610", "610 626 1976 1990", "1990 2006 2246 2270"}), rows);
  EXPECT_EQ((std::vector<int>{512, 2284, 34, 44, 449, 459}),
            (std::vector<int>{l->getImageWidth(), l->getImageHeight(), l->getFrameLeft(), l->getPlotLeft(),
                              l->getPlotRight(), l->getFrameRight()}));
  EXPECT_EQ(247, l->toPixelX(2.5));      // 44 + floor(0.5*405 + 0.5)
  EXPECT_EQ(326, l->toPixelY(1, 90.0));  // 596 - floor(0.5*540 + 0.5)
  EXPECT_EQ(16, l->toPixelY(0, 50.0));   // no Y extent: the plot bottom
  EXPECT_TRUE(l->isInScale(1, 3.0, 80.0));
  EXPECT_FALSE(l->isInScale(1, 3.01, 90.0));
  EXPECT_FALSE(l->isInScale(1, R_Number(), 90.0));
}

// The plot is 512 - 107 wide for an image of width 512 (511 - 52 - 10 - 44).
TEST_F(GraphLayoutTest, APlotOfFiftyPixelsIsTheNarrowestAccepted) {
  output.setWidthMetric(0, 157);
  EXPECT_TRUE(layout()->ok());
  output.setWidthMetric(0, 156);
  EXPECT_FALSE(layout()->ok());
}

// In the heights block, plot x 44 to 449 and y 56 to 596. Pixels: x 1.5 is
// 44 - 202 = -158, 3.5 is 652, 0 is -766 and 1 is -361; y 80 is 596, 90
// 326, 100 56, 110 -214, 70 866 and 75 731.
TEST_F(GraphLayoutTest, LinesAreClippedAtEveryEdge) {
  auto l = layout();
  ASSERT_TRUE(l->ok());
  const R_Number none;
  const struct {
    R_Number x0, y0, x1, y1;
    const char* expected;
  } rows[] = {
      {0.0, 90.0, 1.0, 90.0, "-"},  // wholly left
      {2.5, 70.0, 2.5, 75.0, "-"},  // wholly below
      {none, 90.0, 2.5, 90.0, "-"},
      {2.2, 85.0, 2.8, 95.0, "125 461 368 191"},  // inside: 44 + 81, 596 - 135; 44 + 324, 596 - 405
      // Left end to plot_left, then the right end (the first inside is
      // swapped to the back) to plot_right: the ends come back exchanged.
      {1.5, 90.0, 3.5, 90.0, "449 326 44 326"},
      // y at x 44: -540*(44 + 158)/(247 + 158) = -109080/405 = -269.3,
      // truncated to -269: 596 - 269 = 327.
      {1.5, 80.0, 2.5, 100.0, "44 327 247 56"},
      {2.5, 90.0, 2.5, 110.0, "247 56 247 326"},  // over the top, swapped
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.expected);
    int a = 0, b = 0, c = 0, d = 0;
    std::string got = "-";
    if (l->clipLine(1, row.x0, row.y0, row.x1, row.y1, a, b, c, d))
      got = std::to_string(a) + " " + std::to_string(b) + " " + std::to_string(c) + " " + std::to_string(d);
    EXPECT_EQ(row.expected, got);
  }
}

}  // namespace
