#include "document/r_textparagraph.h"

#include <gtest/gtest.h>

#include "document/r_texttranslator.h"
#include "tests/document/document_fixture.h"
#include "tests/knowledge/knowledge_test_support.h"

namespace {

typedef std::vector<std::string> Lines;

// The stored form of `source` ("" when refused) and the reported lines.
std::string translate(const std::string& source, Lines* lines = nullptr) {
  NamedStatistics statistics({"AGE", "HEIGHT"});
  CollectingReporter reporter;
  R_TextTranslator translator(source.c_str(), statistics, &reporter);
  R_String result;
  translator.getResult(result);
  EXPECT_EQ(translator.isOK(), reporter.lines().empty()) << source;
  if (lines) *lines = reporter.lines();
  return result.get();
}

TEST(TextTranslatorTest, StoresMarkUpAsBackslashCodes) {
  const struct {
    const char* source;
    const char* stored;
  } rows[] = {
      {"plain \t text ", "plain text"},
      {"<b>x</b> and <i>y</i>", "\\bx\\c and \\iy\\j"},
      {"<b></b>", "\\b\\c"},  // tags only: an empty paragraph, but one
      {"C:\\x", "C:/x"},      // a source backslash can't forge a code
      {"<value var=\"height\" /> cm", "\\Vheight\\ cm"},
      {"<link target=\"a\\b\"/>", "\\La/b\\"},
      {"<external   target=\"http://x/\"/>", "\\Ehttp://x/\\"},
      {"a<!-- note -->b<?x?>c", "abc"},
      {"a > b & c", "a > b & c"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.source);
    EXPECT_EQ(row.stored, translate(row.source));
  }
}

TEST(TextTranslatorTest, ReportsEachFaultAndGoesOn) {
  const std::string p = "error unfinished tag in text processing element <p>";
  const std::string empty = "error no text defined processing element <p>";
  const struct {
    const char* source;
    Lines lines;
  } rows[] = {
      {"<b>x<i>y</i></b>",
       {"error unknown begin element processing element <i>", "error unknown end element processing element </i>"}},
      {"<i>x<b>y</b></i>",
       {"error unknown begin element processing element <b>", "error unknown end element processing element </b>"}},
      {"<b>x", {p}},
      {"x <b", {p}},
      {"<b></i>", {"error wrong structure processing element </i>", p}},
      {"</b>", {"error wrong structure processing element </b>", "error no text defined processing element <p>"}},
      {"<u>x</u>", {"error unknown begin element processing element <u>",
                    "error unknown end element processing element </u>"}},
      // An empty result is one more fault.
      {"<value var=\"WIDTH\" />", {"error wrong standalone element processing element <value>", empty}},
      {"<value var=\"HEIGHT\"></value>", {"error unknown begin element processing element <value>",
                                          "error unknown end element processing element </value>", empty}},
      {"<link/><external href=\"x\"/><B/>", {"error wrong standalone element processing element <link>",
                                             "error wrong standalone element processing element <external>",
                                             "error wrong standalone element processing element <B>", empty}},
      {"< b>x", {"error wrong standalone element processing element <>"}},
      {"<!only a comment>", {empty}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.source);
    Lines lines;
    EXPECT_EQ("", translate(row.source, &lines));
    EXPECT_EQ(row.lines, lines);
  }
}

TEST(TextTranslatorTest, SurvivesLongTagsAndWorksWithoutReporter) {
  NamedStatistics statistics({"AGE"});
  std::string huge = "<b>" + std::string(8192, 'a') + "</b><" + std::string(8192, 'v') + " x=\"1\">";
  R_TextTranslator quiet(huge.c_str(), statistics, nullptr);
  EXPECT_FALSE(quiet.isOK());
  Lines lines;
  translate("a<" + std::string(8192, 'x') + "/>", &lines);
  ASSERT_EQ(1u, lines.size());
  // Cut, like every message of the system, to 255 bytes.
  EXPECT_EQ(("error wrong standalone element processing element <" + std::string(8192, 'x')).substr(0, 255), lines[0]);
}

TEST(TextParagraphTest, LoadsOnlyATextThatTranslates) {
  NamedStatistics statistics({"AGE"});
  const struct {
    const char* content;
    bool ok;
  } rows[] = {{"x", true}, {" \n ", false}, {"", false}, {"<b>x", false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.content);
    R_TextParagraph paragraph;
    paragraph.loadText(row.content, statistics, nullptr);
    EXPECT_EQ(row.ok, paragraph.isOK());
  }
}

// Stored forms that only the binary form can carry: unknown pairs are
// dropped, an unknown variable and a code at the very end write nothing.
TEST_F(DocumentTest, AStoredParagraphWritesWhatItCanAndDropsTheRest) {
  const struct {
    const char* stored;
    Lines trace;
  } rows[] = {
      {"a\\zb\\Vnope\\c\\", join({{"beginParagraph", "setFont 1"}, chars(0, "ab"), chars(0, "c"),
                                  {"setFont 4", "endParagraph"}})},
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
    R_String text(row.stored);
    R_TextParagraph paragraph;
    ASSERT_TRUE(loadFrom(savedBytes(text), &paragraph));
    output.clear();
    paragraph.write(*file, *proband("boy"), R_Number(3.0), output);
    EXPECT_EQ(row.trace, output.calls());
  }
}

}  // namespace
