#include "graph/r_graphdraw.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "document/r_supertext.h"
#include "graph/r_graphtextmap.h"
#include "graph/r_textgraph.h"
#include "knowledge/r_file.h"
#include "proband/r_proband.h"
#include "tests/support/recording_output.h"
#include "tests/support/test_files.h"
#include "tests/support/xml_fakes.h"

namespace {

typedef std::vector<std::string> Lines;

// The painting suite's knowledge file tests/data/graph/draw.xml and its
// proband growing.xml: a boy born 1.1.2010 with PARENT 104 and lengths 84,
// 90, 125 and 104 at the ages 0.999, 1.999, 3.001 and 4.
class GraphDrawTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    file = new R_File();
    CollectingReporter reporter;
    EXPECT_TRUE(file->loadXML(testData("graph/draw.xml").c_str(), &reporter))
        << ::testing::PrintToString(reporter.lines());
  }
  static void TearDownTestSuite() {
    delete file;
    file = nullptr;
  }
  void SetUp() override {
    child.reset(new R_Proband(file));
    ASSERT_TRUE(child->loadXML(readFile(testData("graph/growing.xml")).c_str()));
    // Image 205, indent 10, ticks 8, target space 16, cells 3 wide and 2
    // high, head space 6; fonts 10 high and 6 per byte.
    const int widths[] = {205, 10, 8, 16, 3}, heights[] = {8, 2, 6};
    for (int i = 0; i < 5; ++i) output.setWidthMetric(i, widths[i]);
    for (int i = 0; i < 3; ++i) output.setHeightMetric(i, heights[i]);
    output.setSDAppend("SDS");
  }

  const R_TextGraph& graph(const char* id) {
    const R_Text& element = file->getText(file->findText(id))->getElement(0);
    EXPECT_TRUE(element.isOK());
    return static_cast<const R_TextGraph&>(element);
  }
  // What the graph painted, without the questions asked on the way.
  Lines painted(const char* id) {
    EXPECT_TRUE(graph(id).write(*file, *child, R_Number(4.0), output));
    Lines lines;
    for (const std::string& call : output.calls())
      if (call.rfind("get", 0) != 0 && call != "isGraphInSD") lines.push_back(call);
    return lines;
  }

  static inline R_File* file = nullptr;
  std::unique_ptr<R_Proband> child;
  RecordingOutput output;
};

// Columns: widest Y label "-5.00" (the SD block's Y_min) 30, widest target
// name 12, widest line label ("-3", "M", "+1") 12 above the indent 10.
//   frame_left 30 + 4 = 34, frame_right 204 - (12 + 16) = 176,
//   plot 44 to 176 - 12 = 164: 120 wide, X 0 to 4 by 2: cellx 60, ratio 120.
// Rows: head 10 + 6 = 16, foot 10 + 4 = 14.
//   lengths 80 to 120 by 20: 2 cells of 120/3 = 40, rows 0 16 96 110;
//   SD -5 to 5 (the data reach 5): 10 cells of 120/9 = 13, rows 110 126 256 270.
//   Image height 270 + 4 + 10 = 284.
// Pixels: x = 44 + floor(30*age + 0.5): ages 0 1 2 3 4 at 44 74 104 134 164,
// and 0.999, 1.999, 3.001 round to 74, 104, 134. Lengths y = 96 -
// floor(2*(v - 80) + 0.5): 75 106, 80 96, 84 88, 90 76, 92 72, 94 68, 95 66,
// 100 56, 104 48, 108 40, 110 36, 120 16, 125 6, 134 -12. SD scores y = 256 -
// floor(13*(s + 5) + 0.5): -5 256, -4 243 ... 5 126; -3.2 233, -2 217, 0.8 181.
// Reference lines at age 0: 75, 90, 95 (mean 90, SD 5, at -3, 0 and 1 SD);
// at 2: 84, 96, 100; at 4: 92, 104, 108.
TEST_F(GraphDrawTest, AGraphIsPaintedInLayersWorkedByHand) {
  Lines sd_grid, sd_axis;
  for (int s = -5; s <= 5; ++s) {
    const std::string y = std::to_string(256 - 13 * (s + 5));
    sd_grid.push_back("drawRasterLine 34 " + y + " 176 " + y + (s == 0 ? " 2" : " 3"));
    char label[16];
    snprintf(label, sizeof label, "%d.00", s);
    sd_axis.push_back("drawText 30 " + y + " 2 1 1 \"" + label + "\"");
    sd_axis.push_back("drawRasterLine 30 " + y + " 38 " + y + " 0");
  }
  Lines expected = {
      "beginGraph 0 \"Growth\" 205 284",
      "fillArea 0 0 204 283 0 -1",
      "fillArea 34 0 176 110 1 0",
      "fillArea 34 110 176 270 2 1",
      // The band between the lowest and the highest line, from age to age.
      "setClip 34 110 176 0",
      "drawBand 44 106 66 104 88 56 0",
      "drawBand 104 88 56 164 72 40 0",
      // Fine X lines at 1 and 3, main ones at 0, 2, 4; fine Y lines at 90
      // and 110, main ones at 80, 100, 120.
      "drawRasterLine 74 0 74 110 3", "drawRasterLine 134 0 134 110 3",
      "drawRasterLine 44 0 44 110 2", "drawRasterLine 104 0 104 110 2", "drawRasterLine 164 0 164 110 2",
      "drawRasterLine 34 76 176 76 3", "drawRasterLine 34 36 176 36 3",
      "drawRasterLine 34 96 176 96 2", "drawRasterLine 34 56 176 56 2", "drawRasterLine 34 16 176 16 2",
      "drawRasterLine 74 110 74 270 3", "drawRasterLine 134 110 134 270 3",
      "drawRasterLine 44 110 44 270 2", "drawRasterLine 104 110 104 270 2", "drawRasterLine 164 110 164 270 2",
  };
  expected.insert(expected.end(), sd_grid.begin(), sd_grid.end());
  const Lines rest = {
      // The central line first; the lines start at the second age. The
      // label "+1" (164, 35 to 176, 45) would lie on "M" (164, 43 to 170,
      // 53) and is left out; "-3" (164, 67) is clear.
      "drawRefLine 104 64 164 48 0", "drawText 164 48 2 0 4 \"M\"",
      "drawRefLine 104 88 164 72 1", "drawText 164 72 2 0 5 \"-3\"",
      "drawRefLine 104 56 164 40 1",
      // The X axis under the last block: b = 270, t = 4.
      "drawText 44 274 0 2 0 \"0\"", "drawRasterLine 44 266 44 274 0",
      "drawText 104 274 0 2 0 \"2\"", "drawRasterLine 104 266 104 274 0",
      "drawText 164 274 0 2 0 \"4\"", "drawRasterLine 164 266 164 274 0",
      "drawText 176 266 1 1 3 \"Age (y)\"",
      // Y axes: lx = 34 - 4 = 30, ticks from 30 to 38; then the frame.
      "drawText 30 96 2 1 1 \"80\"", "drawRasterLine 30 96 38 96 0",
      "drawText 30 56 2 1 1 \"100\"", "drawRasterLine 30 56 38 56 0",
      "drawText 30 16 2 1 1 \"120\"", "drawRasterLine 30 16 38 16 0",
      "drawText 38 0 0 0 3 \"Length (cm)\"",
      "frameArea 34 0 176 110 1 0",
  };
  expected.insert(expected.end(), rest.begin(), rest.end());
  expected.insert(expected.end(), sd_axis.begin(), sd_axis.end());
  const Lines last = {
      "drawText 38 110 0 0 3 \"Length (SDS)\"",
      "frameArea 34 110 176 270 2 1",
      // Targets right of the frame: tx = 176 + 16, mid = 176 + 8; 134 stands
      // above the image, not clipped.
      "drawText 192 48 2 0 8 \"T\"", "drawText 192 68 2 0 8 \"Lo\"", "drawText 192 -12 2 0 8 \"Hi\"",
      "drawRangeBar 184 48 48 1", "drawRangeBar 184 68 -12 0",
      // The secondary plot LEN-4 (80, 86, 121, 100: y 96, 84, 14, 56), lines
      // only. Cut at plot_top 16, the inside end first swapped to the back:
      // x = 134 + (104 - 134)*(16 - 14)/(84 - 14) = 134 - 0.86 -> 134;
      // x = 134 + 30*2/42 = 135.4 -> 135.
      "drawDataLine 74 96 104 84 1", "drawDataLine 134 16 104 84 1", "drawDataLine 135 16 164 56 1",
      // The primary plot: x = 134 - 30*10/70 = 129.7 -> 130 (truncated from
      // -4.3); x = 134 + 30*10/42 = 141.1 -> 141. No mark for 125.
      "drawDataLine 74 88 104 76 0", "drawDataLine 130 16 104 76 0", "drawDataLine 141 16 164 48 0",
      "drawMark 74 88 0 false", "drawMark 104 76 0 false", "drawMark 164 48 0 false",
      // The SD scores (LEN-100)/5, marks only, small; 5 is on the scale's end.
      "drawMark 74 233 0 true", "drawMark 104 217 0 true", "drawMark 134 126 0 true", "drawMark 164 181 0 true",
      "endGraph 0 \"Growth\"",
  };
  expected.insert(expected.end(), last.begin(), last.end());
  EXPECT_EQ(expected, painted("growth"));
}

}  // namespace
