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

struct LoadRow {
  const char* xml;
  bool loads;
  int count;
  std::vector<std::string> messages;
};

}  // namespace

TEST(ListTest, LoadTakesItemsInOrderWithNormalisedTexts) {
  R_List list;
  ASSERT_TRUE(list.loadXML(kItems, nullptr));
  ASSERT_EQ(3, list.getN());
  EXPECT_STREQ("one", list.getText(0));
  EXPECT_STREQ("three", list.getText(1));
  EXPECT_TRUE(list.getValue(1).isEqual(3));
  EXPECT_STREQ("two", list.getText(2));
}

TEST(ListTest, LoadRefusesUndefinedAndDuplicateValues) {
  const LoadRow rows[] = {
      {"<item value=\"0\">zero</item>", true, 1, {}},  // 0 is a value like any other
      {"<item value=\"\">empty</item>", false, 0,
       {"data error closing block </item>: wrong or duplicate list item", "Error while processing list."}},
      {"<item>none</item>", false, 0,
       {"data error closing block </item>: wrong or duplicate list item", "Error while processing list."}},
      {"<item value=\"?\">unknown</item>", false, 0,
       {"data error closing block </item>: wrong or duplicate list item", "Error while processing list."}},
      {"<item value=\"1\">a</item><item value=\"1.0\">b</item><item value=\"2\">c</item>", false, 2,
       {"data error closing block </item>: wrong or duplicate list item", "Error while processing list."}},
      {"<entry value=\"1\">a</entry>", false, 0, {"List items missing.", "Error while processing list."}},
      {"<item value=\"1\"/>", true, 1, {}},  // a standalone item has the empty text
  };
  for (const LoadRow& row : rows) {
    SCOPED_TRACE(row.xml);
    CollectingReporter reporter;
    R_List list;
    EXPECT_EQ(row.loads, list.loadXML(row.xml, &reporter));
    EXPECT_EQ(row.count, list.getN());
    EXPECT_EQ(row.messages, reporter.lines());
  }
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
  EXPECT_STREQ("two", list.getText(R_Number(2), false));
}

TEST(ListTest, BestFitMidwayBetweenTwoItemsGivesTheEarlierItem) {
  R_List midway;
  ASSERT_TRUE(midway.loadXML("<item value=\"3\">high</item><item value=\"1\">low</item>", nullptr));
  EXPECT_STREQ("high", midway.getText(2.0, true));
  R_List reversed;
  ASSERT_TRUE(reversed.loadXML("<item value=\"1\">low</item><item value=\"3\">high</item>", nullptr));
  EXPECT_STREQ("low", reversed.getText(2.0, true));
}

TEST(ListTest, AnEmptyListHasNoTextForAnyValue) {
  R_List list;
  EXPECT_FALSE(list.isLoaded());
  EXPECT_EQ(0, list.getN());
  EXPECT_STREQ("", list.getText(1.0, true));
}

TEST(ListTest, SaveXMLWritesOneItemPerValue) {
  R_List list;
  ASSERT_TRUE(list.loadXML(kItems, nullptr));
  EXPECT_EQ(
      "<item value=\"1\">one</item><item value=\"3\">three</item><item value=\"2\">two</item>",
      xmlWrittenBy([&](R_XMLTextOutput& out) { list.saveXML(out); }));
}

// One item, text "a", value 2: tag 7, count 1, the string, the number.
const char* const kListBytes = "07 02 01 00 00 00 01 01 00 61 03 01 00 00 00 00 00 00 00 40";

TEST(ListTest, BinaryFormIsPinnedByItsBytes) {
  R_List list;
  ASSERT_TRUE(list.loadXML("<item value=\"2\">a</item>", nullptr));
  EXPECT_EQ(kListBytes, hexOf(savedBytes(list)));
}

TEST(ListTest, BinaryFormLoadsAndSavesTheSameBytes) {
  Bytes bytes = bytesOf(kListBytes);
  R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  R_List list;
  list.load(stream, &ok);
  ASSERT_TRUE(ok);
  ASSERT_EQ(1, list.getN());
  EXPECT_STREQ("a", list.getText(0));
  EXPECT_EQ(kListBytes, hexOf(savedBytes(list)));
}

TEST(ListTest, BinaryFormCutAtAnyLengthFails) {
  expectEveryTruncationFails(bytesOf(kListBytes), [](R_InputStream& stream, bool* ok) {
    R_List list;
    list.load(stream, ok);
  });
}

TEST(ListTest, BinaryFormRefusesDamagedCountsAndUndefinedValues) {
  const char* const rows[] = {
      "07 02 02 00 00 00 01 01 00 61 03 01 00 00 00 00 00 00 00 40",  // two declared, one stored
      "07 02 FF FF FF 7F 01 01 00 61 03 01 00 00 00 00 00 00 00 40",  // a huge count
      "07 02 FF FF FF FF",                                             // a negative count
      "07 02 01 00 00 00 01 01 00 61 03 00",                           // an undefined value
  };
  for (const char* row : rows) {
    SCOPED_TRACE(row);
    Bytes bytes = bytesOf(row);
    R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
    bool ok = true;
    R_List list;
    list.load(stream, &ok);
    EXPECT_FALSE(ok);
  }
}
