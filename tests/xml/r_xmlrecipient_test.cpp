#include "xml/r_xmlrecipient.h"

#include <gtest/gtest.h>

#include "tests/support/xml_fakes.h"

TEST(XMLRecipientTest, FindTagComparesWholeEntries) {
  RecordingRecipient recipient({});
  EXPECT_EQ(-1, recipient.findTag("a"));
  recipient.setTagCount(3);
  recipient.setTag(0, "a:b");
  recipient.setTag(2, "<a:b");
  EXPECT_STREQ("a:b", recipient.getTag(0));
  EXPECT_EQ(nullptr, recipient.getTag(1));
  EXPECT_EQ(0, recipient.findTag("a:b"));
  EXPECT_EQ(2, recipient.findTag("<a:b"));
  EXPECT_EQ(-1, recipient.findTag("a:b:c"));
  EXPECT_EQ(-1, recipient.findTag("a"));
  EXPECT_EQ(-1, recipient.findTag("A:B"));
  recipient.clearTags();
  EXPECT_EQ(-1, recipient.findTag("a:b"));
  // A table may be set again after it was cleared; one left behind is freed
  // with the recipient.
  recipient.setTagCount(1);
  recipient.setTag(0, "x");
  EXPECT_EQ(0, recipient.findTag("x"));
}
