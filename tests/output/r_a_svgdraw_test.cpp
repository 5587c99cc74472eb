#include "output/r_a_svgdraw.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <memory>
#include <string>

#include "output/r_a_htmloutput.h"
#include "tests/output/svg_test_picture.h"
#include "tests/support/page_fakes.h"
#include "tests/support/test_files.h"

namespace {

typedef R_A_Setup S;

const std::string kHead =
    "<?xml version=\"1.0\" encoding=\"windows-1250\"?>\n"
    "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"12\" height=\"8\" viewBox=\"0 0 12 8\" "
    "font-family=\"monospace\" xml:space=\"preserve\">\n";

std::string documentOf(const R_A_SVGDraw& svg) {
  R_TextBuffer text;
  svg.getDocument(text);
  return std::string(text.data(), text.size());
}

// The elements after the head and the background rectangle of a 12 x 8
// surface whose colour 0 is black.
std::string elementsOf(const R_A_SVGDraw& svg) {
  const std::string whole = documentOf(svg);
  const std::string start = kHead + "<rect width=\"12\" height=\"8\" fill=\"#000000\"/>\n";
  EXPECT_EQ(whole.compare(0, start.size(), start), 0) << whole;
  return whole.substr(start.size(), whole.size() - start.size() - 7);  // less "</svg>\n"
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

// The corners of a ring of radius 2 around (8, 3): (2, 0) turned by pi/8
// 17 times in doubles, truncated, plus the pixel centre (0.5, 0.5); the
// drift makes the last turns give (1, 0) (python3, math.sin/cos).
const char* const kRing =
    "10.5,3.5 9.5,3.5 9.5,4.5 8.5,4.5 8.5,5.5 8.5,4.5 7.5,4.5 7.5,3.5 6.5,3.5 "
    "7.5,3.5 7.5,2.5 8.5,2.5 8.5,1.5 8.5,2.5 9.5,2.5 9.5,3.5 9.5,3.5 9.5,3.5";

// A graph through the output's operations, written out by endGraph. A
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
  out.drawMark(8, 3, 0, true);      // r = 5 / 2 = 2: nothing to clear
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
  EXPECT_EQ(readFile(path),
            kHead + "<rect width=\"12\" height=\"8\" fill=\"#ffffff\"/>\n"
            "<rect x=\"0\" y=\"0\" width=\"12\" height=\"8\" fill=\"#ffffff\"/>\n"
            "<line x1=\"1\" y1=\"1.5\" x2=\"10\" y2=\"1.5\" stroke=\"#000000\"/>\n"
            "<line x1=\"10.5\" y1=\"1\" x2=\"10.5\" y2=\"6\" stroke=\"#000000\"/>\n"
            "<line x1=\"11\" y1=\"6.5\" x2=\"2\" y2=\"6.5\" stroke=\"#000000\"/>\n"
            "<line x1=\"1.5\" y1=\"7\" x2=\"1.5\" y2=\"2\" stroke=\"#000000\"/>\n"
            "<line x1=\"1\" y1=\"4.5\" x2=\"11\" y2=\"4.5\" stroke=\"#006400\" "
            "stroke-dasharray=\"2 2\" stroke-dashoffset=\"3\"/>\n"
            "<line x1=\"2\" y1=\"2.5\" x2=\"7\" y2=\"5\" stroke=\"#000080\" stroke-width=\"2\"/>\n"
            "<line x1=\"6\" y1=\"3.5\" x2=\"10\" y2=\"3.5\" stroke=\"#000000\"/>\n"
            "<line x1=\"8.5\" y1=\"1\" x2=\"8.5\" y2=\"5\" stroke=\"#000000\"/>\n"
            "<polyline points=\"" + kRing + "\" fill=\"none\" stroke=\"#000000\"/>\n"
            "<clipPath id=\"c1\"><rect x=\"2\" y=\"2\" width=\"8\" height=\"5\"/></clipPath>\n"
            "<polygon points=\"2,2.5 10,6.167 10,4.417 2,4.75\" fill=\"#dbdbdb\" "
            "clip-path=\"url(#c1)\"/>\n"
            "<rect x=\"-13\" y=\"0\" width=\"24\" height=\"10\" fill=\"#ffffff\"/>\n"
            "<text x=\"-13\" y=\"8\" font-size=\"10\" textLength=\"24\" "
            "lengthAdjust=\"spacingAndGlyphs\" fill=\"#483d8b\">\xE9&amp;?</text>\n"
            "</svg>\n");
  EXPECT_EQ(xmlComplaints(path), "");
}

struct ElementRow {
  const char* label;
  std::function<void(R_A_SVGDraw&)> draw;
  std::string elements;
};

TEST(SVGDrawTest, OperationsWriteTheseElements) {
  const ElementRow rows[] = {
      // 0x7777 with pen 2: dot k is drawn when bit ((k + 1) / 2) % 4 is not
      // 3, so k = 5, 6 of each 8 are left out; the drawn run from k = 7 to
      // 4 reaches one pixel further, into the gap: 7 on, 1 off, from k = 7.
      {"dashed pen 2", [](R_A_SVGDraw& s) { s.drawLine(0, 0, 10, 0, 1, 0x7777, 2); },
       "<line x1=\"0\" y1=\"1\" x2=\"11\" y2=\"1\" stroke=\"#ff0000\" stroke-width=\"2\" "
       "stroke-dasharray=\"7 1\" stroke-dashoffset=\"1\"/>\n"},
      // Only dots 999 (x = -1) to 1012 (x = 12) are written; bit 1000 % 16 =
      // 8 of 0xCCCC is clear, 10 and 11 set: the run starts 2 dots in.
      {"long line cut to the picture",
       [](R_A_SVGDraw& s) { s.drawLine(-1000, 2, 1000, 2, 1, 0xCCCC, 1); },
       "<line x1=\"-1\" y1=\"2.5\" x2=\"13\" y2=\"2.5\" stroke=\"#ff0000\" "
       "stroke-dasharray=\"2 2\" stroke-dashoffset=\"2\"/>\n"},
      // One clipPath per clip that cuts a band; the band from 5 to 5 has
      // no column.
      {"clip written once per change",
       [](R_A_SVGDraw& s) {
         s.fillBand(0, 0, 2, 2, 0, 2, 1);
         s.fillBand(5, 0, 2, 5, 0, 2, 1);
         s.fillBand(1, 1, 1, 3, 1, 1, 1);
         s.setClip(0, 0, 0, 0);
         s.fillBand(0, 0, 2, 2, 0, 2, 1);
       },
       "<clipPath id=\"c1\"><rect x=\"0\" y=\"0\" width=\"12\" height=\"8\"/></clipPath>\n"
       "<polygon points=\"0,0 2,0 2,2 0,2\" fill=\"#ff0000\" clip-path=\"url(#c1)\"/>\n"
       "<polygon points=\"1,1 3,1 3,1 1,1\" fill=\"#ff0000\" clip-path=\"url(#c1)\"/>\n"
       "<clipPath id=\"c2\"><rect x=\"0\" y=\"0\" width=\"1\" height=\"1\"/></clipPath>\n"
       "<polygon points=\"0,0 1,0 1,2 0,2\" fill=\"#ff0000\" clip-path=\"url(#c2)\"/>\n"},
  };
  for (const ElementRow& row : rows) {
    SCOPED_TRACE(row.label);
    R_A_SVGDraw svg(12, 8);
    EXPECT_TRUE(svg.setColorName(1, "RED"));
    EXPECT_FALSE(svg.setColorName(3, "nosuchcolour"));
    row.draw(svg);
    EXPECT_EQ(elementsOf(svg), row.elements);
  }
}

TEST(SVGDrawTest, EmptySurfaceDrawsAndSavesNothingAndAFailedSaveLeavesNoFile) {
  TempDir dir;
  for (int side : {0, -3, R_A_SVGDraw::_maxSide + 1}) {
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
// stays well-formed (run under the sanitizers); so is the browser test's
// picture.
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
  paintTestPicture(out);
  EXPECT_EQ(xmlComplaints(page.lastFile()), "");
}

}  // namespace
