// Paragraphs, their translation from mark-up, and tables.
#include "document/r_textparagraph.h"

#include <gtest/gtest.h>

#include <cstring>

#include "document/r_texttable.h"
#include "document/r_texttranslator.h"
#include "tests/document/document_fixture.h"
#include "tests/knowledge/knowledge_test_support.h"

namespace {

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
      {"<x-y_z.9 a=\"1\"/>", "", {standalone + "x-y_z.9>", empty}},  // the name ends at the first byte no name holds
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
