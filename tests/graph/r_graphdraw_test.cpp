#include "graph/r_graphdraw.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "document/r_supertext.h"
#include "graph/r_graphtextmap.h"
#include "graph/r_textgraph.h"
#include "knowledge/r_file.h"
#include "output/r_a_htmloutput.h"
#include "proband/r_proband.h"
#include "tests/output/canvas_dump.h"
#include "tests/support/page_fakes.h"
#include "tests/support/recording_output.h"
#include "tests/support/test_files.h"
#include "tests/support/xml_fakes.h"

namespace {

typedef std::vector<std::string> Lines;
typedef R_A_Setup S;

// Lines as one text, so that a failure shows the lines that differ.
std::string text(const Lines& lines) {
  std::string joined;
  for (const std::string& line : lines) joined += line + "\n";
  return joined;
}

// The HTML output, keeping the canvas as text before endGraph saves it.
class CanvasOutput : public R_A_HTMLOutput {
 public:
  using R_A_HTMLOutput::R_A_HTMLOutput;
  void endGraph(int kind, const char* title) override {
    if (getBitmapDraw() != nullptr) dump = dumpCanvas(*getBitmapDraw());
    R_A_HTMLOutput::endGraph(kind, title);
  }
  std::string dump;
};

// Plays one line of a recorded trace back on `out`.
void replay(const std::string& line, R_OutputInterface& out) {
  std::istringstream in(line);
  std::string op, text;
  std::vector<int> n;
  in >> op >> std::ws;
  while (in.peek() != EOF) {
    std::string word;
    if (in.peek() == '"') {
      in.get();
      std::getline(in, text, '"');
    } else if (in >> word) {
      n.push_back(word == "true" ? 1 : word == "false" ? 0 : atoi(word.c_str()));
    }
    in >> std::ws;
  }
  const char* t = text.c_str();
  const std::map<std::string, std::function<void()>> ops = {
      {"beginGraph", [&] { out.beginGraph(n[0], t, n[1], n[2]); }},
      {"endGraph", [&] { out.endGraph(n[0], t); }},
      {"fillArea", [&] { out.fillArea(n[0], n[1], n[2], n[3], n[4], n[5]); }},
      {"frameArea", [&] { out.frameArea(n[0], n[1], n[2], n[3], n[4], n[5]); }},
      {"setClip", [&] { out.setClip(n[0], n[1], n[2], n[3]); }},
      {"drawBand", [&] { out.drawBand(n[0], n[1], n[2], n[3], n[4], n[5], n[6]); }},
      {"drawRasterLine", [&] { out.drawRasterLine(n[0], n[1], n[2], n[3], n[4]); }},
      {"drawRefLine", [&] { out.drawRefLine(n[0], n[1], n[2], n[3], n[4]); }},
      {"drawText", [&] { out.drawText(n[0], n[1], n[2], n[3], n[4], t); }},
      {"drawDataLine", [&] { out.drawDataLine(n[0], n[1], n[2], n[3], n[4]); }},
      {"drawMark", [&] { out.drawMark(n[0], n[1], n[2], n[3] != 0); }},
  };
  auto found = ops.find(op);
  ASSERT_NE(found, ops.end()) << line;
  found->second();
}

// The painting suite's knowledge file tests/data/graph/draw.xml and its
// proband growing.xml: a boy born 1.1.2010 with PARENT 104, a bone age of
// 2.2, and lengths 84, 90, 125 and 104 at the ages 0.999, 1.999, 3.001 and
// 4 (and a visit at 3.5 without a length), puberty stages 1, 2 and 3 at
// 0.999, 1.999 and 4. The measures are those of the
// HTML output but for the image width and the width of a byte, 6.
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

  // The canvas of a graph drawn by `paint` on an HTML output (fonts 10
  // high, 8 pixels a byte) with an image `width` wide and graph files in a
  // fresh directory.
  std::string canvas(int width, const std::function<void(R_OutputInterface&)>& paint) {
    R_A_HTMLOutput::resetProcessState();
    TempDir dir;
    FakeSetup setup;
    FakeParameters parameters;
    CollectingPageSink sink;
    setup.setInt(S::intGraphOptimalWidth, width);
    CanvasOutput out(setup, sink, parameters);
    out.setGraphDirs((dir.path() + "/").c_str(), "");
    paint(out);
    return out.dump;
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
  EXPECT_EQ(text(expected), text(painted("growth")));
}

// Arrows to LEN+10 (94, 100, 135, 114: y 68, 56, -14, 28) with the
// lengths, neither joined; the bone age 2.2 on an anamnestic block with its
// reference shown; a list block whose variable is neither its own X nor Y:
// no Y variable, so empty numbers and no caption. The boy has one more
// visit at 3.5 years, with a stage and no length.
// Columns: Y labels "120", "1" and "": 18; no target; no line labels beside
// the plot (the only reference shown is anamnestic), so refwidth is the
// indent 10. frame_left 18 + 4 = 22, plot 32 to 152 with the image 163 wide,
// frame_right 162. cellx 60 as before.
// Rows: lengths 0 16 96 110 as before; the bone age: no plot height, 16 + 0
// + 10 (font 6) + 14 = 40: 110 126 126 150; the stage, list 1 to 3, 2 cells:
// (2*10*3)/2 = 30, 16 + 30 + 10 + 14 = 70: 150 166 196 220; image 220 + 14.
// x = 32 + floor(30*age + 0.5); stages y = 196 - floor(15*(s - 1) + 0.5).
// Bone reference lines 0.5, 2 and 2.5 (mean 2, SD 0.5) at x 47, 92, 107.
TEST_F(GraphDrawTest, ArrowsAnAnamnesticAndAListBlockWorkedByHand) {
  output.setWidthMetric(0, 163);
  const Lines expected = {
      "beginGraph 0 \"Mixed\" 163 234",
      "fillArea 0 0 162 233 0 -1",
      "fillArea 22 0 162 110 1 0", "fillArea 22 110 162 150 4 1", "fillArea 22 150 162 220 3 2",
      // One strip h = 5 around the bone block's line at its plot bottom 126.
      "setClip 22 150 162 110", "drawBand 47 121 131 107 121 131 1",
      "drawRasterLine 62 0 62 110 3", "drawRasterLine 122 0 122 110 3",
      "drawRasterLine 32 0 32 110 2", "drawRasterLine 92 0 92 110 2", "drawRasterLine 152 0 152 110 2",
      "drawRasterLine 22 76 162 76 3", "drawRasterLine 22 36 162 36 3",
      "drawRasterLine 22 96 162 96 2", "drawRasterLine 22 56 162 56 2", "drawRasterLine 22 16 162 16 2",
      "drawRasterLine 62 110 62 150 3", "drawRasterLine 122 110 122 150 3",
      "drawRasterLine 32 110 32 150 2", "drawRasterLine 92 110 92 150 2", "drawRasterLine 152 110 152 150 2",
      "drawRasterLine 62 150 62 220 3", "drawRasterLine 122 150 122 220 3",
      "drawRasterLine 32 150 32 220 2", "drawRasterLine 92 150 92 220 2", "drawRasterLine 152 150 152 220 2",
      // Upright strokes, labelled below, central first.
      "drawRefLine 92 121 92 131 0", "drawText 92 131 0 2 6 \"M\"",
      "drawRefLine 47 121 47 131 1", "drawText 47 131 0 2 7 \"-3\"",
      "drawRefLine 107 121 107 131 1", "drawText 107 131 0 2 7 \"+1\"",
      "drawText 32 224 0 2 0 \"0\"", "drawRasterLine 32 216 32 224 0",
      "drawText 92 224 0 2 0 \"2\"", "drawRasterLine 92 216 92 224 0",
      "drawText 152 224 0 2 0 \"4\"", "drawRasterLine 152 216 152 224 0",
      "drawText 162 216 1 1 3 \"Age (y)\"",
      "drawText 18 96 2 1 1 \"80\"", "drawRasterLine 18 96 26 96 0",
      "drawText 18 56 2 1 1 \"100\"", "drawRasterLine 18 56 26 56 0",
      "drawText 18 16 2 1 1 \"120\"", "drawRasterLine 18 16 26 16 0",
      "drawText 26 0 0 0 3 \"Length (cm)\"", "frameArea 22 0 162 110 1 0",
      // No numbers on the anamnestic block, only its caption.
      "drawText 26 110 0 0 3 \"Bone age (y)\"", "frameArea 22 110 162 150 4 1",
      "drawText 18 196 2 1 1 \"\"", "drawRasterLine 18 196 26 196 0",
      "drawText 18 181 2 1 1 \"\"", "drawRasterLine 18 181 26 181 0",
      "drawText 18 166 2 1 1 \"\"", "drawRasterLine 18 166 26 166 0",
      "frameArea 22 150 162 220 3 2",
      // The arrow to 135 and the mark of 125 lie outside: both left out.
      "drawDataArrow 62 88 62 68 0", "drawMark 62 88 0 false",
      "drawDataArrow 92 76 92 56 0", "drawMark 92 76 0 false",
      "drawDataArrow 152 48 152 28 0", "drawMark 152 48 0 false",
      // x = 32 + floor(66 + 0.5).
      "drawMark 98 126 0 false",
      // (LEN-80)/10: 0.4, 1, 4.5, none (a visit without a length is passed
      // over), 2.4; y 205, 196, 143, 175. Cut at the plot bottom 196: x = 62
      // + 30*(196 - 205)/(196 - 205) = 92; at the top 166, the inside end
      // swapped to the back: x = 122 - 30*23/53 = 108.98 -> 109 (truncated
      // from -13.02); x = 122 + 30*23/32 = 143.56 -> 143.
      "drawDataLine 92 196 92 196 0", "drawDataLine 109 166 92 196 0", "drawDataLine 143 166 152 175 0",
      "endGraph 0 \"Mixed\"",
  };
  EXPECT_EQ(text(expected), text(painted("mixed")));
}

// A list variable that is its own X: its reference gives ages at each stage
// and the block shows the stages along Y. Columns: Y label "P3" 12, line
// labels 12: frame_left 16, plot 26 to 146 in an image 159 wide. Rows: 2
// list cells, (2*10*3)/2 = 30: 0 16 46 70, image 84. x = 26 + floor(30*age
// + 0.5), stages 1 2 3 at y 46 31 16. Lines (-3, 0, +1 SD) at stage 1:
// -0.5, 1, 1.5 (x 11, 56, 71); at 2: 1, 2.5, 3 (56, 101, 116); at 3: 2.75,
// 3.5, 3.75 (109, 131, 139).
TEST_F(GraphDrawTest, AListThatIsItsOwnXIsDrawnAcrossWorkedByHand) {
  output.setWidthMetric(0, 159);
  const Lines expected = {
      "beginGraph 0 \"Puberty\" 159 84",
      "fillArea 0 0 158 83 0 -1",
      "fillArea 16 0 158 70 3 0",
      // A strip h = 5 at each stage, from the lowest to the highest age.
      "setClip 16 70 158 0",
      "drawBand 11 41 51 71 41 51 1", "drawBand 56 26 36 116 26 36 1", "drawBand 109 11 21 139 11 21 1",
      "drawRasterLine 56 0 56 70 3", "drawRasterLine 116 0 116 70 3",
      "drawRasterLine 26 0 26 70 2", "drawRasterLine 86 0 86 70 2", "drawRasterLine 146 0 146 70 2",
      // Strokes where the age lies in the scale; each line labelled under its
      // lowest stroke. That of -3 (age -0.5) lies outside: its label takes
      // its place but is not drawn.
      "drawRefLine 56 41 56 51 0", "drawRefLine 101 26 101 36 0", "drawRefLine 131 11 131 21 0",
      "drawText 56 51 0 2 6 \"M\"",
      "drawRefLine 56 26 56 36 1", "drawRefLine 109 11 109 21 1",
      "drawRefLine 71 41 71 51 1", "drawRefLine 116 26 116 36 1", "drawRefLine 139 11 139 21 1",
      "drawText 71 51 0 2 7 \"+1\"",
      "drawText 26 74 0 2 0 \"0\"", "drawRasterLine 26 66 26 74 0",
      "drawText 86 74 0 2 0 \"2\"", "drawRasterLine 86 66 86 74 0",
      "drawText 146 74 0 2 0 \"4\"", "drawRasterLine 146 66 146 74 0",
      "drawText 158 66 1 1 3 \"Age (y)\"",
      "drawText 12 46 2 1 1 \"P1\"", "drawRasterLine 12 46 20 46 0",
      "drawText 12 31 2 1 1 \"P2\"", "drawRasterLine 12 31 20 31 0",
      "drawText 12 16 2 1 1 \"P3\"", "drawRasterLine 12 16 20 16 0",
      "drawText 20 0 0 0 3 \"Puberty\"", "frameArea 16 0 158 70 3 0",
      // The points (stage, age) are drawn as (age, stage).
      "drawDataLine 56 46 86 31 0", "drawDataLine 86 31 146 16 0",
      "drawMark 56 46 0 false", "drawMark 86 31 0 false", "drawMark 146 16 0 false",
      "endGraph 0 \"Puberty\"",
  };
  EXPECT_EQ(text(expected), text(painted("puberty")));
}

// With the SD block ranked first, the X scale comes from its data, not from
// the variant of the lengths' reference: ages 0.999 to 4, narrower than
// 10*1, widened to -9.001 to 14; raw 4.6002, step 5, from -10, ceil(24/5) =
// 5 steps to 15. The lengths keep the variant's Y scale, judged on that X.
// Numbers 13 pixels a byte: widest Y label "-5.00" 65, "Lo" 26, "-3" 26:
//   frame_left 69, plot 79 to 199 for an image of 268, frame_right 225;
//   cellx 120/5 = 24, ratio 48: lengths 2 cells of 16, SD 10 cells of
//   48/9 = 5 held to 10. Rows 0 16 48 62 and 62 78 178 192, image 206.
// X axis at b = 192: x = 79 + floor(4.8*(x + 10) + 0.5); -10 and -5 lie
// outside the age's values and have no text. "15" (186 to 212) would lie on
// "10" (162 to 188): left out, its tick drawn.
TEST_F(GraphDrawTest, TheFirstRankedBlockSetsTheXScaleAndCrowdedNumbersGiveWay) {
  output.setWidthMetric(0, 268);
  output.setCharWidth(13);
  const std::regex x_axis("beginGraph.*|frameArea.*|drawText -?[0-9]+ 196 0 2 0 .*|"
                          "drawRasterLine ([0-9]+) 188 \\1 196 0|drawText [0-9]+ 188 1 1 3 .*");
  Lines axis;
  for (const std::string& line : painted("ranked"))
    if (std::regex_match(line, x_axis)) axis.push_back(line);
  const Lines expected = {
      "beginGraph 0 \"Growth\" 268 206",
      "drawText 79 196 0 2 0 \"\"", "drawRasterLine 79 188 79 196 0",
      "drawText 103 196 0 2 0 \"\"", "drawRasterLine 103 188 103 196 0",
      "drawText 127 196 0 2 0 \"0\"", "drawRasterLine 127 188 127 196 0",
      "drawText 151 196 0 2 0 \"5\"", "drawRasterLine 151 188 151 196 0",
      "drawText 175 196 0 2 0 \"10\"", "drawRasterLine 175 188 175 196 0",
      "drawRasterLine 199 188 199 196 0",
      "drawText 225 188 1 1 3 \"Age (y)\"",
      "frameArea 69 0 225 62 1 0",
      "frameArea 69 62 225 192 2 1",
  };
  EXPECT_EQ(text(expected), text(axis));
}

// The graph "tiny": one length block with its reference shown, the lengths
// joined, on an image 115 wide with the HTML output's measures (those of
// the fixture, 8 pixels a byte).
// Columns: Y label "120" 24; line labels "-3", "M", "+1": 16. frame_left 24
// + 4 = 28, plot 38 to 114 - 16 = 98 (60 wide), frame_right 114. cellx 30,
// one Y step 2*30/3 = 20: rows 0 16 56 70, image 70 + 4 + 10 = 84.
// x = 38 + floor(15*age + 0.5), y = 56 - floor(v - 80 + 0.5).
const Lines kTiny = {
    "beginGraph 0 \"Tiny\" 115 84",
    "fillArea 0 0 114 83 0 -1",
    "fillArea 28 0 114 70 1 0",
    // Lines at 0: 75, 90, 95 (y 61, 46, 41); at 2: 84, 96, 100 (52, 40,
    // 36); at 4: 92, 104, 108 (44, 32, 28).
    "setClip 28 70 114 0",
    "drawBand 38 61 41 68 52 36 0",
    "drawBand 68 52 36 98 44 28 0",
    "drawRasterLine 53 0 53 70 3", "drawRasterLine 83 0 83 70 3",
    "drawRasterLine 38 0 38 70 2", "drawRasterLine 68 0 68 70 2", "drawRasterLine 98 0 98 70 2",
    "drawRasterLine 28 46 114 46 3", "drawRasterLine 28 26 114 26 3",
    "drawRasterLine 28 56 114 56 2", "drawRasterLine 28 36 114 36 2", "drawRasterLine 28 16 114 16 2",
    // "+1" (98, 23 to 114, 33) would lie on "M" (98, 27 to 106, 37).
    "drawRefLine 68 40 98 32 0", "drawText 98 32 2 0 4 \"M\"",
    "drawRefLine 68 52 98 44 1", "drawText 98 44 2 0 5 \"-3\"",
    "drawRefLine 68 36 98 28 1",
    "drawText 38 74 0 2 0 \"0\"", "drawRasterLine 38 66 38 74 0",
    "drawText 68 74 0 2 0 \"2\"", "drawRasterLine 68 66 68 74 0",
    "drawText 98 74 0 2 0 \"4\"", "drawRasterLine 98 66 98 74 0",
    "drawText 114 66 1 1 3 \"Age (y)\"",
    "drawText 24 56 2 1 1 \"80\"", "drawRasterLine 24 56 32 56 0",
    "drawText 24 36 2 1 1 \"100\"", "drawRasterLine 24 36 32 36 0",
    "drawText 24 16 2 1 1 \"120\"", "drawRasterLine 24 16 32 16 0",
    "drawText 32 0 0 0 3 \"Length (cm)\"",
    "frameArea 28 0 114 70 1 0",
    // Points (53, 52), (68, 46), (83, 11), (98, 32), cut at the top 16:
    // x = 83 - 15*5/35 = 80.9 -> 81 (truncated from -2.1); x = 83 + 15*5/21
    // = 86.6 -> 86.
    "drawDataLine 53 52 68 46 0", "drawDataLine 81 16 68 46 0", "drawDataLine 86 16 98 32 0",
    "drawMark 53 52 0 false", "drawMark 68 46 0 false", "drawMark 98 32 0 false",
    "endGraph 0 \"Tiny\"",
};

// The calls first, on a recording output with the HTML output's measures.
TEST_F(GraphDrawTest, TheSmallGraphMakesTheseCalls) {
  output.setWidthMetric(0, 115);
  output.setCharWidth(8);
  EXPECT_EQ(text(kTiny), text(painted("tiny")));
}

// The whole canvas of the graph equals the canvas of those calls played by
// hand, so layers, clipping and texts come out of the bitmap as worked out.
TEST_F(GraphDrawTest, TheSmallGraphPaintsTheCanvasOfItsCalls) {
  const std::string painted =
      canvas(115, [this](R_OutputInterface& out) { graph("tiny").write(*file, *child, R_Number(4.0), out); });
  const std::string expected = canvas(115, [](R_OutputInterface& out) {
    for (const std::string& line : kTiny) replay(line, out);
  });
  ASSERT_EQ(84u * 116u, painted.size());
  EXPECT_EQ(expected, painted);
  // Some pixels by hand: the frame's corner in the axis colour 1, the data
  // line over the band (colour 8 at its start), the band (7) under the
  // central line's start; the background . left of the frame.
  const auto at = [&painted](int x, int y) { return painted[static_cast<size_t>(y) * 116 + x]; };
  EXPECT_EQ('1', at(28, 70));
  EXPECT_EQ('8', at(60, 49));
  EXPECT_EQ('.', at(2, 40));
}

// Boxes of 6 per byte and 10 high, stored in a map of room 2.
TEST(GraphTextMapTest, OnlyTheCornersOfANewTextAreTested) {
  RecordingOutput output;
  R_GraphTextMap map(2);
  const struct {
    int x, y, horizontal, vertical;
    const char* text;
    bool allowed;
  } rows[] = {
      {100, 100, 0, 0, "abcd", true},   // 100..124 x 100..110
      {124, 105, 0, 0, "ab", true},     // its left edge on the right edge: clear
      {90, 91, 0, 0, "ab", false},      // its bottom-right corner (102, 101) lies in the first
      {112, 90, 2, 1, "ab", true},      // 106..118 x 80..90, not stored: the map is full
      {112, 110, 2, 2, "ab", false},    // corner (106, 105) inside the first
      {130, 80, 1, 0, "abcdefghijklmn", true},  // 46..130 x 80..90 spans nothing stored at a corner
      {99, 99, 0, 0, "abcdefgh", true}, // 99..147 x 99..109 wholly covers "ab" at 124: no corner in it
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(row.allowed, map.add(row.x, row.y, row.text, output, 0, row.horizontal, row.vertical));
  }
  EXPECT_EQ(2, map.getCount());
}

}  // namespace
