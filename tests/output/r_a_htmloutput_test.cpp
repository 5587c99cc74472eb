#include "output/r_a_htmloutput.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/support/page_fakes.h"

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

TEST_F(HTMLOutputTest, EveryTemplateHasItsDefault) {
  Page page;
  page.parameters.setUrlPrefix("/page?_t_id=");
  page.out().setImageBase("img/");
  writeOneOfEach(page.out());
  EXPECT_EQ(page.sink.text(),
            "\n\n\n\n<p>\n</p>\n\n<b>\n\n<i>\n</b>\n\n</i>\n\n"
            "<a href=\"/page?_t_id=t7\">(*)</a>\n<a href=\"http://x/\">[*]</a>\n"
            "<font color=red>12.5</font>\n<h1>Growth</h1>\n<h2>Weight</h2>\n<hr />\n"
            "<center><table border=\"1\">\n<table border=\"1\">\n</table></center>\n</table>\n"
            "<tr>\n<tr>\n<tr>\n<tr>\n<tr>\n</tr>\n</tr>\n</tr>\n</tr>\n</tr>\n"
            "<th>\n<td bgcolor=gray>\n<td bgcolor=gray>\n<td>\n<td>\n"
            "</th>\n</td>\n</td>\n</td>\n</td>\n"
            "<td height=2></td>\n<th>&nbsp;</th>\n<td>&nbsp;</td>\n<p>&nbsp;</p>\n"
            "5\n&nbsp;\n&nbsp;\n<center><img src=\"img/logo\"></img></center>\n");
  EXPECT_EQ(page.parameters.lastUrlSize(), 16384);
}

// Each text key set to "[code:@1]" shows which key every case reads; the
// arguments themselves are not expanded again.
TEST_F(HTMLOutputTest, EveryCaseReadsItsOwnKey) {
  Page page;
  for (int code = 0; code < S::_strCodeCount; code++) {
    page.setup.setStr(code, "[" + std::to_string(code) + ":@1]");
  }
  page.out().setImageBase("img/");
  writeOneOfEach(page.out());
  EXPECT_EQ(page.sink.text(),
            "[3:]\n[4:]\n[5:]\n[6:]\n[7:]\n[8:]\n"
            "\n[9:]\n[11:]\n[13:]\n[10:]\n[12:]\n[14:]\n\n"
            "[15:t7]\n[62:http://x/]\n[16:12.5]\n[17:Growth]\n[18:Weight]\n[19:]\n"
            "[20:]\n[59:]\n[21:]\n[60:]\n"
            "[22:]\n[23:]\n[23:]\n[23:]\n[23:]\n[24:]\n[25:]\n[25:]\n[25:]\n[25:]\n"
            "[26:]\n[66:]\n[66:]\n[27:]\n[27:]\n[28:]\n[65:]\n[65:]\n[29:]\n[29:]\n"
            "[67:]\n[30:]\n[31:]\n[64:]\n"
            "[32:5]\n[61:]\n[61:]\n[33:img/logo[58:@1]]\n");
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
  for (char ch : std::string(" H^2O ^^")) out.writeChar(0, ch);
  EXPECT_EQ(page.sink.text(),
            "H<sup>2</sup>O x<sup>3</sup> ^ ^a H<sup>2</sup>O H<sup>2</sup>O ^");
}

// The pending `^` belongs to the process: the next page, of another output,
// completes it.
TEST_F(HTMLOutputTest, CircumflexAtTheEndOfAPageCarriesOverToTheNext) {
  Page first, second;
  first.out().writeResult("5");
  for (char ch : std::string(" cm^")) first.out().writeChar(0, ch);
  second.out().writeCell(0, 0, "2 cm");
  EXPECT_EQ(first.sink.text(), "<font color=red>5</font> cm");
  EXPECT_EQ(second.sink.text(), "<sup>2</sup> cm");
}

TEST_F(HTMLOutputTest, NormalFontIsEmptyUnlessTheSetupGivesIt) {
  Page plain, styled;
  styled.setup.setStr(S::strHtmlFontNormalOn, "<span>");
  styled.setup.setStr(S::strHtmlFontNormalOff, "</span>");
  for (Page* page : {&plain, &styled}) {
    page->out().setFont(1);
    page->out().writeChar(0, 'x');
    page->out().setFont(4);
  }
  EXPECT_EQ(plain.sink.text(), "x");
  EXPECT_EQ(styled.sink.text(), "<span>x</span>");
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

TEST_F(HTMLOutputTest, GraphFilesAreNamedByRandomClockAndRunningNumber) {
  R_A_HTMLOutput::setNameSources(fixedRandom, fixedClock);
  const struct { const char* extension; const char* text; const char* events; } rows[] = {
      {"bmp", "", "graph /g/842748571.bmp u/842748571.bmp|graph /g/842748572.bmp u/842748572.bmp"},
      {"gif", "", "graph /g/842748573.gif u/842748573.gif|graph /g/842748574.gif u/842748574.gif"},
      {"wmf", "<center><p><i>Height</i><br><img src=\"u/842748576.wmf\"></img></p></center>",
       "graph /g/842748575.wmf u/842748575.wmf|graph /g/842748577.wmf u/842748577.wmf"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.extension);
    Page page;
    page.setup.setStr(S::strGraphExtension, row.extension);
    page.out().setGraphDirs("/g/", "u/");
    page.out().endGraph(0, "Weight");
    page.out().beginGraph(0, "Height", 300, 200);
    page.out().endGraph(0, "Height");
    EXPECT_EQ(page.sink.text(), row.text);
    EXPECT_EQ(page.sink.events()[0] + "|" + page.sink.events()[1], row.events);
  }
}

// The default generator is the portable rand(): 16838, 5758, ... from seed 1.
TEST_F(HTMLOutputTest, DefaultRandomDigitsFollowThePortableSequence) {
  R_A_HTMLOutput::setNameSources(nullptr, fixedClock);
  Page page;
  page.out().endGraph(0, "");
  page.out().endGraph(0, "");
  EXPECT_EQ(page.sink.events()[0] + " " + page.sink.events()[1],
            "graph 1683848571.bmp 1683848571.bmp graph 575848572.bmp 575848572.bmp");
}

TEST_F(HTMLOutputTest, BitmapTextIsMeasuredInFontCells) {
  const struct { const char* extension; int doubled, height, width; } rows[] = {
      {nullptr, 0, 10, 24}, {"pcx", 0, 10, 24}, {"bmp", 1, 18, 24},
      {"wmf", 0, 0, 0},     {"BMP", 0, 0, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.extension ? row.extension : "default");
    Page page;
    if (row.extension) page.setup.setStr(S::strGraphExtension, row.extension);
    page.setup.setInt(S::intGraphBitmapTextDouble, row.doubled);
    EXPECT_EQ(page.out().getFontHeight(0), row.height);
    EXPECT_EQ(page.out().getTextWidth(0, "abc"), row.width);
  }
}

TEST_F(HTMLOutputTest, PaletteNamesEachIndexFromTheSetup) {
  Page page;
  page.setup.setStr(S::strGraphColorRefdataMain, "navy");
  std::string text;
  for (int row = 0; row < R_A_HTMLOutput::paletteRows; row++) {
    text += std::to_string(R_A_HTMLOutput::getPaletteIndex(row)) + "=" +
            page.out().getPaletteColorName(row) + " ";
  }
  EXPECT_EQ(text,
            "0=white 1=black 2=navy 3=lightslateblue 4=darkgreen 5=red 7=grey86 8=black "
            "9=grey11 10=blue 13=white 14=grey96 15=black ");
}

}  // namespace
