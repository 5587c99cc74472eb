#include "knowledge/r_graphreflines.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/knowledge/case_file.h"
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

// SD list [0 "M"], then percentile list [50 "P50"].
const std::string kSDList = "07 02 01 00 00 00 01 01 00 4D 03 01 00 00 00 00 00 00 00 00 ";
const std::string kPercentileList = "07 02 01 00 00 00 01 03 00 50 35 30 03 01 00 00 00 00 00 00 49 40";

}  // namespace

TEST(GraphRefLinesFormatTest, LineClassFollowsTheTableOfTheCountAndIsTwoOutsideIt) {
  // The classes of the lines of each count from 1 to 9, one digit a line.
  const char* const classes[] = {"0", "11", "202", "2112", "12021", "120021", "2120212", "21200212", "212202212"};
  for (const std::string row : classes) {
    int count = static_cast<int>(row.size());
    for (int index = 0; index < count; ++index) {
      SCOPED_TRACE("index " + std::to_string(index) + " of " + std::to_string(count));
      EXPECT_EQ(row[index] - '0', R_GraphRefLinesFormat::getLineClass(index, count));
    }
  }
  EXPECT_EQ(2, R_GraphRefLinesFormat::getLineClass(3, 3));  // outside the lines
  EXPECT_EQ(2, R_GraphRefLinesFormat::getLineClass(-1, 5));
  EXPECT_EQ(0, R_GraphRefLinesFormat::getLineClass(5, 0));
  EXPECT_EQ(1, R_GraphRefLinesFormat::getLineClass(9, 2));
}

TEST(GraphRefLinesTest, LoadFillsBothFormatsWithTheSDOfEachLine) {
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
  EXPECT_EQ(-1.8807936049997807, percentiles.getLineSD(0));
  EXPECT_EQ(0.0, percentiles.getLineSD(1));
  EXPECT_EQ(1.8807936049997807, percentiles.getLineSD(2));
  EXPECT_STREQ("P97", percentiles.getLineText(2));
}

TEST(GraphRefLinesTest, LoadRefusesMissingBrokenAndOutOfRangeLists) {
  for (const TextCase& row : readCases("knowledge/graphlines_messages.txt")) {
    SCOPED_TRACE(row.input);
    CollectingReporter reporter;
    R_GraphRefLines lines;
    EXPECT_EQ(row.out.empty(), lines.loadXML(row.input.c_str(), &reporter));
    EXPECT_EQ(row.out, reporter.lines());
  }
}

TEST(GraphRefLinesTest, XMLFormPutsTheSDLinesFirst) {
  R_GraphRefLines lines;
  ASSERT_TRUE(lines.loadXML((percentileLines(item("50", "P50")) + sdLines(item("0", "M"))).c_str(), nullptr));
  EXPECT_EQ(sdLines(item("0", "M")) + percentileLines(item("50", "P50")),
            xmlWrittenBy([&](R_XMLTextOutput& out) { lines.saveXML(out); }));
}

TEST(GraphRefLinesTest, BinaryFormChecksTheValuesAsTheXMLFormDoes) {
  const std::string rows[] = {
      "07 02 01 00 00 00 01 01 00 4D 03 01 00 00 00 00 00 00 1A 40 " + kPercentileList,  // SD 6.5
      kSDList + "07 02 01 00 00 00 01 03 00 50 35 30 03 01 00 00 00 00 00 00 59 40",     // percentile 100
      kSDList + "07 02 00 00 00 00",                                                      // no percentile line
  };
  for (const std::string& hex : rows) EXPECT_FALSE(reloads(hex, reloaded<R_GraphRefLines>)) << hex;
}
