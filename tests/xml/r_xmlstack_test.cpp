#include "xml/r_xmlstack.h"

#include <gtest/gtest.h>

#include <string>

TEST(XMLStackTest, AnEmptyStackAnswersEmptyTexts) {
  R_XMLStack stack;
  EXPECT_FALSE(stack.isNotEmpty());
  EXPECT_STREQ("", stack.top());
  EXPECT_STREQ("", stack.getPath(':', '<'));
  EXPECT_EQ(-1, stack.find("a"));
  stack.pop();
  EXPECT_EQ(0, stack.getCount());
}

TEST(XMLStackTest, PathsJoinTheNamesFromTheRoot) {
  R_XMLStack stack;
  stack.push("quorl");
  stack.push("");
  stack.push(nullptr);
  stack.push("var");
  stack.push("quorl");
  EXPECT_EQ(3, stack.getCount());
  EXPECT_STREQ("quorl", stack.top());
  EXPECT_STREQ("quorl:var:quorl", stack.getPath(':', 0));
  EXPECT_STREQ(">quorl/var/quorl", stack.getPath('/', '>'));
  EXPECT_EQ(strlen("quorl:var:quorl"), stack.getPathLength());
  EXPECT_EQ(0, stack.find("quorl"));
  EXPECT_EQ(1, stack.find("var"));
  EXPECT_EQ(-1, stack.find("Var"));
  stack.pop();
  EXPECT_STREQ("var", stack.top());
  EXPECT_EQ(strlen("quorl:var"), stack.getPathLength());
  stack.clear();
  EXPECT_EQ(0u, stack.getPathLength());
  EXPECT_STREQ("", stack.getPath(':', '<'));
}

TEST(XMLStackTest, DeepNestingGrowsAndShrinks) {
  R_XMLStack stack;
  const int depth = 100000;
  for (int i = 0; i < depth; ++i) stack.push(i % 2 ? "b" : "a");
  EXPECT_EQ(depth, stack.getCount());
  EXPECT_EQ(static_cast<size_t>(2 * depth - 1), strlen(stack.getPath(':', 0)));
  for (int i = 0; i < depth - 2; ++i) stack.pop();
  EXPECT_STREQ("<a:b", stack.getPath(':', '<'));
}
