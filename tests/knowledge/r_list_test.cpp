#include "knowledge/r_list.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/knowledge/knowledge_test_support.h"
#include "tests/support/xml_fakes.h"

namespace {

// Items 1 "one", 3 "three", 2 "two", in this order.
const char* const kItems =
    "<item value=\"1\">one</item>\n<item value=\"3\">\n  three\n</item><item value=\"2\">two</item>";

}  // namespace

TEST(ListTest, LoadKeepsTheOrderAndRefusesUndefinedAndDuplicateValues) {
  const std::vector<std::string> refused = {"data error closing block </item>: wrong or duplicate list item",
                                            "Error while processing list."};
  const struct {
    const char* xml;
    int count;
    std::vector<std::string> messages;  // empty: the load succeeds
  } rows[] = {
      {"<item value=\"0\">zero</item>", 1, {}},  // 0 is a value like any other
      {"<item value=\"1\"/>", 1, {}},            // a standalone item has the empty text
      {"<item value=\"\">empty</item>", 0, refused},
      {"<item>none</item>", 0, refused},
      {"<item value=\"?\">unknown</item>", 0, refused},
      {"<item value=\"1\">a</item><item value=\"1.0\">b</item><item value=\"2\">c</item>", 2, refused},
      {"<entry value=\"1\">a</entry>", 0, {"List items missing.", "Error while processing list."}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.xml);
    CollectingReporter reporter;
    R_List list;
    EXPECT_EQ(row.messages.empty(), list.loadXML(row.xml, &reporter));
    EXPECT_EQ(row.count, list.getN());
    EXPECT_EQ(row.messages, reporter.lines());
  }
  R_List list;
  ASSERT_TRUE(list.loadXML(kItems, nullptr));
  EXPECT_EQ("<item value=\"1\">one</item><item value=\"3\">three</item><item value=\"2\">two</item>",
            xmlWrittenBy([&](R_XMLTextOutput& out) { list.saveXML(out); }));
}

TEST(ListTest, TextByValueNeedsAnEqualItemUnlessBestFitIsAsked) {
  R_List list;
  ASSERT_TRUE(list.loadXML(kItems, nullptr));
  EXPECT_STREQ("three", list.getText(3.0, false));
  EXPECT_STREQ("", list.getText(2.5, false));
  EXPECT_STREQ("three", list.getText(2.6, true));
  EXPECT_STREQ("three", list.getText(100.0, true));
  EXPECT_STREQ("one", list.getText(-100.0, true));
  EXPECT_STREQ("", list.getText(R_Number(), true));
  EXPECT_STREQ("", R_List().getText(1.0, true));
  // Midway between two items, the earlier item.
  R_List midway, reversed;
  ASSERT_TRUE(midway.loadXML("<item value=\"3\">high</item><item value=\"1\">low</item>", nullptr));
  ASSERT_TRUE(reversed.loadXML("<item value=\"1\">low</item><item value=\"3\">high</item>", nullptr));
  EXPECT_STREQ("high", midway.getText(2.0, true));
  EXPECT_STREQ("low", reversed.getText(2.0, true));
}
