#include "knowledge/r_interval.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "knowledge/r_list.h"
#include "tests/knowledge/knowledge_test_support.h"
#include "tests/support/xml_fakes.h"

namespace {

struct ContainsRow {
  const char* xml;
  double value;
  bool inside;
};

}  // namespace

TEST(IntervalTest, ContainsFollowsTheClosedAndOpenEnds) {
  const ContainsRow rows[] = {
      {"<max boundary=\"closed\">5</max>", 5, true},
      {"<max boundary=\"closed\">5</max>", -1000, true},
      {"<max boundary=\"closed\">5</max>", 5.0001, false},
      {"<max boundary=\"open\">5</max>", 5, false},
      {"<max boundary=\"open\">5</max>", 4.999, true},
      {"<max>5</max>", 5, true},  // no boundary: closed
      {"<max boundary=\"Open\">5</max>", 5, true},  // only "open" opens
      {"<min boundary=\"closed\">1</min>", 1, true},
      {"<min boundary=\"closed\">1</min>", 1e9, true},
      {"<min boundary=\"open\">1</min>", 1, false},
      {"<min boundary=\"open\">1</min>", 0.5, false},
      {"<min boundary=\"open\">1</min><max boundary=\"open\">2</max>", 1.5, true},
      {"<min boundary=\"open\">1</min><max boundary=\"open\">2</max>", 2, false},
      {"<min>-1,5</min><max>2</max>", -1.5, true},  // a comma reads as a point
  };
  for (const ContainsRow& row : rows) {
    SCOPED_TRACE(std::string(row.xml) + " contains " + std::to_string(row.value));
    R_Interval interval;
    ASSERT_TRUE(interval.loadXML(row.xml, nullptr));
    EXPECT_EQ(row.inside, interval.contains(row.value));
  }
}

TEST(IntervalTest, AnUndefinedIntervalContainsEveryNumberButNotTheUndefinedOne) {
  R_Interval interval;
  EXPECT_FALSE(interval.isDefined());
  EXPECT_TRUE(interval.contains(-1e300));
  EXPECT_TRUE(interval.contains(R_Number(7)));
  EXPECT_FALSE(interval.contains(R_Number()));
}

TEST(IntervalTest, AnIntervalIsContainedWhenBothOfItsEndsAre) {
  R_Interval outer(R_Number(0.0), R_Number(10));
  EXPECT_EQ(17, outer.getFlags());
  EXPECT_TRUE(outer.contains(R_Interval(R_Number(0.0), R_Number(10))));
  EXPECT_FALSE(outer.contains(R_Interval(R_Number(0.0), R_Number(11))));
  EXPECT_FALSE(outer.contains(R_Interval(R_Number(1), R_Number())));  // an undefined end is not contained
}

struct LoadRow {
  const char* xml;
  bool loads;
  std::vector<std::string> messages;
};

TEST(IntervalTest, LoadReportsEachFaultAndItsClosingLine) {
  const LoadRow rows[] = {
      {"<min>1</min><max>2</max>", true, {}},
      {"<min>3</min><max>3</max>", false,
       {"Invalid interval definition (min > max).", "Error while processing interval."}},
      {"<min>4</min><max>3</max>", false,
       {"Invalid interval definition (min > max).", "Error while processing interval."}},
      {"<min>x</min>", false,
       {"data error closing block </min>: minimum value load error", "Error while processing interval."}},
      {"<max></max>", false,
       {"data error closing block </max>: maximum value load error", "Error while processing interval."}},
      {"<step>1</step>", false, {}},  // unknown elements are ignored; no end: false, silently
      {"", false, {"no input data", "Error while processing interval."}},
      {"<min>?</min>", false, {}},  // "?" is the undefined number: no end given
  };
  for (const LoadRow& row : rows) {
    SCOPED_TRACE(row.xml);
    CollectingReporter reporter;
    R_Interval interval;
    EXPECT_EQ(row.loads, interval.loadXML(row.xml, &reporter));
    EXPECT_EQ(row.messages, reporter.lines());
  }
}

TEST(IntervalTest, SetFromListTakesTheSmallestAndLargestItemClosed) {
  R_List list;
  ASSERT_TRUE(list.loadXML("<item value=\"4\">d</item><item value=\"-1\">a</item><item value=\"2\">b</item>", nullptr));
  R_Interval interval;
  interval.setFromList(list);
  EXPECT_TRUE(interval.getMin().isEqual(-1));
  EXPECT_TRUE(interval.getMax().isEqual(4));
  EXPECT_EQ(17, interval.getFlags());
  EXPECT_TRUE(interval.contains(-1));
  EXPECT_TRUE(interval.contains(4));
  EXPECT_TRUE(interval.contains(0.5));
}

TEST(IntervalTest, SaveXMLWritesTheDefinedEndsWithTheirBoundary) {
  R_Interval interval;
  ASSERT_TRUE(interval.loadXML("<max boundary=\"open\">2.5</max><min>-1</min>", nullptr));
  EXPECT_EQ("<min boundary=\"closed\">-1</min><max boundary=\"open\">2.5</max>",
            xmlWrittenBy([&](R_XMLTextOutput& out) { interval.saveXML(out); }));
  R_Interval only_max;
  ASSERT_TRUE(only_max.loadXML("<max>7</max>", nullptr));
  EXPECT_EQ("<max boundary=\"closed\">7</max>",
            xmlWrittenBy([&](R_XMLTextOutput& out) { only_max.saveXML(out); }));
}

// min 1 (closed), max undefined: tag 4, the two numbers, the flags 1.
const char* const kIntervalBytes = "04 03 01 00 00 00 00 00 00 F0 3F 03 00 02 01 00 00 00";

TEST(IntervalTest, BinaryFormIsPinnedByItsBytes) {
  R_Interval interval;
  ASSERT_TRUE(interval.loadXML("<min>1</min>", nullptr));
  EXPECT_EQ(kIntervalBytes, hexOf(savedBytes(interval)));
}

TEST(IntervalTest, BinaryFormLoadsAndSavesTheSameBytes) {
  Bytes bytes = bytesOf(kIntervalBytes);
  R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  R_Interval interval;
  interval.load(stream, &ok);
  ASSERT_TRUE(ok);
  EXPECT_TRUE(interval.getMin().isEqual(1));
  EXPECT_FALSE(interval.getMax().isDefined());
  EXPECT_EQ(kIntervalBytes, hexOf(savedBytes(interval)));
}

TEST(IntervalTest, BinaryFormCutAtAnyLengthFails) {
  expectEveryTruncationFails(bytesOf(kIntervalBytes), [](R_InputStream& stream, bool* ok) {
    R_Interval interval;
    interval.load(stream, ok);
  });
}

TEST(IntervalTest, BinaryFormWithAnotherTypeByteFails) {
  Bytes bytes = bytesOf(kIntervalBytes);
  bytes[0] = 7;
  R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  R_Interval interval;
  interval.load(stream, &ok);
  EXPECT_FALSE(ok);
}
