#include "document/r_supertext.h"

#include <gtest/gtest.h>

#include "document/r_text.h"
#include "tests/document/document_fixture.h"
#include "tests/knowledge/knowledge_test_support.h"

namespace {

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
  EXPECT_EQ(4, file->findText("loop_b"));
  EXPECT_EQ(-1, file->findText("Summary"));
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
  EXPECT_EQ(readFile(dir.file("a.bin")), readFile(dir.file("b.bin")));
  EXPECT_EQ(readFile(dir.file("a.xml")), readFile(dir.file("b.xml")));
  // Read back from XML, paragraphs lose their mark-up but write the same XML.
  ASSERT_TRUE(from_xml.loadXML(path("a.xml").c_str(), nullptr) && from_xml.saveXML(path("c.xml").c_str()));
  EXPECT_EQ(readFile(dir.file("a.xml")), readFile(dir.file("c.xml")));
  // The binary form of the texts writes as the original does.
  output.clear();
  from_binary.getText(0)->write(from_binary, *proband("boy", &from_binary), R_Number(3.0), output, 0);
  EXPECT_EQ(traceOf("summary", "boy"), output.calls());
}

}  // namespace
