#include "xml/r_xmlrecipient.h"

#include <gtest/gtest.h>

#include "tests/support/xml_fakes.h"

TEST(XMLRecipientTest, FindTagComparesWholeEntries) {
  RecordingRecipient recipient({});
  EXPECT_EQ(-1, recipient.findTag("a"));
  recipient.setTagCount(3);
  recipient.setTag(0, "a:b");
  recipient.setTag(2, "<a:b");
  EXPECT_EQ(nullptr, recipient.getTag(1));
  EXPECT_EQ(2, recipient.findTag("<a:b"));
  for (const char* other : {"a:b:c", "a", "A:B"}) EXPECT_EQ(-1, recipient.findTag(other)) << other;
  recipient.clearTags();
  EXPECT_EQ(-1, recipient.findTag("a:b"));
}
