#include "xml/r_xmlattributes.h"

#include <gtest/gtest.h>

#include <string>

TEST(XMLAttributesTest, TheCursorWalksTheNewestFirstAndElementsLeaveWithTheirAttributes) {
  R_XMLAttributes attributes;
  EXPECT_FALSE(attributes.select(true));
  int position = 2, inner = 0;
  while (attributes.parse("<a x=\"1\" y=2>", &position, 0)) {
  }
  EXPECT_TRUE(attributes.parse("z=\"\"", &inner, 1));
  std::string walk;
  for (bool first = true; attributes.select(first); first = false) {
    walk += std::string(attributes.getName()) + "=" + attributes.getValue() + "@";
    walk += std::to_string(attributes.getElement()) + " ";
  }
  EXPECT_EQ("z=@1 y=2@0 x=1@0 ", walk);
  attributes.removeElement(1);
  ASSERT_TRUE(attributes.select(true));
  EXPECT_TRUE(attributes.isName("y") && attributes.isValue("2"));
  attributes.removeElement(-1);
  EXPECT_FALSE(attributes.select(true));
}
