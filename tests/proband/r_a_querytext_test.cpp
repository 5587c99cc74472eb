#include "proband/r_a_querytext.h"

#include <gtest/gtest.h>

#include <string>


TEST(QueryTextTest, AValueIsNeverCutInsideAnEscape) {
  struct Row {
    int size;
    const char* text;
  } rows[] = {{9, "n=a%E1&"}, {8, "n=a%E1&"}, {7, "n=a%E1"}, {6, "n=a&"}, {5, "n=&"}, {4, "n=&"}, {3, "n="}, {1, ""}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.size);
    char buffer[16];
    R_A_QueryText query(buffer, row.size);
    query.add("n", "a\xE1\xE1");
    EXPECT_STREQ(row.text, buffer);
  }
}
