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
}

TEST(ListTest, BestFitMidwayBetweenTwoItemsGivesTheEarlierItem) {
  R_List midway;
  ASSERT_TRUE(midway.loadXML("<item value=\"3\">high</item><item value=\"1\">low</item>", nullptr));
  EXPECT_STREQ("high", midway.getText(2.0, true));
  R_List reversed;
  ASSERT_TRUE(reversed.loadXML("<item value=\"1\">low</item><item value=\"3\">high</item>", nullptr));
  EXPECT_STREQ("low", reversed.getText(2.0, true));
}

TEST(ListTest, BinaryFormIsTheCountThenTextAndValueOfEachItem) {
  R_List list;
  ASSERT_TRUE(list.loadXML("<item value=\"2\">a</item><item value=\"0\">bc</item>", nullptr));
  expectPinnedForm("07 02 02 00 00 00 01 01 00 61 03 01 00 00 00 00 00 00 00 40 "
                   "01 02 00 62 63 03 01 00 00 00 00 00 00 00 00",
                   savedBytes(list), reloaded<R_List>);
}

TEST(ListTest, BinaryFormRefusesDamagedCountsAndUndefinedValues) {
  const char* const rows[] = {
      "07 02 02 00 00 00 01 01 00 61 03 01 00 00 00 00 00 00 00 40",  // two declared, one stored
      "07 02 FF FF FF 7F 01 01 00 61 03 01 00 00 00 00 00 00 00 40",  // a huge count
      "07 02 FF FF FF FF",                                             // a negative count
      "07 02 01 00 00 00 01 01 00 61 03 00",                           // an undefined value
  };
  for (const char* row : rows) EXPECT_FALSE(reloads(row, reloaded<R_List>)) << row;
}
