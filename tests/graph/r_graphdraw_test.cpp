#include "graph/r_graphdraw.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <map>
#include <regex>
#include <sstream>
#include <string>

#include "graph/r_graphtextmap.h"
#include "output/r_a_htmloutput.h"
#include "tests/graph/graph_fixture.h"
#include "tests/output/canvas_dump.h"
#include "tests/support/page_fakes.h"
#include "tests/support/recording_output.h"

namespace {

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

// The painting suite's knowledge file draw.xml and its proband growing.xml:
// a boy born 1.1.2010 with PARENT 104, a bone age of 2.2, and lengths 84,
// 90, 125 and 104 at the ages 0.999, 1.999, 3.001 and 4 (and a visit at 3.5
// without a length), puberty stages 1, 2 and 3 at 0.999, 1.999 and 4. The
// traces each graph paints, worked out by hand, are in draw_traces.txt.
class GraphDrawTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { file = loadKnowledge("draw.xml"); }
  static void TearDownTestSuite() { delete file; }
  void SetUp() override {
    child.reset(new R_Proband(file));
    ASSERT_TRUE(child->loadXML(readFile(testData("graph/growing.xml")).c_str()));
    const int widths[] = {205, 10, 8, 16, 3}, heights[] = {8, 2, 6};
    for (int i = 0; i < 5; ++i) output.setWidthMetric(i, widths[i]);
    for (int i = 0; i < 3; ++i) output.setHeightMetric(i, heights[i]);
    output.setSDAppend("SDS");
  }

  const R_TextGraph& graph(const char* id) { return element<R_TextGraph>(*file, id, R_Text::typeGraph); }
  // What the graph painted, without the questions asked on the way.
  Lines painted(const char* id) {
    output.clear();
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

TEST_F(GraphDrawTest, GraphsArePaintedInLayersWorkedByHand) {
  const struct {
    const char* id;
    int width, char_width;
  } rows[] = {
      {"growth", 205, 6},   // reference band and lines, an SD block, targets, lines cut at the top
      {"mixed", 163, 6},    // arrows, an anamnestic block, a list block that is neither X nor Y
      {"puberty", 159, 6},  // a list that is its own X, drawn across
      {"tiny", 115, 8},     // one block on the HTML output's measures
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.id);
    output.setWidthMetric(0, row.width);
    output.setCharWidth(row.char_width);
    EXPECT_EQ(traceSection("draw_traces.txt", row.id), joined(painted(row.id)));
  }
}

TEST_F(GraphDrawTest, TheFirstRankedBlockSetsTheXScaleAndCrowdedNumbersGiveWay) {
  output.setWidthMetric(0, 268);
  output.setCharWidth(13);
  const std::regex x_axis("beginGraph.*|frameArea.*|drawText -?[0-9]+ 196 0 2 0 .*|"
                          "drawRasterLine ([0-9]+) 188 \\1 196 0|drawText [0-9]+ 188 1 1 3 .*");
  Lines axis;
  for (const std::string& line : painted("ranked"))
    if (std::regex_match(line, x_axis)) axis.push_back(line);
  EXPECT_EQ(traceSection("draw_traces.txt", "ranked"), joined(axis));
}

// The image of "tiny" is 76 + t high for an even axis tick t (see its
// trace): its one block 16 + 40 + 10 + t/2, the X axis below t/2 + 10. With
// t = -76 the block keeps 28 pixels but the image has none: nothing is
// drawn; with t = -74 the image is 2 high.
TEST_F(GraphDrawTest, AnImageWithoutHeightIsNotDrawn) {
  output.setWidthMetric(0, 115);
  output.setCharWidth(8);
  output.setHeightMetric(0, -76);
  EXPECT_EQ(Lines(), painted("tiny"));
  output.setHeightMetric(0, -74);
  EXPECT_EQ("beginGraph 0 \"Tiny\" 115 2", painted("tiny").at(0));
}

// The whole canvas of the graph equals the canvas of its trace played by
// hand, so layers, clipping and texts come out of the bitmap as worked out.
TEST_F(GraphDrawTest, TheSmallGraphPaintsTheCanvasOfItsCalls) {
  const std::string painted =
      canvas(115, [this](R_OutputInterface& out) { graph("tiny").write(*file, *child, R_Number(4.0), out); });
  const std::string expected = canvas(115, [](R_OutputInterface& out) {
    std::istringstream lines(traceSection("draw_traces.txt", "tiny"));
    for (std::string line; std::getline(lines, line);) replay(line, out);
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
