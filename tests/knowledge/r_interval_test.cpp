#include "knowledge/r_interval.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "knowledge/r_list.h"
#include "tests/knowledge/knowledge_test_support.h"
#include "tests/support/xml_fakes.h"

TEST(IntervalTest, ContainsFollowsTheClosedAndOpenEnds) {
  const struct {
    const char* xml;
    double value;
    bool inside;
  } rows[] = {
      {"<max boundary=\"closed\">5</max>", 5, true}, {"<max boundary=\"closed\">5</max>", -1000, true},
      {"<max boundary=\"closed\">5</max>", 5.0001, false}, {"<max boundary=\"open\">5</max>", 5, false},
      {"<max boundary=\"open\">5</max>", 4.999, true}, {"<max>5</max>", 5, true},  // no boundary: closed
      {"<max boundary=\"Open\">5</max>", 5, true},                                  // only "open" opens
      {"<min boundary=\"closed\">1</min>", 1, true}, {"<min boundary=\"closed\">1</min>", 1e9, true},
      {"<min boundary=\"open\">1</min>", 1, false}, {"<min boundary=\"open\">1</min>", 0.5, false},
      {"<min boundary=\"open\">1</min><max boundary=\"open\">2</max>", 1.5, true},
      {"<min boundary=\"open\">1</min><max boundary=\"open\">2</max>", 2, false},
      {"<min>-1,5</min><max>2</max>", -1.5, true},  // a comma reads as a point
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::string(row.xml) + " contains " + std::to_string(row.value));
    R_Interval interval;
    ASSERT_TRUE(interval.loadXML(row.xml, nullptr));
    EXPECT_EQ(row.inside, interval.contains(row.value));
  }
}

TEST(IntervalTest, UndefinedEndsContainEveryNumberButAreNeverContained) {
  R_Interval any;
  EXPECT_TRUE(any.contains(-1e300));
  EXPECT_FALSE(any.contains(R_Number()));
  R_Interval outer(R_Number(0.0), R_Number(10));
  EXPECT_TRUE(outer.contains(R_Interval(R_Number(0.0), R_Number(10))));
  EXPECT_FALSE(outer.contains(R_Interval(R_Number(0.0), R_Number(11))));
  EXPECT_FALSE(outer.contains(R_Interval(R_Number(1), R_Number())));
}

TEST(IntervalTest, LoadReportsEachFaultAndItsClosingLine) {
  const std::string end = "Error while processing interval.";
  const struct {
    const char* xml;
    bool loads;
    std::vector<std::string> messages;
  } rows[] = {
      {"<min>1</min><max>2</max>", true, {}},
      {"<min>3</min><max>3</max>", false, {"Invalid interval definition (min > max).", end}},
      {"<min>4</min><max>3</max>", false, {"Invalid interval definition (min > max).", end}},
      {"<min>x</min>", false, {"data error closing block </min>: minimum value load error", end}},
      {"<max></max>", false, {"data error closing block </max>: maximum value load error", end}},
      {"<step>1</step>", false, {}},  // unknown elements are ignored; no end: false, silently
      {"", false, {"no input data", end}},
      {"<min>?</min>", false, {}},  // "?" is the undefined number: no end given
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.xml);
    CollectingReporter reporter;
    R_Interval interval;
    EXPECT_EQ(row.loads, interval.loadXML(row.xml, &reporter));
    EXPECT_EQ(row.messages, reporter.lines());
  }
}

TEST(IntervalTest, XMLFormHoldsTheDefinedEndsWithTheirBoundary) {
  auto xmlOf = [](const R_Interval& interval) {
    return xmlWrittenBy([&](R_XMLTextOutput& out) { interval.saveXML(out); });
  };
  R_Interval both, only_max, from_list;
  ASSERT_TRUE(both.loadXML("<max boundary=\"open\">2.5</max><min>-1</min>", nullptr));
  EXPECT_EQ("<min boundary=\"closed\">-1</min><max boundary=\"open\">2.5</max>", xmlOf(both));
  ASSERT_TRUE(only_max.loadXML("<max>7</max>", nullptr));
  EXPECT_EQ("<max boundary=\"closed\">7</max>", xmlOf(only_max));
  R_List list;  // a list gives its smallest and largest item, closed
  ASSERT_TRUE(list.loadXML("<item value=\"4\">d</item><item value=\"-1\">a</item><item value=\"2\">b</item>", nullptr));
  from_list.setFromList(list);
  EXPECT_EQ("<min boundary=\"closed\">-1</min><max boundary=\"closed\">4</max>", xmlOf(from_list));
}
