#include "output/r_a_bitmapdraw.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "tests/output/canvas_dump.h"

namespace {

const int kSolid = 0xFFFF;

// Lines skip their end point and step like Bresenham; dash patterns count
// dots from one, and wide pens stretch them.
TEST(BitmapDrawTest, LinesStepDashAndWidenAsTheseCanvasesShow) {
  struct Row {
    int w, h, x0, y0, x1, y1, color, pattern, pen;
    const char* dump;
  } rows[] = {
      {9, 6, 1, 1, 7, 4, 1, kSolid, 1, ".........\n.11......\n...11....\n.....11..\n.........\n.........\n"},
      {7, 5, 5, 4, 0, 2, 1, kSolid, 1, ".......\n.......\n.1.....\n..11...\n....11.\n"},  // backwards
      {4, 4, 0, 0, 3, 3, 1, kSolid, 1, "1...\n.1..\n..1.\n....\n"},                       // equal axes: y leads
      {3, 3, 1, 1, 1, 1, 1, kSolid, 1, "...\n...\n...\n"},                                // a point draws nothing
      {16, 1, 0, 0, 16, 0, 1, 0x7777, 1, "11.111.111.111.1\n"},
      {12, 4, 1, 1, 9, 1, 2, 0xCCCC, 2, "............\n....22222...\n....22222...\n............\n"},
      {5, 6, 2, 1, 2, 4, 18, kSolid, 3, ".222.\n.222.\n.222.\n.222.\n.222.\n.....\n"},  // 18: low 4 bits
      {5, 3, 1, 1, 4, 1, 2, kSolid, 0, ".....\n.222.\n.....\n"},  // a pen below 1 draws like 1
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.dump);
    R_A_BitmapDraw canvas(r.w, r.h);
    canvas.drawLine(r.x0, r.y0, r.x1, r.y1, r.color, r.pattern, r.pen);
    EXPECT_EQ(r.dump, dumpCanvas(canvas));
  }
}

TEST(BitmapDrawTest, EverythingOutsideTheRasterIsDropped) {
  R_A_BitmapDraw canvas(6, 4);
  // The anti-diagonal x + y = -1: a pen of 3 reaches (0, 0), (1, 0), (0, 1).
  canvas.drawLine(INT32_MIN, INT32_MAX, INT32_MAX, INT32_MIN, 6, kSolid, 3);
  canvas.setPixel(6, 0, 9);  // x = width
  canvas.setPixel(0, -1, 9);
  canvas.drawLine(-2, 1, 8, 1, 3, kSolid, 1);
  canvas.drawLine(3, -2, 7, 2, 4, kSolid, 1);  // only (5, 0) lies inside
  // Dot n of this line sits at x = n - 100001: the dashes keep their places.
  canvas.drawLine(-100000, 2, 100000, 2, 5, 0xCCCC, 1);
  canvas.fillRect(3, 5, -2, 3, 7);  // corners in any order, clipped
  EXPECT_EQ(expectedCanvas("outside"), dumpCanvas(canvas));
}

TEST(BitmapDrawTest, FillRectCoversBothCornersWhateverHalfOfAByteTheyFallOn) {
  struct Row {
    int x0, x1;
    const char* dump;
  } rows[] = {{1, 4, ".7777.\n"}, {4, 1, ".7777.\n"}, {1, 1, ".7....\n"}, {2, 2, "..7...\n"},
              {2, 3, "..77..\n"}, {5, 0, "777777\n"}, {-9, 9, "777777\n"}, {6, 9, "......\n"}};
  for (const Row& r : rows) {
    SCOPED_TRACE(r.dump);
    R_A_BitmapDraw canvas(6, 1);
    canvas.fillRect(r.x0, 0, r.x1, 0, 0x17);
    EXPECT_EQ(r.dump, dumpCanvas(canvas));
  }
}

TEST(BitmapDrawTest, CircleIsASixteenSidedPolygonWithTruncatedCorners) {
  R_A_BitmapDraw canvas(11, 11);
  canvas.drawCircle(5, 5, 4, 1);
  EXPECT_EQ(expectedCanvas("circle"), dumpCanvas(canvas));
}

TEST(BitmapDrawTest, TextBoxHasABlankRowAboveAndBelowAndWipesWithItsBackground) {
  R_A_BitmapDraw canvas(10, 12);
  canvas.fillRect(0, 0, 9, 11, 2);
  canvas.drawString(1, 1, 1, false, 0, "A");
  EXPECT_EQ(expectedCanvas("text box"), dumpCanvas(canvas));
}

TEST(BitmapDrawTest, DoubledTextGrowsTallerAndRunsOffTheRightEdgeHarmlessly) {
  R_A_BitmapDraw canvas(8, 19);
  canvas.drawString(4, 0, 3, true, -1, "\x8A" "A");  // S caron, then A beyond the edge
  EXPECT_EQ(expectedCanvas("doubled text"), dumpCanvas(canvas));
  EXPECT_EQ(10, R_A_BitmapDraw::getFontHeight(false));
  EXPECT_EQ(18, R_A_BitmapDraw::getFontHeight(true));
  EXPECT_EQ(24, R_A_BitmapDraw::getTextWidth("\xC1" "b "));
  EXPECT_EQ(0, R_A_BitmapDraw::getTextWidth(nullptr));
}

// Coordinates, pens and patterns at the ends of int neither overflow nor
// draw; then drawing from the corner reaches (0, 0) of any raster.
TEST(BitmapDrawTest, AnyCanvasSizeIsEitherARasterOrEmpty) {
  struct Row {
    int w, h;
    bool empty;
    int rowBytes;
  } rows[] = {{1, 1, false, 16},     {31, 2, false, 16},    {32, 2, false, 32},      {64, 1, false, 48},
              {0, 5, true, 0},       {-3, 4, true, 0},      {100000, 10, true, 0},   {32767, 1, false, 16384},
              {10, 100000, true, 0}, {30000, 30000, true, 0}, {INT32_MIN, INT32_MAX, true, 0}};
  for (const Row& r : rows) {
    SCOPED_TRACE(testing::Message() << r.w << "x" << r.h);
    R_A_BitmapDraw canvas(r.w, r.h);
    EXPECT_EQ(r.empty, canvas.isEmpty());
    EXPECT_EQ(r.rowBytes, canvas.getRowBytes());
    for (int a : {INT32_MIN, INT32_MIN + 1, INT32_MAX - 1, INT32_MAX}) {
      canvas.drawCircle(a, a, a, 1);
      canvas.drawCircle(a / -2, a, INT32_MAX, 1);
      canvas.drawString(a, a, 1, true, 0, "\xC1\xC1\xC1");
      canvas.drawLine(a, INT32_MIN, a, INT32_MAX, 1, -1, a);
      canvas.fillRect(a, a, a, INT32_MAX, 1);
    }
    EXPECT_EQ(std::string::npos, dumpCanvas(canvas).find_first_not_of(".\n"));
    canvas.drawString(0, 0, 1, true, 0, "x");
    canvas.drawCircle(0, 0, INT32_MAX, 2);
    canvas.fillRect(INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX, 1);
    canvas.drawLine(0, 0, 3, 3, 1, kSolid, 3);
    EXPECT_EQ(r.empty ? -1 : 1, canvas.getPixel(0, 0));
  }
}

}  // namespace
