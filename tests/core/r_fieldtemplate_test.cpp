#include "core/r_fieldtemplate.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

TEST(FieldTemplateTest, PutGrowsToTheIndexPlusHalfTheBasesizeAndKeepsThePointers) {
  int items[6] = {}, extra = 0;
  const struct { int basesize, index, size; } rows[] = {
      {10, 100, 105}, {16, 15, 16}, {16, 16, 24}, {16, 24, 32}, {1, 6, 7}, {8, 7, 8},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(std::to_string(row.basesize) + " at " + std::to_string(row.index));
    R_FieldTemplate<int> field(row.basesize);
    for (int i = 0; i < 6; ++i) ASSERT_TRUE(field.put(i, &items[i]));
    ASSERT_TRUE(field.put(row.index, &extra));
    EXPECT_EQ(row.size, field.getSize());
    EXPECT_EQ(&extra, field.get(row.index));
    for (int i = 0; i < 6; ++i) EXPECT_EQ(&items[i], field.get(i));
    EXPECT_EQ(nullptr, field.get(row.size));
    EXPECT_EQ(nullptr, field.get(-1));
  }
}

TEST(FieldTemplateTest, ResizeNeverShrinksAndAnIndexWhoseGrowthPassesTheIntRangeIsRefused) {
  int item = 0;
  R_FieldTemplate<int> field(10);
  EXPECT_TRUE(field.resize(3));
  EXPECT_FALSE(field.put(INT_MAX, &item));
  EXPECT_FALSE(field.put(INT_MAX - 4, &item));
  EXPECT_EQ(10, field.getSize());
  EXPECT_EQ(nullptr, field.get(INT_MAX));
  EXPECT_TRUE(field.put(3, &item));
  EXPECT_EQ(&item, field.get(3));
}
