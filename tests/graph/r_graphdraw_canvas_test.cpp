// A small graph painted on the bitmap canvas of the HTML output, whose
// measures (fonts 10 high, 8 pixels a byte) and drawing are its own.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "document/r_supertext.h"
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

// The graph "tiny" of draw.xml for the boy of growing.xml (see the painting
// suite): one length block with its reference shown, the lengths joined.
// Image 115 wide (graph-optimal-width), the other measures their defaults.
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

class GraphCanvasTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    file = new R_File();
    CollectingReporter reporter;
    EXPECT_TRUE(file->loadXML(testData("graph/draw.xml").c_str(), &reporter));
  }
  static void TearDownTestSuite() {
    delete file;
    file = nullptr;
  }
  void SetUp() override {
    R_A_HTMLOutput::resetProcessState();
    child.reset(new R_Proband(file));
    ASSERT_TRUE(child->loadXML(readFile(testData("graph/growing.xml")).c_str()));
  }
  const R_TextGraph& tiny() {
    return static_cast<const R_TextGraph&>(file->getText(file->findText("tiny"))->getElement(0));
  }
  // The canvas of a graph drawn by `paint` on an HTML output whose graph
  // files go to a fresh directory.
  std::string canvas(const std::function<void(R_OutputInterface&)>& paint) {
    TempDir dir;
    FakeSetup setup;
    FakeParameters parameters;
    CollectingPageSink sink;
    setup.setInt(S::intGraphOptimalWidth, 115);
    CanvasOutput out(setup, sink, parameters);
    out.setGraphDirs((dir.path() + "/").c_str(), "");
    paint(out);
    return out.dump;
  }

  static inline R_File* file = nullptr;
  std::unique_ptr<R_Proband> child;
};

// The calls first, on a recording output with the HTML output's measures.
TEST_F(GraphCanvasTest, TheSmallGraphMakesTheseCalls) {
  RecordingOutput output;
  const int widths[] = {115, 10, 8, 16, 3}, heights[] = {8, 2, 6};
  for (int i = 0; i < 5; ++i) output.setWidthMetric(i, widths[i]);
  for (int i = 0; i < 3; ++i) output.setHeightMetric(i, heights[i]);
  output.setCharWidth(8);
  ASSERT_TRUE(tiny().write(*file, *child, R_Number(4.0), output));
  std::string painted, expected;
  for (const std::string& call : output.calls())
    if (call.rfind("get", 0) != 0 && call != "isGraphInSD") painted += call + "\n";
  for (const std::string& call : kTiny) expected += call + "\n";
  EXPECT_EQ(expected, painted);
}

// The whole canvas of the graph equals the canvas of those calls played by
// hand, so layers, clipping and texts come out of the bitmap as worked out.
TEST_F(GraphCanvasTest, TheSmallGraphPaintsTheCanvasOfItsCalls) {
  const std::string painted = canvas([this](R_OutputInterface& out) { tiny().write(*file, *child, R_Number(4.0), out); });
  const std::string expected = canvas([](R_OutputInterface& out) {
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

}  // namespace
