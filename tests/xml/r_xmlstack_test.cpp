#include "xml/r_xmlstack.h"

#include <gtest/gtest.h>

TEST(XMLStackTest, PathsJoinTheNamesFromTheRootAndAnEmptyStackAnswersEmptyTexts) {
  R_XMLStack stack;
  stack.pop();
  EXPECT_STREQ("", stack.top());
  for (const char* name : {"quorl", "", static_cast<const char*>(nullptr), "var", "quorl"}) stack.push(name);
  EXPECT_STREQ(">quorl/var/quorl", stack.getPath('/', '>'));
  EXPECT_EQ(0, stack.find("quorl")) << "the outermost level of a name";
  EXPECT_EQ(-1, stack.find("Var"));
  stack.pop();
  EXPECT_STREQ("quorl:var", stack.getPath(':', 0));
  EXPECT_EQ(9u, stack.getPathLength());
  stack.clear();
  EXPECT_STREQ("", stack.getPath(':', '<'));
}
