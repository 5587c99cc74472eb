#include "knowledge/r_interval.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "knowledge/r_list.h"
#include "tests/knowledge/case_file.h"
#include "tests/knowledge/knowledge_test_support.h"
#include "tests/support/xml_fakes.h"

namespace {

std::string xmlOf(const R_Interval& interval) {
  return xmlWrittenBy([&](R_XMLTextOutput& out) { interval.saveXML(out); });
}

}  // namespace

// Only "open" opens an end; without a boundary, or any other, it is closed.
TEST(IntervalTest, ContainsFollowsTheClosedAndOpenEndsThatTheXMLFormKeeps) {
  const std::string closed5 = "<max boundary=\"closed\">5</max>", open1 = "<min boundary=\"open\">1</min>";
  const struct { std::string xml, written; std::vector<double> inside, outside; } rows[] = {
      {closed5, closed5, {5, -1000}, {5.0001}},
      {"<max boundary=\"open\">5</max>", "<max boundary=\"open\">5</max>", {4.999}, {5}},
      {"<max>5</max>", closed5, {5}, {}},
      {"<max boundary=\"Open\">5</max>", closed5, {5}, {}},
      {open1, open1, {1.0001, 1e9}, {1, 0.5}},
      {"<min>1</min>", "<min boundary=\"closed\">1</min>", {1}, {0.999}},
      {"<max boundary=\"open\">2.5</max><min>-1,5</min>",  // a comma reads as a point
       "<min boundary=\"closed\">-1.5</min><max boundary=\"open\">2.5</max>", {-1.5, 2.4}, {2.5, -1.6}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.xml);
    R_Interval interval;
    ASSERT_TRUE(interval.loadXML(row.xml.c_str(), nullptr));
    EXPECT_EQ(row.written, xmlOf(interval));
    for (double value : row.inside) EXPECT_TRUE(interval.contains(value)) << value;
    for (double value : row.outside) EXPECT_FALSE(interval.contains(value)) << value;
  }
  R_List list;  // a list gives its smallest and largest item, closed
  ASSERT_TRUE(list.loadXML("<item value=\"4\">d</item><item value=\"-1\">a</item><item value=\"2\">b</item>", nullptr));
  R_Interval from_list;
  from_list.setFromList(list);
  EXPECT_EQ("<min boundary=\"closed\">-1</min><max boundary=\"closed\">4</max>", xmlOf(from_list));
}

TEST(IntervalTest, UndefinedEndsContainEveryNumberButAreNeverContained) {
  R_Interval any, outer(R_Number(0.0), R_Number(10));
  EXPECT_TRUE(any.contains(-1e300));
  EXPECT_FALSE(any.contains(R_Number()));
  EXPECT_TRUE(outer.contains(R_Interval(R_Number(0.0), R_Number(10))));
  EXPECT_FALSE(outer.contains(R_Interval(R_Number(0.0), R_Number(11))));
  EXPECT_FALSE(outer.contains(R_Interval(R_Number(1), R_Number())));
}

TEST(IntervalTest, LoadReportsEachFaultAndItsClosingLine) {
  for (const TextCase& row : readCases("knowledge/interval_messages.txt")) {
    SCOPED_TRACE(row.input);
    CollectingReporter reporter;
    R_Interval interval;
    EXPECT_EQ(row.label == "loads", interval.loadXML(row.input.c_str(), &reporter));
    EXPECT_EQ(row.out, reporter.lines());
  }
}
