#include "output/r_a_htmloutput.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/output/canvas_dump.h"
#include "tests/support/page_fakes.h"
#include "tests/support/test_files.h"

namespace {

typedef R_A_Setup S;

// An output on fakes, with the process-wide state started afresh.
struct Page {
  FakeSetup setup;
  FakeParameters parameters;
  CollectingPageSink sink;
  R_A_HTMLOutput& out() {
    if (output == nullptr) output.reset(new R_A_HTMLOutput(setup, sink, parameters));
    return *output;
  }
  std::unique_ptr<R_A_HTMLOutput> output;
};

class HTMLOutputTest : public ::testing::Test {
 protected:
  void SetUp() override { R_A_HTMLOutput::resetProcessState(); }
  void TearDown() override { R_A_HTMLOutput::setNameSources(nullptr, nullptr); }
};

// Every case of every templated operation once, each followed by a newline.
void writeOneOfEach(R_A_HTMLOutput& out) {
  const auto nl = [&out] { out.writeChar(0, '\n'); };
  out.beginDocument(); nl(); out.endDocument(); nl();
  out.beginBlock(3); nl(); out.endBlock(); nl();
  out.beginParagraph(); nl(); out.endParagraph(); nl();
  for (int change = -1; change <= 6; change++) { out.setFont(change); nl(); }
  out.writeAnchor("t7", true); nl(); out.writeAnchor("http://x/", false); nl();
  out.writeResult("12.5"); nl();
  out.writeHeader(0, "Growth"); nl(); out.writeHeader(1, "Weight"); nl();
  out.writeHRule(); nl();
  out.beginTable(3, 4, 1); nl(); out.beginTable(3, 4, 0); nl();
  out.endTable(1); nl(); out.endTable(0); nl();
  const int cells[][3] = {{0, 0, 1}, {1, 0, 0}, {0, 0, 0}, {1, 1, 1}, {1, 1, 0}};
  for (const auto& c : cells) { out.beginRow(c[0], c[2]); nl(); }
  for (const auto& c : cells) { out.endRow(c[0], c[2]); nl(); }
  for (const auto& c : cells) { out.beginCell(c[0], c[1], c[2]); nl(); }
  for (const auto& c : cells) { out.endCell(c[0], c[1], c[2]); nl(); }
  out.writeSeparatorCell(0, 0, 0); nl(); out.writeSeparatorCell(0, 1, 1); nl();
  out.writeSeparatorCell(1, 0, 1); nl();
  out.writeInvertedBreak(); nl();
  out.writeCell(1, 1, "5"); nl(); out.writeCell(1, 1, ""); nl(); out.writeCell(1, 1, nullptr); nl();
  out.writeImage("logo"); nl();
}

// The whole page, one line an operation, is templates.txt.
TEST_F(HTMLOutputTest, EveryTemplateHasItsDefault) {
  Page page;
  page.parameters.setUrlPrefix("/page?_t_id=");
  page.out().setImageBase("img/");
  writeOneOfEach(page.out());
  EXPECT_EQ(page.sink.text(), readFile(testData("output/templates.txt")));
  EXPECT_EQ(page.parameters.lastUrlSize(), 16384);
}

TEST_F(HTMLOutputTest, EmitPutsArgumentsAndEscapedBytes) {
  const struct { const char* text; const char* expected; } rows[] = {
      {"a@1b@2c", "aAbc"}, {"@@", "@"}, {"50@%", "50%"}, {"@3", "3"},
      {"end@", "end"},     {"@", ""},   {"@2@1@1", "AA"}, {"", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    Page page;
    page.out().emit(S::strHtmlHrule, row.text, "A", nullptr);
    EXPECT_EQ(page.sink.text(), row.expected);
  }
}

TEST_F(HTMLOutputTest, UpperIndexWorksInTemplatesCellsAndPlainText) {
  Page page;
  page.setup.setStr(S::strHtmlHeader, "H^2O x^@1 ^^ ^a ");
  R_A_HTMLOutput& out = page.out();
  out.writeHeader(0, "3");
  out.writeCell(1, 1, "H^2O");
  for (char ch : std::string(" H^2O ^^ cm^")) out.writeChar(0, ch);
  // The pending `^` belongs to the process: the next page, of another
  // output, completes it.
  Page second;
  second.out().writeCell(0, 0, "2 cm");
  EXPECT_EQ(page.sink.text() + "|" + second.sink.text(),
            "H<sup>2</sup>O x<sup>3</sup> ^ ^a H<sup>2</sup>O H<sup>2</sup>O ^ cm|<sup>2</sup> cm");
}

TEST_F(HTMLOutputTest, WishedGraphWidthCountsFrom200To1000) {
  const struct { const char* wished; int width; } rows[] = {
      {nullptr, 700}, {"199", 700}, {"200", 200}, {"640.9", 640}, {"1000", 1000},
      {"1001", 700},  {"-300", 700}, {"abc", 700}, {"", 700},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.wished ? row.wished : "none");
    Page page;
    page.setup.setInt(S::intGraphOptimalWidth, 700);
    if (row.wished) page.parameters.set(R_A_Parameters::parGraphWidth, row.wished);
    EXPECT_EQ(page.out().getWidthMetric(0), row.width);
    EXPECT_EQ(page.out().getWidthMetric(1), 10);  // the wish is for the width alone
  }
}

// Widths 0 to 5, heights 0 to 3, each followed by one unknown `which`; then
// inverted column count, graphs in SD, date format and SD append.
std::string metrics(R_A_HTMLOutput& out) {
  std::string text;
  for (int which = -1; which <= 6; which++) text += std::to_string(out.getWidthMetric(which)) + " ";
  text += "|";
  for (int which = -1; which <= 4; which++) text += " " + std::to_string(out.getHeightMetric(which));
  return text + " | " + std::to_string(out.getInvertedColumnCount()) + " " +
         (out.isGraphInSD() ? "sd " : "percentiles ") + out.getDateFormat() + " [" +
         out.getSDAppend(0) + "]";
}

TEST_F(HTMLOutputTest, MetricsAndSettingsComeFromTheirKeys) {
  Page defaults, set;
  for (int code = 0; code < S::_intCodeCount; code++) set.setup.setInt(code, 100 + code);
  set.setup.setStr(S::strDateFormat, "%Y-%m-%d");
  set.setup.setStr(S::strGraphSdAppend, " SD");
  EXPECT_EQ(metrics(defaults.out()), "0 512 10 8 16 3 6 0 | 0 8 2 6 3 0 | 6 sd %d.%m.%Y []");
  EXPECT_EQ(metrics(set.out()),
            "0 103 105 106 104 110 117 0 | 0 106 109 111 116 0 | 118 percentiles %Y-%m-%d [ SD]");
  set.setup.setInt(S::intGraphInSd, 1);
  EXPECT_TRUE(set.out().isGraphInSD());
}

int fixedRandom() { return 40000; }          // 40000 % 31573 = 8427
long long fixedClock() { return 1700000000; }  // 1700000000 % 12071 = 4857

// ---- Drawing

// "name:xxxx " for each file in `dir`, xxxx its first two bytes in hex.
std::string filesIn(const TempDir& dir) {
  int status = 0;
  return runCommand("cd '" + dir.path() + "' && for f in *; do [ -f \"$f\" ] && printf '%s:%s ' "
                    "\"$f\" \"$(head -c2 \"$f\" | od -An -tx1 | tr -d ' \\n')\"; done", &status);
}

// A bitmap is saved and placed at endGraph, a metafile placed at beginGraph
// and completed at endGraph or when the output goes; graphDone for all.
// Names: 40000 % 31573 = 8427, 1700000000 % 12071 = 4857, then the number.
TEST_F(HTMLOutputTest, EachExtensionGivesItsFilePageTextAndSinkEvents) {
  const std::string placed = "<center><p><i>T</i><br><img src=\"u/84274857";
  const struct Row {
    const char* extension;
    const char* subdirectory;
    bool closed;
    std::string text, events, files;
  } rows[] = {
      {"bmp", "", true, placed + "1.bmp\"></img></p></center>",
       "graph D/842748571.bmp u/842748571.bmp", "842748571.bmp:424d "},
      {"pcx", "", true, placed + "1.pcx\"></img></p></center>",
       "graph D/842748571.pcx u/842748571.pcx", "842748571.pcx:0a05 "},
      {"wmf", "", true, placed + "1.wmf\"></img></p></center>",
       "graph D/842748572.wmf u/842748572.wmf", "842748571.wmf:d7cd "},
      {"gif", "", true, "", "graph D/842748571.gif u/842748571.gif", ""},
      {"bmp", "missing/", true, placed + "1.bmp\"></img></p></center>",
       "graph D/missing/842748571.bmp u/842748571.bmp", ""},
      {"svg", "", true, placed + "1.svg\"></img></p></center>",
       "graph D/842748571.svg u/842748571.svg", "842748571.svg:3c3f "},
      {"svg", "", false, "", "", ""},
      {"wmf", "", false, placed + "1.wmf\"></img></p></center>", "", "842748571.wmf:d7cd "},
  };
  R_A_HTMLOutput::setNameSources(fixedRandom, fixedClock);
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.extension) + " " + row.subdirectory + (row.closed ? "" : " open"));
    R_A_HTMLOutput::resetProcessState();
    TempDir dir;
    Page page;
    page.setup.setStr(S::strGraphExtension, row.extension);
    page.out().setGraphDirs((dir.path() + "/" + row.subdirectory).c_str(), "u/");
    page.out().beginGraph(0, "T", 4, 2);
    page.out().fillArea(0, 0, 3, 1, 1, 0);
    page.out().drawText(0, 0, 1, 2, 0, "a");
    if (row.closed) page.out().endGraph(0, "T");
    page.output.reset();
    std::string events;
    for (const std::string& event : page.sink.events()) events += event;
    const size_t at = events.find(dir.path() + "/");
    if (at != std::string::npos) events.replace(at, dir.path().size() + 1, "D/");
    EXPECT_EQ(page.sink.text(), row.text);
    EXPECT_EQ(events, row.events);
    EXPECT_EQ(filesIn(dir), row.files);
  }
}

struct DrawRow {
  const char* label;
  int width, height;
  std::function<void(R_A_HTMLOutput&)> draw;
};

// Whole canvases drawn by hand, in canvases.txt under the row's label.
// graph-target-width 8 makes the range bar's h = 8 * 3 / 8 = 3;
// graph-arrow-width is 4.
TEST_F(HTMLOutputTest, DrawingOperationsPaintTheseCanvases) {
  const DrawRow rows[] = {
      {"areas: 0 background, 1 3 4 data, 2 analysis, others none", 6, 2,
       [](R_A_HTMLOutput& o) {
         o.fillArea(0, 0, 5, 1, 2, 0);
         const int areas[] = {1, 3, 4, 0, 5, -1};  // one column each
         for (int x = 0; x < 6; x++) o.fillArea(x, 0, x, 1, areas[x], 0);
       }},
      {"frames for every area but 0", 5, 4,
       [](R_A_HTMLOutput& o) { o.frameArea(0, 0, 4, 3, 3, 0); o.frameArea(1, 1, 3, 2, 0, 0); }},
      // Dot n of 17 is drawn when bit n % 16 is set: 0x7777 leaves out
      // n = 3, 7, 11, 15; 0xCCCC draws n = 2, 3, 6, 7, 10, 11, 14, 15.
      {"raster kinds 0 to 3, then 4 and -1 draw nothing", 17, 6,
       [](R_A_HTMLOutput& o) {
         for (int k = -1; k <= 4; k++) o.drawRasterLine(0, k + 1, 17, k + 1, k);
       }},
      {"reference lines: kind 0 main, others secondary", 4, 3,
       [](R_A_HTMLOutput& o) { for (int k : {0, 1, 5}) o.drawRefLine(0, k % 4, 4, k % 4, k); }},
      {"data lines with a pen of 2", 6, 6,
       [](R_A_HTMLOutput& o) { o.drawDataLine(0, 1, 4, 1, 0); o.drawDataLine(0, 4, 4, 4, 1); }},
      // a = atan2(0, -8) = 180 degrees; at 210 and 150 degrees the head
      // points are 8 - 3.46 = 4.54 -> 4 and 4 -/+ 2: (4, 2), (4, 6). The
      // strokes from the tip step x by -1, y every second step.
      {"arrow to the right", 10, 7, [](R_A_HTMLOutput& o) { o.drawDataArrow(0, 4, 8, 4, 0); }},
      // Style 1, y1 = y2 = 5: from y2 + h = 8 up to y2 - h = 2.
      {"range bar of one target", 9, 11, [](R_A_HTMLOutput& o) { o.drawRangeBar(4, 5, 5, 1); }},
      // Style 1, y1 < y2: from y2 + h = 10 up to y1 = 2.
      {"range bar style 1, y1 above", 9, 11, [](R_A_HTMLOutput& o) { o.drawRangeBar(4, 2, 7, 1); }},
      {"range bar style 0: from y1 to y2", 9, 11,
       [](R_A_HTMLOutput& o) { o.drawRangeBar(4, 2, 7, 0); }},
      // Ends given right to left: x -1 to 9, A from 0 to 5 (y = (x + 1) / 2,
      // so 2.5 at x = 4 rounds up to 3), B from 10 to 0 (y = 9 - x). Clip x 1
      // to 6, y 1 to 6; each column from A towards B without B's end.
      {"band clipped at every edge", 8, 8,
       [](R_A_HTMLOutput& o) { o.setClip(6, 1, 1, 6); o.drawBand(9, 5, 0, -1, 0, 10, 0); }},
      {"no surface after endGraph", 4, 1,
       [](R_A_HTMLOutput& o) {
         o.endGraph(0, "");
         o.fillArea(0, 0, 3, 0, 1, 0);
         o.drawMark(1, 1, 0, false);
         o.drawText(0, 0, 0, 0, 0, "x");
         o.beginGraph(0, "", 4, 1);
       }},
  };
  for (const DrawRow& row : rows) {
    SCOPED_TRACE(row.label);
    TempDir dir;
    Page page;
    page.setup.setInt(S::intGraphTargetWidth, 8);
    page.setup.setInt(S::intGraphArrowWidth, 4);
    page.out().setGraphDirs((dir.path() + "/").c_str(), "");
    page.out().beginGraph(0, "", row.width, row.height);
    row.draw(page.out());
    ASSERT_NE(page.out().getBitmapDraw(), nullptr);
    EXPECT_EQ(dumpCanvas(*page.out().getBitmapDraw()), expectedCanvas(row.label));
  }
}

// Marks and text on an analysis background, against the canvas's own
// primitives placed by hand: a mark of width 8 has r = 4, is cleared with a
// circle of radius 2 and crossed from -4 to 4; graph-small-mark-width 7 gives
// r = 3 and no clearing circle (radii 2 to 1).
TEST_F(HTMLOutputTest, MarksAreClearedCrossedAndCircled) {
  Page page;
  page.setup.setInt(S::intGraphSmallMarkWidth, 7);
  page.out().beginGraph(0, "", 24, 12);
  page.out().fillArea(0, 0, 23, 11, 2, 0);
  page.out().drawMark(6, 6, 0, false);
  page.out().drawMark(17, 6, 1, true);
  R_A_BitmapDraw expected(24, 12);
  expected.fillRect(0, 0, 23, 11, 14);
  expected.drawCircle(6, 6, 2, 0);
  expected.drawLine(2, 6, 10, 6, 8, R_A_BitmapDraw::_solid, 1);
  expected.drawLine(6, 2, 6, 10, 8, R_A_BitmapDraw::_solid, 1);
  expected.drawCircle(6, 6, 4, 8);
  expected.drawLine(14, 6, 20, 6, 9, R_A_BitmapDraw::_solid, 1);
  expected.drawLine(17, 3, 17, 9, 9, R_A_BitmapDraw::_solid, 1);
  expected.drawCircle(17, 6, 3, 9);
  EXPECT_EQ(dumpCanvas(*page.out().getBitmapDraw()), dumpCanvas(expected));
}

// Text of 2 bytes is 16 wide and 10 high (18 doubled); alignment 1 moves
// back by the whole size, 2 by half of it.
TEST_F(HTMLOutputTest, TextIsAlignedAndColouredByFont) {
  const struct { int doubled, vertical, horizontal, font, left, top, color; } rows[] = {
      {0, 0, 0, 0, 20, 20, 1},  {0, 1, 1, 1, 4, 10, 1},   {0, 2, 2, 2, 12, 15, 15},
      {0, 3, -1, 3, 20, 20, 15}, {0, 1, 0, 4, 20, 10, 2}, {0, 0, 2, 5, 12, 20, 3},
      {0, 0, 0, 6, 20, 20, 2},  {0, 0, 0, 7, 20, 20, 3},  {0, 0, 0, 8, 20, 20, 10},
      {0, 0, 0, 9, 20, 20, 0},  {0, 0, 0, -1, 20, 20, 0}, {1, 1, 0, 0, 20, 2, 1},
      {1, 2, 0, 8, 20, 11, 10},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << "doubled " << row.doubled << " font " << row.font);
    Page page;
    page.setup.setInt(S::intGraphBitmapTextDouble, row.doubled);
    page.out().beginGraph(0, "", 40, 40);
    page.out().fillArea(0, 0, 39, 39, 2, 0);
    page.out().drawText(20, 20, row.vertical, row.horizontal, row.font, "ab");
    R_A_BitmapDraw expected(40, 40);
    expected.fillRect(0, 0, 39, 39, 14);
    expected.drawString(row.left, row.top, row.color, row.doubled != 0, 0, "ab");
    EXPECT_EQ(dumpCanvas(*page.out().getBitmapDraw()), dumpCanvas(expected));
  }
}

}  // namespace
