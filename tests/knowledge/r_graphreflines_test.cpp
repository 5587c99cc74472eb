#include "knowledge/r_graphreflines.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/knowledge/knowledge_test_support.h"
#include "tests/support/xml_fakes.h"

namespace {

std::string sdLines(const std::string& items) { return "<sdslines><list>" + items + "</list></sdslines>"; }
std::string percentileLines(const std::string& items) {
  return "<percentilelines><list>" + items + "</list></percentilelines>";
}
std::string item(const char* value, const char* text) {
  return std::string("<item value=\"") + value + "\">" + text + "</item>";
}

const std::string kSD = sdLines(item("-2", "-2 SD") + item("0", "M") + item("2", "+2 SD"));
const std::string kPercentiles = percentileLines(item("3", "P3") + item("50", "P50") + item("97", "P97"));
const char* const kClosing = "Error while processing percentile/SDS line definitions.";

// SD list [0 "M"], then percentile list [50 "P50"].
const char* const kLinesBytes =
    "07 02 01 00 00 00 01 01 00 4D 03 01 00 00 00 00 00 00 00 00 "
    "07 02 01 00 00 00 01 03 00 50 35 30 03 01 00 00 00 00 00 00 49 40";

bool loadFromHex(R_GraphRefLines& lines, const std::string& hex) {
  Bytes bytes = bytesOf(hex);
  R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  lines.load(stream, &ok);
  return ok;
}

}  // namespace

TEST(GraphRefLinesFormatTest, LineClassFollowsTheTableOfTheCount) {
  const std::vector<std::vector<int>> classes = {
      {0},
      {1, 1},
      {2, 0, 2},
      {2, 1, 1, 2},
      {1, 2, 0, 2, 1},
      {1, 2, 0, 0, 2, 1},
      {2, 1, 2, 0, 2, 1, 2},
      {2, 1, 2, 0, 0, 2, 1, 2},
      {2, 1, 2, 2, 0, 2, 2, 1, 2},
  };
  for (const std::vector<int>& row : classes) {
    int count = static_cast<int>(row.size());
    for (int index = 0; index < count; ++index) {
      SCOPED_TRACE("index " + std::to_string(index) + " of " + std::to_string(count));
      EXPECT_EQ(row[index], R_GraphRefLinesFormat::getLineClass(index, count));
    }
  }
}

TEST(GraphRefLinesFormatTest, LineClassOutsideTheShortListsIsTwo) {
  EXPECT_EQ(2, R_GraphRefLinesFormat::getLineClass(3, 3));
  EXPECT_EQ(2, R_GraphRefLinesFormat::getLineClass(-1, 5));
  EXPECT_EQ(2, R_GraphRefLinesFormat::getLineClass(6, 6));
  EXPECT_EQ(0, R_GraphRefLinesFormat::getLineClass(5, 0));
  EXPECT_EQ(1, R_GraphRefLinesFormat::getLineClass(9, 2));
}

TEST(GraphRefLinesTest, LoadFillsBothFormats) {
  R_GraphRefLines lines;
  EXPECT_FALSE(lines.isComplete());
  ASSERT_TRUE(lines.loadXML((kPercentiles + kSD).c_str(), nullptr));
  EXPECT_TRUE(lines.isComplete());
  const R_GraphRefLinesFormat& sd = lines.getFormat(1);
  ASSERT_EQ(3, sd.getLineCount());
  EXPECT_EQ(-2.0, sd.getLineSD(0));
  EXPECT_STREQ("+2 SD", sd.getLineText(2));
  const R_GraphRefLinesFormat& percentiles = lines.getFormat(0);
  ASSERT_EQ(3, percentiles.getLineCount());
  EXPECT_NEAR(-1.8807936, percentiles.getLineSD(0), 1e-6);
  EXPECT_EQ(0.0, percentiles.getLineSD(1));
  EXPECT_NEAR(1.8807936, percentiles.getLineSD(2), 1e-6);
  EXPECT_STREQ("P97", percentiles.getLineText(2));
}

TEST(GraphRefLinesTest, LoadRefusesMissingBrokenAndOutOfRangeLists) {
  const struct {
    std::string xml;
    std::vector<std::string> messages;
  } rows[] = {
      {kSD + kPercentiles, {}},
      {sdLines(item("-6", "a") + item("6", "b")) + kPercentiles, {}},
      {kSD + percentileLines(item("0", "P0") + item("50", "P50")),
       {"Wrong data in percentile definitions.", kClosing}},
      {kSD + percentileLines(item("100", "P100")), {"Wrong data in percentile definitions.", kClosing}},
      {sdLines(item("6.5", "high")) + kPercentiles, {"Wrong data in SD line definitions.", kClosing}},
      {kSD, {"Wrong data in percentile definitions.", kClosing}},
      {kPercentiles, {"Wrong data in SD line definitions.", kClosing}},
      {"<other/>", {"Wrong data in percentile definitions.", "Wrong data in SD line definitions.", kClosing}},
      {kSD + kPercentiles + kPercentiles,
       {"data error closing block </list>: duplicate percentile lines definition", kClosing}},
      {kSD + kSD + kPercentiles, {"data error closing block </list>: duplicate SD lines definition", kClosing}},
      // An empty list element hands the list an empty text to parse.
      {sdLines("") + kPercentiles,
       {"no input data", "Error while processing list.", "data error closing block </list>: error loading SD lines",
        kClosing}},
      {sdLines("<entry/>") + kPercentiles,
       {"List items missing.", "Error while processing list.", "data error closing block </list>: error loading SD lines",
        kClosing}},
      {kSD + percentileLines(item("50", "a") + item("50", "b")),
       {"data error closing block </item>: wrong or duplicate list item", "Error while processing list.",
        "data error closing block </list>: error loading percentile lines", kClosing}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.xml);
    CollectingReporter reporter;
    R_GraphRefLines lines;
    EXPECT_EQ(row.messages.empty(), lines.loadXML(row.xml.c_str(), &reporter));
    EXPECT_EQ(row.messages, reporter.lines());
  }
}

TEST(GraphRefLinesTest, PrepareIsDoneOnceAndRefusesAnEmptyList) {
  R_GraphRefLinesInPercentiles empty;
  EXPECT_FALSE(empty.prepare());
  EXPECT_FALSE(empty.isPrepared());
  R_GraphRefLinesInPercentiles percentiles;
  ASSERT_TRUE(percentiles.getList().loadXML(item("50", "P50").c_str(), nullptr));
  EXPECT_TRUE(percentiles.prepare());
  EXPECT_TRUE(percentiles.isPrepared());
  EXPECT_TRUE(percentiles.prepare());
  EXPECT_EQ(0.0, percentiles.getLineSD(0));
}

TEST(GraphRefLinesTest, SDLinesAreOKOnlyWithItemsFromMinusSixToSix) {
  R_GraphRefLinesInSD empty;
  EXPECT_FALSE(empty.isOK());
  R_GraphRefLinesInSD low;
  ASSERT_TRUE(low.getList().loadXML(item("-6.01", "low").c_str(), nullptr));
  EXPECT_FALSE(low.isOK());
}

TEST(GraphRefLinesTest, SaveXMLWritesTheSDLinesFirst) {
  R_GraphRefLines lines;
  ASSERT_TRUE(lines.loadXML((percentileLines(item("50", "P50")) + sdLines(item("0", "M"))).c_str(), nullptr));
  EXPECT_EQ(
      "<sdslines><list><item value=\"0\">M</item></list></sdslines>"
      "<percentilelines><list><item value=\"50\">P50</item></list></percentilelines>",
      xmlWrittenBy([&](R_XMLTextOutput& out) { lines.saveXML(out); }));
}

TEST(GraphRefLinesTest, BinaryFormIsPinnedByItsBytes) {
  R_GraphRefLines lines;
  ASSERT_TRUE(lines.loadXML((percentileLines(item("50", "P50")) + sdLines(item("0", "M"))).c_str(), nullptr));
  EXPECT_EQ(kLinesBytes, hexOf(savedBytes(lines)));
}

TEST(GraphRefLinesTest, BinaryFormLoadsPreparedAndSavesTheSameBytes) {
  R_GraphRefLines lines;
  ASSERT_TRUE(loadFromHex(lines, kLinesBytes));
  EXPECT_TRUE(lines.getPercentileLines().isPrepared());
  EXPECT_EQ(0.0, lines.getFormat(0).getLineSD(0));
  EXPECT_EQ(kLinesBytes, hexOf(savedBytes(lines)));
}

TEST(GraphRefLinesTest, BinaryFormCutAtAnyLengthFails) {
  expectEveryTruncationFails(bytesOf(kLinesBytes), [](R_InputStream& stream, bool* ok) {
    R_GraphRefLines lines;
    lines.load(stream, ok);
  });
}

TEST(GraphRefLinesTest, BinaryFormChecksTheValuesAsTheXMLFormDoes) {
  const char* const rows[] = {
      // SD 6.5 (0x401A000000000000).
      "07 02 01 00 00 00 01 01 00 4D 03 01 00 00 00 00 00 00 1A 40 "
      "07 02 01 00 00 00 01 03 00 50 35 30 03 01 00 00 00 00 00 00 49 40",
      // Percentile 100 (0x4059000000000000).
      "07 02 01 00 00 00 01 01 00 4D 03 01 00 00 00 00 00 00 00 00 "
      "07 02 01 00 00 00 01 03 00 50 35 30 03 01 00 00 00 00 00 00 59 40",
      // No percentile line.
      "07 02 01 00 00 00 01 01 00 4D 03 01 00 00 00 00 00 00 00 00 07 02 00 00 00 00",
  };
  for (const char* hex : rows) {
    SCOPED_TRACE(hex);
    R_GraphRefLines lines;
    EXPECT_FALSE(loadFromHex(lines, hex));
  }
}
