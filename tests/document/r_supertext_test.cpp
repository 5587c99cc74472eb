// The document suite: texts, paragraphs and their mark-up, and tables. Its fixture: the knowledge file
// tests/data/document/report.xml with its texts, the probands boy.xml and girl.xml beside it, and traces of texts
// written for them through a RecordingOutput.
#include "document/r_supertext.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "core/r_number.h"
#include "document/r_text.h"
#include "document/r_textparagraph.h"
#include "document/r_texttable.h"
#include "document/r_texttranslator.h"
#include "knowledge/r_file.h"
#include "proband/r_proband.h"
#include "tests/knowledge/knowledge_test_support.h"
#include "tests/support/recording_output.h"
#include "tests/support/test_files.h"
#include "tests/support/xml_fakes.h"

namespace {

typedef std::vector<std::string> Lines;

class DocumentTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    file = new R_File();
    EXPECT_TRUE(file->loadXML(testData("document/report.xml").c_str(), nullptr));
  }
  static void TearDownTestSuite() { delete file; }

  // The proband tests/data/document/<name>.xml, for `knowledge` (default: the fixture's file).
  std::unique_ptr<R_Proband> proband(const std::string& name, const R_File* knowledge = nullptr) {
    std::unique_ptr<R_Proband> loaded(new R_Proband(knowledge ? knowledge : file));
    EXPECT_TRUE(loaded->loadXML(readFile(testData("document/" + name + ".xml")).c_str())) << name;
    return loaded;
  }

  // The calls that text `id` makes, written at depth 0 for the proband `who` aged 3 years today.
  Lines traceOf(const std::string& id, const std::string& who) {
    int index = file->findText(id.c_str());
    EXPECT_GE(index, 0) << id;
    if (index < 0) return {};
    output.clear();
    file->getText(index)->write(*file, *proband(who), R_Number(3.0), output, 0);
    return output.calls();
  }

  static inline R_File* file = nullptr;
  RecordingOutput output;
};

// The writeChar lines of `text` in font state `state`.
inline Lines chars(int state, const std::string& text) {
  Lines lines;
  for (char c : text) lines.push_back("writeChar " + std::to_string(state) + " '" + c + "'");
  return lines;
}

// The lines of all the parts, in order.
inline Lines join(std::initializer_list<Lines> parts) {
  Lines lines;
  for (const auto& part : parts) lines.insert(lines.end(), part.begin(), part.end());
  return lines;
}

// The lines of table row `r` in mode `m` with cells of `texts`; a null text is a separator cell.
inline Lines tableRow(int r, std::initializer_list<const char*> texts, int m = 1) {
  const std::string at = std::to_string(r) + " ", mode = " " + std::to_string(m);
  Lines lines = {"beginRow " + at + std::to_string(m)};
  int c = 0;
  for (const char* text : texts) {
    std::string rc = at + std::to_string(c++);
    const std::string cell = "Cell " + rc + mode;
    if (!text) lines.push_back("writeSeparatorCell " + rc + mode);
    else lines.insert(lines.end(), {"begin" + cell, "writeCell " + rc + " \"" + text + "\"", "end" + cell});
  }
  lines.push_back("endRow " + at + std::to_string(m));
  return lines;
}

// Lines of a paragraph around its inner lines: plain font on and off.
Lines paragraph(const Lines& inner) {
  return join({{"beginBlock 0", "beginParagraph", "setFont 1"}, inner, {"setFont 4", "endParagraph", "endBlock"}});
}

TEST_F(DocumentTest, TheSummaryForABoyWalksEveryElementOnce) {
  Lines expected = join({
      {"beginDocument", "beginBlock 1", "writeHeader 0 \"Growth summary\"", "endBlock"},
      // LAST_HT is the last defined height, TARGET_HT (180 + 166 + 13) / 2; two heights are no single value.
      paragraph(join({chars(0, "Height "), {"setFont 4", "setFont 0"}, chars(1, "now"), {"setFont 3", "setFont 1"},
                      chars(0, ": "), {"writeResult \"90.0 cm\""}, chars(0, "; target "),
                      {"writeResult \"179.5 cm\""}, chars(0, ". All: "), {"writeResult \"?\""}, chars(0, ".")})),
      paragraph(chars(0, "A boy.")),
      paragraph(chars(0, "Shared note.")),  // the insert; the unknown one gives nothing
      {"beginBlock 3", "writeHRule", "endBlock", "beginBlock 6", "writeImage \"logo.png\"", "endBlock"},
      // Visits 1 and 2 have a height; the third only a weight. Stage by the age at the visit (2.0 and 2.5 years), the
      // nearest item being 2. BMI 12 / 0.86^2 = 16.22.
      {"beginBlock 5", "beginTable 2 5 1"},
      tableRow(0, {"Date", "Height", nullptr, "BMI", "Stage"}),
      tableRow(1, {"01.01.2012", "86.0", nullptr, "16.2", "PH2"}),
      tableRow(2, {"01.07.2012", "90.0", nullptr, "", "PH2"}),
      {"endTable 1", "endBlock"},
      // The graph: measured for its layout, which the default measures of the recording output (all 100 pixels) leave
      // too narrow, so nothing is drawn. The height block has no reference in this file; its scale from the heights
      // 86 and 90 ends at 90.
      {"beginBlock 4", "isGraphInSD", "getTextWidth 1 \"90.0\"", "getWidthMetric 1", "getWidthMetric 0",
       "getWidthMetric 2", "getWidthMetric 1", "endBlock"},
      {"beginBlock 2", "writeHeader 1 \"Visits\"", "endBlock"},
      paragraph(join({chars(0, "See "), {"writeAnchor \"visits\" true"}, chars(0, " or "),
                      {"writeAnchor \"http://example.org/growth\" false"}, chars(0, ", "), {"setFont 4", "setFont 2"},
                      chars(2, "kept"), {"setFont 5", "setFont 1"}, chars(0, " apart.")})),
      {"endDocument"},
  });
  EXPECT_EQ(expected, traceOf("summary", "boy"));
}

TEST_F(DocumentTest, InsertsThatCycleStopBelowTheDepthLimitAndTextsAreFoundByExactIdAndOwnCondition) {
  // loop_a and loop_b insert each other: depths 0 to 5 are written, the insert at depth 6 gives nothing, and the
  // document still closes.
  Lines expected = {"beginDocument"};
  for (int depth = 0; depth <= R_SuperText::insertDepthLimit; ++depth) {
    Lines one = paragraph(chars(0, depth % 2 ? "B" : "A"));
    expected.insert(expected.end(), one.begin(), one.end());
  }
  expected.push_back("endDocument");
  EXPECT_EQ(expected, traceOf("loop_a", "boy"));
  EXPECT_TRUE(file->findText("loop_b") == 4 && file->findText("Summary") == -1);
  const R_SuperText& visits = *file->getText(file->findText("visits"));  // only for boys
  EXPECT_TRUE(visits.isAvailable(*file, *proband("boy"), R_Number(3.0)));
  EXPECT_FALSE(visits.isAvailable(*file, *proband("girl"), R_Number(3.0)));
}

TEST(SuperTextTest, ARefusedLoadEndsWithErrorWhileProcessingText) {
  const std::string end = "Error while processing text.", p = "<p>x</p>";
  const std::string closing = "data error closing block </", standalone = "data error processing standalone tag <";
  const std::string block_error = "text block data error", table_error = closing + "table>: " + block_error;
  const struct { const char* what; std::string xml; Lines messages; } rows[] = {
      {"a good text", "<id>T</id><toc><if>HEIGHT</if><title>A</title></toc><p if=\"NOPE\">x</p><hr/>", {}},
      {"neither id nor element", "<toc/>", {"No text blocks defined.", "Text ID missing.", end}},
      {"a blank id", "<id> </id>" + p, {closing + "id>: no id defined", end}},
      {"a blank title", "<id>T</id><toc><title> </title></toc>" + p, {closing + "title>: no title defined", end}},
      {"a blank meta", "<id>T</id><toc><meta/></toc>" + p, {standalone + "meta../>: no metainformation defined", end}},
      {"two conditions", "<id>T</id><toc><if>HEIGHT</if><if>AGE</if></toc>" + p,
       {closing + "if>: duplicate condition", end}},
      {"a bad condition", "<id>T</id><toc><if>NOPE+</if></toc>" + p, {closing + "if>: error loading condition", end}},
      {"a blank heading", "<id>T</id><h2> \n </h2>", {closing + "h2>: text block data error", end}},
      {"an image without source", "<id>T</id><img/>", {standalone + "img../>: text block data error", end}},
      {"an insert without ref", "<id>T</id><insert ref=\" \"/>", {standalone + "insert../>: " + block_error, end}},
      {"a blank graph", "<id>T</id><graph> </graph>",
       {"no blocks defined", closing + "graph>: text block data error", end}},
      {"a paragraph fault", "<id>T</id><p><value var=\"NOPE\"/></p>",
       {"error wrong standalone element processing element <value>", "error no text defined processing element <p>",
        closing + "p>: text block data error", end}},
      {"a table without columns", "<id>T</id><table><select method=\"HEIGHT\"/></table>",
       {"no table columns defined", table_error, end}},
      {"a wrong column", "<id>T</id><table><column type=\"date\" format=\"%Y\" precision=\"1\"/></table>",
       {standalone + "column../>: wrong table column definition", table_error, end}},
      {"a wrong selector", "<id>T</id><table><select method=\"NOPE\"/><column type=\"separator\"/></table>",
       {standalone + "select../>: wrong table row selector", table_error, end}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    NamedStatistics statistics({"AGE", "HEIGHT"});
    CollectingReporter reporter;
    R_SuperText text;
    EXPECT_EQ(row.messages.empty(), text.loadXML(row.xml.c_str(), statistics, &reporter));
    EXPECT_EQ(row.messages, reporter.lines());
  }
}

TEST(SuperTextTest, TheBinaryFormsArePinnedAndDamagedElementsFailTheLoad) {
  NamedStatistics statistics({"AGE"});
  R_SuperText small, table;
  ASSERT_TRUE(small.loadXML("<id>T</id><toc><title>A</title></toc><hr /><p>x</p>", statistics, nullptr));
  expectPinnedForm("30 01 01 00 41 01 00 00 01 01 00 54 06 00 02 02 00 00 00"  // tag, title, meta, id, no if, 2
                   " 34 06 00"                                                 // hr, no condition
                   " 31 06 00 01 01 00 78",                                    // p, no condition, "x"
                   savedBytes(small), reloaded<R_SuperText>);
  ASSERT_TRUE(table.loadXML("<id>T</id><table mode=\"inverted\"><column type=\"date\" format=\"%Y\" header=\"D\"/>"
                            "<column type=\"separator\" header=\"lost\"/></table><auxogram><caption>C</caption>"
                            "<auxogramline var=\"AGE\" method=\"AGE\"/></auxogram>", statistics, nullptr));
  expectPinnedForm("30 01 00 00 01 00 00 01 01 00 54 06 00 02 02 00 00 00"
                   " 35 06 00 02 01 00 00 00 02 02 00 00 00 06 00"  // table: inverted, 2 columns, no selector
                   " 40 02 01 00 00 00 01 01 00 44 01 02 00 25 59"  // date column "D", "%Y"
                   " 40 02 02 00 00 00"                             // separator, without its header
                   " 39 06 00 01 01 00 43 02 01 00 00 00"           // auxogram "C", one line
                   " 41 02 00 00 00 00"                             // labelled by AGE (index 0)
                   " 06 01 02 01 00 00 00 02 01 00 00 00 02 00 00 00 00 01 00 00 01 02 00 40 41",  // AGE, "@A"
                   savedBytes(table), reloaded<R_SuperText>);
  const std::string head = "30 01 00 00 01 00 00 01 01 00 54 06 00 02 01 00 00 00 ";
  const struct { const char* what; std::string hex; } rows[] = {
      {"an unknown element code", head + "3A 06 00"}, {"an element that is not ok", head + "36 06 00 01 00 00"},
      {"a table of no columns", head + "35 06 00 02 00 00 00 00 02 00 00 00 00 06 00"},
      {"a negative count", "30 01 00 00 01 00 00 01 01 00 54 06 00 02 FF FF FF FF"},
  };
  for (const auto& row : rows) {
    R_SuperText text;
    EXPECT_FALSE(loadFrom(bytesOf(row.hex), &text)) << row.what;
  }
}

TEST(SuperTextTest, TheXMLFormWritesMarkUpEscapedAndNamesAsTheyAre) {
  R_SuperText text;
  NamedStatistics statistics({"AGE", "HEIGHT"});
  ASSERT_TRUE(text.loadXML("<id>T</id><toc><meta>m</meta></toc><p>a &amp; <b>b</b> <value var=\"height\"/></p>"
                           "<img if=\"HEIGHT\" src=\"x.png\"/><graph> <caption>C</caption>\n <block var=\"height\" "
                           "priority=\"5\" analysed=\"sd\"><plot method=\"height\" type=\"secondary\"/>"
                           "</block></graph>",
                           statistics, nullptr));
  EXPECT_EQ("<id>T</id><toc><meta>m</meta></toc>"
            "<p>a &amp; &lt;b&gt;b&lt;/b&gt; &lt;value var=\"height\" /&gt;</p>"
            "<img if=\"HEIGHT:\" src=\"x.png\" /><graph><caption>C</caption>"
            "<block var=\"HEIGHT\" analysed=\"sd\" priority=\"5\"><plot method=\"HEIGHT:\" connect=\"no\" "
            "size=\"normal\" marks=\"yes\" type=\"secondary\" /></block></graph>",
            xmlWrittenBy([&](R_XMLTextOutput& out) { text.saveXML(out, statistics); }));
}

TEST_F(DocumentTest, TheFileKeepsItsTextsThroughBothForms) {
  TempDir dir;
  auto path = [&](const char* name) { return dir.file(name); };
  R_File from_binary, from_xml;
  ASSERT_TRUE(file->saveXML(path("a.xml").c_str()) && file->saveBinary(path("a.bin").c_str()));
  ASSERT_TRUE(from_binary.loadBinary(path("a.bin").c_str()) && from_binary.saveBinary(path("b.bin").c_str()) &&
              from_binary.saveXML(path("b.xml").c_str()));
  EXPECT_EQ(readFile(path("a.bin")) + readFile(path("a.xml")), readFile(path("b.bin")) + readFile(path("b.xml")));
  // Read back from XML, paragraphs lose their mark-up but write the same XML.
  ASSERT_TRUE(from_xml.loadXML(path("a.xml").c_str(), nullptr) && from_xml.saveXML(path("c.xml").c_str()));
  EXPECT_EQ(readFile(path("a.xml")), readFile(path("c.xml")));
  // The binary form of the texts writes as the original does.
  output.clear();
  from_binary.getText(0)->write(from_binary, *proband("boy", &from_binary), R_Number(3.0), output, 0);
  EXPECT_EQ(traceOf("summary", "boy"), output.calls());
}

// Each row: the stored form of the source ("" when refused) and the messages; an empty result is one more fault.
TEST(TextTranslatorTest, StoresMarkUpAsBackslashCodesOrReportsEachFaultAndGoesOn) {
  const std::string p = "error unfinished tag in text processing element <p>";
  const std::string empty = "error no text defined processing element <p>";
  const std::string begin = "error unknown begin element processing element <";
  const std::string end = "error unknown end element processing element </";
  const std::string standalone = "error wrong standalone element processing element <", huge(8192, 'x');
  const struct { std::string source, stored; Lines lines; } rows[] = {
      {"plain \t text ", "plain text", {}}, {"<b>x</b> and <i>y</i>", "\\bx\\c and \\iy\\j", {}},
      {"<b></b>", "\\b\\c", {}},  // tags only: an empty paragraph, but one
      {"C:\\x", "C:/x", {}},      // a source backslash can't forge a code
      {"<value var=\"height\" /> cm", "\\Vheight\\ cm", {}}, {"<link target=\"a\\b\"/>", "\\La/b\\", {}},
      {"<external   target=\"http://x/\"/>", "\\Ehttp://x/\\", {}},
      {"a<!-- note -->b<?x?>c", "abc", {}}, {"<b>x<i>y</i></b>", "", {begin + "i>", end + "i>"}}, {"<b>x", "", {p}},
      {"<b></i>", "", {"error wrong structure processing element </i>", p}},
      {"</b>", "", {"error wrong structure processing element </b>", empty}},
      {"<u>x</u>", "", {begin + "u>", end + "u>"}}, {"<value var=\"WIDTH\" />", "", {standalone + "value>", empty}},
      {"<value var=\"HEIGHT\"></value>", "", {begin + "value>", end + "value>", empty}},
      {"<link/><external href=\"x\"/><B/>", "",
       {standalone + "link>", standalone + "external>", standalone + "B>", empty}},
      {"<_x-y.9 z>", "", {standalone + "_x-y.9>", empty}},  // no name starts with '_'; the bytes a name holds stand
      {"< b>x", "", {standalone + ">"}}, {"<!only a comment>", "", {empty}},
      {"a<" + huge + "/>", "", {(standalone + huge).substr(0, 255)}},  // cut, as every message, to 255 bytes
  };
  NamedStatistics statistics({"AGE", "HEIGHT"});
  for (const auto& row : rows) {
    SCOPED_TRACE(row.source.substr(0, 40));
    CollectingReporter reporter;
    R_TextTranslator translator(row.source.c_str(), statistics, &reporter);
    R_String result;
    translator.getResult(result);
    EXPECT_EQ(row.stored, result.get());
    EXPECT_EQ(row.lines, reporter.lines());
    EXPECT_EQ(row.lines.empty(), translator.isOK());
  }
  std::string tags = "<b>" + std::string(8192, 'a') + "</b><" + std::string(8192, 'v') + " x=\"1\">";
  EXPECT_FALSE(R_TextTranslator(tags.c_str(), statistics, nullptr).isOK()) << "no reporter";
  for (const char* content : {" \n ", "", "<b>x"}) {
    R_TextParagraph paragraph;
    paragraph.loadText(content, statistics, nullptr);
    EXPECT_FALSE(paragraph.isOK()) << "a paragraph loads only a text that translates: " << content;
  }
}

// Stored forms that only the binary form can carry: unknown pairs are dropped, an unknown variable and a code at the
// very end write nothing.
TEST_F(DocumentTest, AStoredParagraphWritesWhatItCanAndDropsTheRest) {
  const struct { const char* stored; Lines trace; } rows[] = {
      {"a\\zb\\Vnope\\c\\", join({{"beginParagraph", "setFont 1"}, chars(0, "abc"), {"setFont 4", "endParagraph"}})},
      {"\\bx", join({{"beginParagraph", "setFont 1", "setFont 4", "setFont 0"}, chars(1, "x"),
                     {"setFont 3", "endParagraph"}})},  // the open bold is closed
      {"\\i\\LT", {"beginParagraph", "setFont 1", "setFont 4", "setFont 2", "writeAnchor \"T\" true", "setFont 5",
                   "endParagraph"}},
      // BMI has one valid point (the first visit), HEIGHT two.
      {"\\VBMI\\\\VHEIGHT\\", {"beginParagraph", "setFont 1", "writeResult \"16.2 kg/m2\"", "writeResult \"?\"",
                                "setFont 4", "endParagraph"}},
      {"", {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.stored);
    R_TextParagraph paragraph;
    ASSERT_TRUE(loadFrom(savedBytes(R_String(row.stored)), &paragraph));
    output.clear();
    paragraph.write(*file, *proband("boy"), R_Number(3.0), output);
    EXPECT_EQ(row.trace, output.calls());
  }
}

TEST(TextTableColumnTest, EachTypeTakesItsOwnAttributes) {
  const std::string date = "type=\"date\" format=\"%Y\" ", values = "type=\"values\" method=\"HEIGHT\" precision=";
  const struct { std::string attributes; bool ok; } rows[] = {
      {date, true}, {date + "precision=\"1\"", false}, {date + "method=\"NOPE\"", true},  // NOPE doesn't parse: absent
      {"type=\"date\" format=\"" + std::string(31, '1') + "\"", true},
      {"type=\"date\" format=\"" + std::string(32, '1') + "\"", false},
      {values + "\"0,5\"", true}, {values + "\"sd\"", true}, {values + "\"10\"", false}, {values + "\"SD\"", false},
      {values + "\"1\" format=\"x\"", false}, {"type=\"values\" precision=\"1\"", false},
      {"type=\"list\" method=\"HEIGHT\" format=\"HEIGHT\"", true}, {"type=\"list\" method=\"HEIGHT\"", false},
      {"type=\"separator\" method=\"NOPE\" precision=\"99\" format=\"\"", true}, {"type=\"Date\" format=\"%Y\"", false},
  };
  NamedStatistics statistics({"AGE", "HEIGHT"});
  for (const auto& row : rows) {
    R_SuperText text;
    EXPECT_EQ(row.ok, text.loadXML(("<id>T</id><table><column " + row.attributes + "/></table>").c_str(), statistics,
                                   nullptr)) << row.attributes;
  }
}

// The rows, cell texts and table ends of a table of one values column over the boy's three visits (heights 86, 90 and
// none), written with the given selector and mode and an output that offers groups of `group` visits.
TEST_F(DocumentTest, TheSelectorChoosesTheRowsAndAnInvertedTableShowsEveryVisitInGroups) {
  auto boy = proband("boy");
  const struct { const char* attributes; int group; Lines cells; } rows[] = {
      {"", 6, {"beginRow 0 1", "writeCell 0 0 \"\"", "beginRow 1 1", "writeCell 1 0 \"86\"", "beginRow 2 1",
               "writeCell 2 0 \"90\"", "endTable 1"}},
      {"><select method=\"HEIGHT-86\"/", 6, {"beginRow 0 1", "writeCell 0 0 \"\"", "beginRow 2 1",
                                             "writeCell 2 0 \"90\"", "endTable 1"}},
      // A scalar chooses nothing: the empty row.
      {"><select method=\"1\"/", 6, {"beginRow 0 1", "writeCell 0 0 \"\"", "beginRow 1 1", "writeCell 1 0 \"\"",
                                     "endTable 1"}},
      {"mode=\"inverted\"><select method=\"0\"/", 2,
       {"getInvertedColumnCount", "beginRow 0 0", "writeCell 0 0 \"\"", "writeCell 0 1 \"86\"", "writeCell 0 2 \"90\"",
        "endTable 0", "writeInvertedBreak", "beginRow 0 0", "writeCell 0 0 \"\"", "writeCell 0 1 \"\"", "endTable 0"}},
      // A group size below 1 counts as 6: one group.
      {"mode=\"inverted\"", 0, {"getInvertedColumnCount", "beginRow 0 0", "writeCell 0 0 \"\"", "writeCell 0 1 \"86\"",
                                "writeCell 0 2 \"90\"", "writeCell 0 3 \"\"", "endTable 0"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.attributes);
    std::string xml = "<id>T</id><table " + std::string(row.attributes) +
                      "><column type=\"values\" method=\"HEIGHT\" precision=\"1\"/></table>";
    R_SuperText text;
    ASSERT_TRUE(text.loadXML(xml.c_str(), file->getStatistics(), nullptr));
    output.clear();
    output.setInvertedColumnCount(row.group);
    text.getElement(0).write(*file, *boy, R_Number(3.0), output);
    Lines cells;
    for (const std::string& call : output.calls()) {
      for (const char* kept : {"beginRow", "writeCell", "endTable", "writeInvertedBreak", "getInverted"}) {
        if (call.compare(0, strlen(kept), kept) == 0) cells.push_back(call);
      }
    }
    EXPECT_EQ(row.cells, cells);
  }
}

}  // namespace
