#include "output/r_a_svgdraw.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>

#include "output/r_a_htmloutput.h"
#include "tests/support/page_fakes.h"
#include "tests/support/test_files.h"

namespace {

typedef R_A_Setup S;

std::string documentOf(const R_A_SVGDraw& svg) {
  R_TextBuffer text;
  svg.getDocument(text);
  return std::string(text.data(), text.size());
}

// "" when xmllint is missing or finds `file` well-formed, else its complaint.
std::string xmlComplaints(const std::string& file) {
  int status = 0;
  runCommand("command -v xmllint >/dev/null", &status);
  if (status != 0) return "";
  return runCommand("xmllint --noout '" + file + "' 2>&1", &status);
}

int fixedRandom() { return 7; }
long long fixedClock() { return 3; }

// An output of "svg" graphs into a fresh folder, with the process-wide
// state started afresh.
struct SVGPage {
  SVGPage() {
    R_A_HTMLOutput::resetProcessState();
    setup.setStr(R_A_Setup::strGraphExtension, "svg");
  }
  R_A_HTMLOutput& out() {
    if (output == nullptr) {
      output.reset(new R_A_HTMLOutput(setup, sink, parameters));
      output->setGraphDirs((dir.path() + "/").c_str(), "g/");
    }
    return *output;
  }
  // The file that the sink heard of last.
  std::string lastFile() const {
    const std::string& event = sink.events().back();
    return event.substr(6, event.find(' ', 6) - 6);
  }
  TempDir dir;
  FakeSetup setup;
  FakeParameters parameters;
  CollectingPageSink sink;
  std::unique_ptr<R_A_HTMLOutput> output;
};

// A graph through the output's operations, written out by endGraph as
// small_graph.svg. A
// pen-1 line from (x0, y0) over `long` main-axis steps is the stroke from
// (x0, y0) + (0.5, 0.5) - step / 2 to (x1, y1) + (0.5, 0.5) - step / 2; a
// pen of 2 covers dot + (0..1, 0..1), so its stroke runs through dot + (1,
// 1) from a whole step before the first dot to the last dot's far edge.
TEST(SVGDrawTest, SmallGraphIsWrittenAsThisDocument) {
  R_A_HTMLOutput::setNameSources(fixedRandom, fixedClock);
  SVGPage page;
  page.setup.setStr(S::strGraphColorDataSecondary, "navy");
  R_A_HTMLOutput& out = page.out();
  out.beginGraph(0, "Small", 12, 8);
  out.fillArea(0, 0, 11, 7, 0, 0);
  out.frameArea(1, 1, 10, 6, 1, 0);
  // 0xCCCC: dot n is drawn when bit n % 4 is 2 or 3, so k = 1, 2 of each
  // 4: the array starts at k = 1, 3 steps before the line's k = 0 + 4.
  out.drawRasterLine(1, 4, 11, 4, 3);
  out.drawDataLine(2, 2, 6, 4, 1);  // steps (1, 0.5); dots 0 to 3
  // r = 5 / 2 = 2: nothing to clear. The corners of the ring around (8, 3):
  // (2, 0) turned by pi/8 17 times in doubles, truncated, plus the pixel
  // centre (0.5, 0.5); the drift makes the last turns give (1, 0) (python3,
  // math.sin/cos).
  out.drawMark(8, 3, 0, true);
  // Columns 2 to 9 of 0..11: at x = 1.5, A = 2 + 4 * 1.5 / 12 = 2.5 and
  // B = 5 - 2 * 1.5 / 12 = 4.75; at 9.5, A = 5.167 lies below B = 3.417,
  // so both go one row down.
  out.setClip(9, 6, 2, 2);
  out.drawBand(0, 2, 5, 12, 6, 3, 0);
  // 3 bytes: 24 wide, so the left edge is 11 - 24; 0x01 is no XML text.
  out.drawText(11, 0, 0, 1, 4, "\xE9&\x01");
  out.endGraph(0, "Small");
  R_A_HTMLOutput::setNameSources(nullptr, nullptr);
  const std::string path = page.dir.path() + "/731.svg";
  EXPECT_EQ(page.sink.events().back(), "graph " + path + " g/731.svg");
  EXPECT_EQ(page.sink.text(),
            "<center><p><i>Small</i><br><img src=\"g/731.svg\"></img></p></center>");
  EXPECT_EQ(readFile(path), readFile(testData("output/small_graph.svg")));
  EXPECT_EQ(xmlComplaints(path), "");
}

TEST(SVGDrawTest, EmptySurfaceDrawsAndSavesNothingAndAFailedSaveLeavesNoFile) {
  TempDir dir;
  for (int side : {0, R_A_SVGDraw::_maxSide + 1}) {
    SCOPED_TRACE(side);
    R_A_SVGDraw svg(side, 5);
    svg.fillRect(0, 0, 3, 3, 1);
    EXPECT_TRUE(svg.isEmpty());
    EXPECT_FALSE(svg.save(dir.file("empty.svg").c_str()));
  }
  R_A_SVGDraw svg(12, 8);
  EXPECT_FALSE(svg.save(dir.file("missing/a.svg").c_str()));
  EXPECT_TRUE(svg.save(dir.file("a.svg").c_str()));
  int status = 0;
  EXPECT_EQ(runCommand("ls '" + dir.path() + "'", &status), "a.svg\n");
  EXPECT_EQ(readFile(dir.file("a.svg")), documentOf(svg));
}

// Coordinates and settings at the ends of int stay bounded, and the file
// stays well-formed (run under the sanitizers).
TEST(SVGDrawTest, ExtremeCoordinatesGiveABoundedWellFormedFile) {
  const int lo = INT_MIN, hi = INT_MAX;
  SVGPage page;
  for (int code : {S::intGraphMarkWidth, S::intGraphArrowWidth, S::intGraphTargetWidth}) {
    page.setup.setInt(code, hi);
  }
  R_A_HTMLOutput& out = page.out();
  out.beginGraph(0, "", 30, 20);
  out.setClip(lo, lo, hi, hi);
  out.drawBand(lo, lo, hi, hi, hi, lo, 0);
  out.drawMark(hi, lo, 1, false);
  out.drawRangeBar(lo, hi, lo, 1);
  out.drawDataArrow(lo, lo, hi, hi, 0);
  out.drawRasterLine(lo, 3, hi, 3, 2);
  out.drawText(lo, lo, 1, 2, 0, "xyz");
  out.frameArea(lo, lo, hi, hi, 1, 0);
  out.endGraph(0, "");
  EXPECT_LT(readFile(page.lastFile()).size(), 8000u);
  EXPECT_EQ(xmlComplaints(page.lastFile()), "");
}

}  // namespace
