#include "xml/r_xmlattributes.h"

#include <gtest/gtest.h>

TEST(XMLAttributesTest, TheCursorWalksTheNewestFirst) {
  R_XMLAttributes attributes;
  EXPECT_FALSE(attributes.select(true));
  const char* tag = "<a x=\"1\" y=2>";
  int position = 2;
  EXPECT_TRUE(attributes.parse(tag, &position, 0));
  EXPECT_TRUE(attributes.parse(tag, &position, 0));
  EXPECT_FALSE(attributes.parse(tag, &position, 0));
  int inner = 0;
  EXPECT_TRUE(attributes.parse("z=\"\"", &inner, 1));

  ASSERT_TRUE(attributes.select(true));
  EXPECT_TRUE(attributes.isName("z"));
  EXPECT_TRUE(attributes.isValue(""));
  EXPECT_EQ(1, attributes.getElement());
  ASSERT_TRUE(attributes.select(false));
  EXPECT_STREQ("y", attributes.getName());
  EXPECT_STREQ("2", attributes.getValue());
  ASSERT_TRUE(attributes.select(false));
  EXPECT_STREQ("x", attributes.getName());
  EXPECT_EQ(0, attributes.getElement());
  EXPECT_FALSE(attributes.select(false));

  attributes.removeElement(1);
  ASSERT_TRUE(attributes.select(true));
  EXPECT_STREQ("y", attributes.getName());
  attributes.removeElement(-1);
  EXPECT_FALSE(attributes.select(true));
}
