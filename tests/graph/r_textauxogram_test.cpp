#include "graph/r_textauxogram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "document/r_supertext.h"
#include "graph/r_auxogramline.h"
#include "knowledge/r_file.h"
#include "proband/r_proband.h"
#include "tests/knowledge/knowledge_test_support.h"
#include "tests/support/recording_output.h"
#include "tests/support/test_files.h"
#include "tests/support/xml_fakes.h"

namespace {

typedef std::vector<std::string> Lines;

// The messages of loading `content` as the only element of a text, an
// auxogram.
Lines loadMessages(const std::string& content) {
  NamedStatistics statistics({"AGE", "HT_SDS"});
  CollectingReporter reporter;
  R_SuperText text;
  bool ok = text.loadXML(("<id>T</id><auxogram>" + content + "</auxogram>").c_str(), statistics, &reporter);
  EXPECT_EQ(ok, reporter.lines().empty());
  return reporter.lines();
}

TEST(TextAuxogramTest, DamagedDefinitionsAreRefusedWithTheirMessagesInnermostFirst) {
  const std::string line = "<auxogramline var=\"HT_SDS\" method=\"HT_SDS\"/>";
  const std::string wrong_line = "data error processing standalone tag <auxogramline../>: wrong auxogram line definition";
  const struct {
    const char* what;
    std::string content;
    Lines messages;
  } rows[] = {
      {"a good auxogram", "<caption>C</caption>" + line + line, {}},
      {"no lines", "<caption>C</caption>", {"no auxogram lines defined"}},
      {"no caption", line, {"no auxogram caption defined"}},
      {"neither", " ", {"no auxogram lines defined", "no auxogram caption defined"}},
      {"nothing", "", {"no input data"}},
      {"a blank caption", "<caption> </caption>" + line,
       {"data error closing block </caption>: auxogram caption undefined"}},
      {"an unknown variable", "<caption>C</caption><auxogramline var=\"NOPE\" method=\"HT_SDS\"/>", {wrong_line}},
      {"no variable", "<caption>C</caption><auxogramline method=\"HT_SDS\"/>", {wrong_line}},
      {"no method", "<caption>C</caption><auxogramline var=\"HT_SDS\"/>", {wrong_line}},
      {"a method naming no variable", "<caption>C</caption><auxogramline var=\"HT_SDS\" method=\"NOPE\"/>",
       {wrong_line}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Lines expected = row.messages;
    if (!expected.empty()) {
      expected.push_back("data error closing block </auxogram>: text block data error");
      expected.push_back("Error while processing text.");
    }
    EXPECT_EQ(expected, loadMessages(row.content));
  }
}

// Caption "G"; a line labelled HT_SDS (index 1) computing HT_SDS, and one
// labelled AGE (index 0) computing AGE.
const char* const kSmallAuxogram =
    "<caption>G</caption><auxogramline var=\"HT_SDS\" method=\"HT_SDS\"/><auxogramline var=\"age\" method=\"age\"/>";
const char* const kSmallHex =
    "01 01 00 47"                                                                // caption "G"
    " 02 02 00 00 00"                                                            // two lines
    " 41 02 01 00 00 00"                                                         // line, var 1
    " 06 01 02 01 00 00 00 02 01 00 00 00 02 01 00 00 00 01 00 00 01 02 00 40 41"  // HT_SDS, no chain, "@A"
    " 41 02 00 00 00 00"                                                         // line, var 0
    " 06 01 02 01 00 00 00 02 01 00 00 00 02 00 00 00 00 01 00 00 01 02 00 40 41";  // AGE, no chain, "@A"

TEST(TextAuxogramTest, TheBinaryFormIsPinned) {
  NamedStatistics statistics({"AGE", "HT_SDS"});
  R_TextAuxogram auxogram;
  auxogram.loadText(kSmallAuxogram, statistics, nullptr);
  ASSERT_TRUE(auxogram.isOK());
  expectPinnedForm(kSmallHex, savedBytes(auxogram), [](R_InputStream& stream, bool* ok) {
    R_TextAuxogram again;
    again.load(stream, ok);
    EXPECT_EQ(*ok, again.isOK());
    return *ok ? savedBytes(again) : Bytes();
  });
}

TEST(TextAuxogramTest, DamagedBinaryFormsFail) {
  const std::string head = "01 01 00 47 02 01 00 00 00 ";
  const std::string equation = " 06 01 02 01 00 00 00 02 01 00 00 00 02 01 00 00 00 01 00 00 01 02 00 40 41";
  const struct {
    const char* what;
    std::string hex;
  } rows[] = {
      {"no lines", "01 01 00 47 02 00 00 00 00"},
      {"a negative count", "01 01 00 47 02 FF FF FF FF"},
      {"a line with another type byte", head + "40 02 01 00 00 00" + equation},
      {"a line without variable", head + "41 02 FF FF FF FF" + equation},
      {"a line without equation", head + "41 02 01 00 00 00 06 00"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    R_TextAuxogram auxogram;
    EXPECT_FALSE(loadFrom(bytesOf(row.hex), &auxogram));
    EXPECT_FALSE(auxogram.isOK());
  }
}

TEST(TextAuxogramTest, TheXMLFormWritesCaptionThenEachLineWithVarThenMethod) {
  NamedStatistics statistics({"AGE", "HT_SDS"});
  R_SuperText text;
  ASSERT_TRUE(text.loadXML("<id>T</id><auxogram if=\"age\"><auxogramline method=\"ht_sds*2\" var=\"ht_sds\"/>"
                           "<caption> Growth   in SD </caption><auxogramline var=\"AGE\" method=\"AGE\"/></auxogram>",
                           statistics, nullptr));
  const std::string xml =
      "<id>T</id><toc></toc><auxogram if=\"AGE:\"><caption>Growth in SD</caption>"
      "<auxogramline var=\"HT_SDS\" method=\"HT_SDS:*2\" /><auxogramline var=\"AGE\" method=\"AGE:\" /></auxogram>";
  EXPECT_EQ(xml, xmlWrittenBy([&](R_XMLTextOutput& out) { text.saveXML(out, statistics); }));
  R_SuperText again;
  ASSERT_TRUE(again.loadXML(xml.c_str(), statistics, nullptr));
  EXPECT_EQ(xml, xmlWrittenBy([&](R_XMLTextOutput& out) { again.saveXML(out, statistics); }));
}

// The knowledge file tests/data/graph/auxogram.xml: SD scores stored as
// measured values (HT_SDS, WT_SDS, BMI_SDS per visit; MOTHER_SDS and
// FATHER_SDS once), so that every score below is the one written here.
class AuxogramTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    file = new R_File();
    CollectingReporter reporter;
    EXPECT_TRUE(file->loadXML(testData("graph/auxogram.xml").c_str(), &reporter))
        << ::testing::PrintToString(reporter.lines());
  }
  static void TearDownTestSuite() {
    delete file;
    file = nullptr;
  }

  // The auxogram that is the only element of text `id`.
  static const R_TextAuxogram& auxogram(const std::string& id) {
    const R_Text& element = file->getText(file->findText(id.c_str()))->getElement(0);
    EXPECT_EQ(R_Text::typeAuxogram, element.getType());
    EXPECT_TRUE(element.isOK());
    return static_cast<const R_TextAuxogram&>(element);
  }

  // Every call of writing auxogram `id` for a boy born 1.1.2010 with
  // `data` (anamnestic values and visits). Metrics: line gap 3, column
  // gap 6, image width 400, label indent 10; fonts 10 pixels high, 6 per
  // byte.
  static Lines traceOf(const std::string& id, const std::string& data) {
    R_Proband proband(file);
    std::string xml = "<proband><info id=\"p\" dob=\"1.1.2010\" sex=\"male\"/><data>" + data + "</data></proband>";
    EXPECT_TRUE(proband.loadXML(xml.c_str()));
    RecordingOutput output;
    output.setHeightMetric(3, 3);
    output.setWidthMetric(5, 6);
    output.setWidthMetric(0, 400);
    output.setWidthMetric(1, 10);
    EXPECT_TRUE(auxogram(id).write(*file, proband, R_Number(), output));
    return output.calls();
  }

  static inline R_File* file = nullptr;
};

// A visit: `when` is the record's date or age attribute, `values` pairs
// VAR=value separated by blanks.
std::string visit(const std::string& when, const std::string& values) {
  std::string xml = "<record " + when + ">";
  std::istringstream pairs(values);
  std::string pair;
  while (pairs >> pair) {
    size_t eq = pair.find('=');
    xml += "<val var=\"" + pair.substr(0, eq) + "\">" + pair.substr(eq + 1) + "</val>";
  }
  return xml + "</record>";
}
std::string dated(const std::string& date, const std::string& values) { return visit("date=\"" + date + "\"", values); }

Lines join(std::initializer_list<Lines> parts) {
  Lines all;
  for (const Lines& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

// Two visits, two lines shown; BMI_SDS lies above 6 SD at both and is left
// out, so WT_SDS moves up. Geometry (n = 2 lines, m = 2 columns):
// head = 10 + 3 = 13; data bottom = 13 + 2 * 10 + 3 * 3 = 42; height = 42 +
// 3 + 10 + 2 = 57, foot text at 56; frame from 42 + 3 = 45 up to 13 - 3 =
// 10. Labels 10 bytes, 60 pixels: text x = 400 - 60 - 10 = 330, labels at
// 336; column width (330 - 2 * 6) / 2 = 159, cut to the 22 bytes (132
// pixels) of the long scale. Columns 0..132 (mid 66) and 138..270 (mid 204),
// half 66. Lines at 13 + 3 + 5 = 21 and 13 + 6 + 10 + 5 = 34. Largest score
// 1.5, so L = 2, dotted lines at mid +- 66 / 2. Wedges: -0.5 / 2 * 66 =
// -16.5 -> -16; 1.5 / 2 * 66 = 49.5 -> 49; 0.8 / 2 * 66 = 26.4 -> 26.
TEST_F(AuxogramTest, TwoVisitsPaintTheWholeChart) {
  Lines column0 = {"getDateFormat", "drawText 66 0 0 2 0 \"1.1.2012\"", "frameArea 0 45 132 10 2 -1",
                   "drawText 66 56 1 2 0 \"0\"", "drawText 0 56 1 0 0 \"-2SD\"", "drawText 132 56 1 1 0 \"2SD\"",
                   "drawRasterLine 132 43 132 47 0", "drawRasterLine 0 43 0 47 0", "drawRasterLine 66 43 66 47 0",
                   "drawRasterLine 99 45 99 10 3", "drawRasterLine 33 45 33 10 3"};
  Lines column1 = {"getDateFormat", "drawText 204 0 0 2 0 \"1.7.2012\"", "frameArea 138 45 270 10 2 -1",
                   "drawText 204 56 1 2 0 \"0\"", "drawText 138 56 1 0 0 \"-2SD\"",
                   "drawText 270 56 1 1 0 \"2SD\"", "drawRasterLine 270 43 270 47 0",
                   "drawRasterLine 138 43 138 47 0", "drawRasterLine 204 43 204 47 0",
                   "drawRasterLine 237 45 237 10 3", "drawRasterLine 171 45 171 10 3"};
  Lines head = {"getHeightMetric 3", "getWidthMetric 5", "getFontHeight 0", "getFontHeight 1",
                    "getWidthMetric 0", "getTextWidth 1 \"Height SDS\"", "getTextWidth 1 \"Weight SDS\"",
                    "getWidthMetric 1", "getDateFormat", "getTextWidth 0 \"1.1.2012\"", "getDateFormat",
                    "getTextWidth 0 \"1.7.2012\"", "getTextWidth 0 \"-1SD 0 1SD\"",
                    "getTextWidth 0 \"-1SD       0       1SD\"", "beginGraph 1 \"Growth SDS\" 400 57",
                    "fillArea 0 0 399 56 0 -1"};
  Lines rest = {"getFontHeight 1",
                "drawText 336 21 2 0 1 \"Height SDS\"", "drawBand 66 16 26 50 20 22 0", "drawRasterLine 50 20 50 22 1",
                "drawBand 204 16 26 253 20 22 0", "drawRasterLine 253 20 253 22 1",
                "drawText 336 34 2 0 1 \"Weight SDS\"", "drawBand 66 29 39 92 33 35 0", "drawRasterLine 92 33 92 35 1",
                "drawRasterLine 66 45 66 10 2", "drawRasterLine 204 45 204 10 2", "endGraph 1 \"Growth SDS\""};
  EXPECT_EQ(join({head, column0, column1, rest}), traceOf("aux", dated("1.1.2012", "HT_SDS=-0.5 BMI_SDS=7 WT_SDS=0.8") +
                                         dated("1.7.2012", "HT_SDS=1.5 BMI_SDS=8")));
}

// Only scalars: one column without heading, whatever the visits hold (the
// proband needs one). Geometry as above with m = 1: column width 330 - 6,
// cut to 132. Wedges -1.2 / 2 * 66 = -39.6 -> -39 and 0.6 / 2 * 66 = 19.8
// -> 19.
TEST_F(AuxogramTest, ScalarsOnlyMakeOneColumnWithAnEmptyHeading) {
  Lines expected = {"getHeightMetric 3", "getWidthMetric 5", "getFontHeight 0", "getFontHeight 1",
                    "getWidthMetric 0", "getTextWidth 1 \"Mother SDS\"", "getTextWidth 1 \"Father SDS\"",
                    "getWidthMetric 1", "getTextWidth 0 \"\"", "getTextWidth 0 \"-1SD 0 1SD\"",
                    "getTextWidth 0 \"-1SD       0       1SD\"", "beginGraph 1 \"Parents\" 400 57",
                    "fillArea 0 0 399 56 0 -1", "drawText 66 0 0 2 0 \"\"", "frameArea 0 45 132 10 2 -1",
                    "drawText 66 56 1 2 0 \"0\"", "drawText 0 56 1 0 0 \"-2SD\"", "drawText 132 56 1 1 0 \"2SD\"",
                    "drawRasterLine 132 43 132 47 0", "drawRasterLine 0 43 0 47 0", "drawRasterLine 66 43 66 47 0",
                    "drawRasterLine 99 45 99 10 3", "drawRasterLine 33 45 33 10 3", "getFontHeight 1",
                    "drawText 336 21 2 0 1 \"Mother SDS\"", "drawBand 66 16 26 27 20 22 0",
                    "drawRasterLine 27 20 27 22 1", "drawText 336 34 2 0 1 \"Father SDS\"",
                    "drawBand 66 29 39 85 33 35 0", "drawRasterLine 85 33 85 35 1", "drawRasterLine 66 45 66 10 2",
                    "endGraph 1 \"Parents\""};
  const std::string parents = "<val var=\"MOTHER_SDS\">-1.2</val><val var=\"FATHER_SDS\">0.6</val>";
  EXPECT_EQ(expected, traceOf("parents", parents + dated("1.1.2012", "HT_SDS=3")));
}

// The picture's texts, wedges and dotted SD lines.
Lines painted(const Lines& calls) {
  Lines kept;
  for (const std::string& call : calls) {
    bool dotted = call.compare(0, 14, "drawRasterLine") == 0 && call.compare(call.size() - 2, 2, " 3") == 0;
    if (dotted || call.compare(0, 8, "drawText") == 0 || call.compare(0, 8, "drawBand") == 0) kept.push_back(call);
  }
  return kept;
}

// The dotted lines of a column with mid `mid`, at mid + d and mid - d for
// each d, from bottom to top.
Lines dotted(int mid, std::initializer_list<int> offsets, int bottom) {
  Lines lines;
  for (int d : offsets) {
    for (int x : {mid + d, mid - d})
      lines.push_back("drawRasterLine " + std::to_string(x) + " " + std::to_string(bottom) + " " + std::to_string(x) +
                      " 10 3");
  }
  return lines;
}

// The texts of column 0 (from 0 to 132, mid 66) or column 1 (from 138 to
// 270, mid 204) of the first test, with the foot at `foot` (43 for one
// line, 56 for two), the SD limit `L` and the heading.
Lines columnTexts(int column, int foot, const std::string& L, const std::string& heading) {
  int left = column * 138;
  std::string y = " " + std::to_string(foot) + " ";
  return {"drawText " + std::to_string(left + 66) + " 0 0 2 0 \"" + heading + "\"",
          "drawText " + std::to_string(left + 66) + y + "1 2 0 \"0\"",
          "drawText " + std::to_string(left) + y + "1 0 0 \"-" + L + "SD\"",
          "drawText " + std::to_string(left + 132) + y + "1 1 0 \"" + L + "SD\""};
}

// The geometry of the first test, two columns with mid 66 and 204 and half
// 66. With one line: data bottom 13 + 10 + 2 * 3 = 29, frame bottom 32,
// height 44, foot at 43; the line at 21.
TEST_F(AuxogramTest, TheScaleFollowsTheLargestScoreAndScoresAreNotCut) {
  const std::string label = "drawText 336 21 2 0 1 \"Height SDS\"";
  const std::string two = dated("1.1.2012", "HT_SDS=-0.4") + dated("1.7.2012", "HT_SDS=0.3");
  const struct {
    const char* what;
    const char* id;
    std::string data;
    Lines expected;
  } rows[] = {
      // -0.4 * 66 = -26.4 -> -26; 0.3 * 66 = 19.8 -> 19. No dotted lines.
      {"scores from -0.4 to 0.3: L = 1", "aux", two,
       join({columnTexts(0, 43, "1", "1.1.2012"), columnTexts(1, 43, "1", "1.7.2012"),
             {label, "drawBand 66 16 26 40 20 22 0", "drawBand 204 16 26 223 20 22 0"}})},
      // -1.5 / 3 * 66 = -33; 2.1 / 3 * 66 = 46.2 -> 46. Dotted at 66 / 3 =
      // 22 and 132 / 3 = 44.
      {"scores up to 2.1: L = 3", "aux", dated("1.1.2012", "HT_SDS=-1.5") + dated("1.7.2012", "HT_SDS=2.1"),
       join({columnTexts(0, 43, "3", "1.1.2012"), dotted(66, {22, 44}, 32), columnTexts(1, 43, "3", "1.7.2012"),
             dotted(204, {22, 44}, 32),
             {label, "drawBand 66 16 26 33 20 22 0", "drawBand 204 16 26 250 20 22 0"}})},
      // Two lines (at 21 and 34, frame bottom 45, foot 56); 7 makes L = 5,
      // dotted at 66 * i / 5: 13, 26, 39, 52. 7 / 5 * 66 = 92.4 -> 92 passes
      // the edge 132 into the next column; -1 / 5 * 66 = -13.2 -> -13; 0.5 /
      // 5 * 66 = 6.6 -> 6.
      {"a 7 beside a score in range", "aux",
       dated("1.1.2012", "HT_SDS=7 WT_SDS=-1") + dated("1.7.2012", "HT_SDS=0.5"),
       join({columnTexts(0, 56, "5", "1.1.2012"), dotted(66, {13, 26, 39, 52}, 45),
             columnTexts(1, 56, "5", "1.7.2012"), dotted(204, {13, 26, 39, 52}, 45),
             {label, "drawBand 66 16 26 158 20 22 0", "drawBand 204 16 26 210 20 22 0",
              "drawText 336 34 2 0 1 \"Weight SDS\"", "drawBand 66 29 39 53 33 35 0"}})},
      // Ages at 0.1 years with unit; 1 * 66 and -1 * 66.
      {"visits without date", "aux", visit("age=\"2.5\"", "HT_SDS=1") + visit("age=\"3\"", "HT_SDS=-1"),
       join({columnTexts(0, 43, "1", "2.5 years"), columnTexts(1, 43, "1", "3.0 years"),
             {label, "drawBand 66 16 26 132 20 22 0", "drawBand 204 16 26 138 20 22 0"}})},
      // A visit without any score is no column: one column, as wide as the
      // long scale. The scalar of the mixed auxogram belongs to no visit: a
      // label without wedge. HT_SDS * 2 = 1, L = 1, 1 * 66.
      {"a scalar among series", "mixed",
       "<val var=\"MOTHER_SDS\">-1</val>" + dated("1.1.2012", "WT_SDS=1") + dated("1.7.2012", "HT_SDS=0.5"),
       {"drawText 66 0 0 2 0 \"1.7.2012\"", "drawText 66 56 1 2 0 \"0\"", "drawText 0 56 1 0 0 \"-1SD\"",
        "drawText 132 56 1 1 0 \"1SD\"", "drawText 336 21 2 0 1 \"Mother SDS\"", "drawText 336 34 2 0 1 \"Height SDS\"",
        "drawBand 66 29 39 132 33 35 0"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(row.expected, painted(traceOf(row.id, row.data)));
  }
}

TEST_F(AuxogramTest, NoPictureWhenNothingIsLeftOrTheColumnsDoNotFit) {
  std::string five, six;
  for (int month = 1; month <= 6; ++month) {
    std::string one = dated("1." + std::to_string(month) + ".2012", "HT_SDS=1");
    if (month <= 5) five += one;
    six += one;
  }
  const std::string parents = "<val var=\"MOTHER_SDS\">1</val>";
  const struct {
    const char* what;
    const char* id;
    std::string data;
    bool drawn;
  } rows[] = {
      // Column width (330 - 5 * 6) / 5 = 60 holds the 60 pixels of
      // "-1SD 0 1SD"; (330 - 6 * 6) / 6 = 49 does not.
      {"five visits fit", "aux", five, true},
      {"six visits are too many", "aux", six, false},
      {"all scores above 6", "aux", dated("1.1.2012", "HT_SDS=6.5 WT_SDS=-7"), false},
      {"no visit with a score", "aux", dated("1.1.2012", "") + "<val var=\"MOTHER_SDS\">1</val>", false},
      {"scalars without any visit", "parents", parents, false},
      {"a score of exactly 6 is in range", "aux", dated("1.1.2012", "HT_SDS=6"), true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Lines calls = traceOf(row.id, row.data);
    bool questions_only = std::all_of(calls.begin(), calls.end(), [](const std::string& call) {
      return call.compare(0, 3, "get") == 0;
    });
    EXPECT_EQ(!row.drawn, questions_only);
    std::string end = std::string("endGraph 1 \"") + auxogram(row.id).getCaption().get() + "\"";
    EXPECT_EQ(row.drawn ? 1 : 0, std::count(calls.begin(), calls.end(), end));
  }
}

}  // namespace
