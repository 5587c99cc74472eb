#include "core/r_fieldtemplate.h"

#include <gtest/gtest.h>

#include <climits>

TEST(FieldTemplateTest, PutGrowsToTheIndexPlusHalfTheBasesize) {
  int item = 0;
  R_FieldTemplate<int> ten(10);
  EXPECT_EQ(10, ten.getSize());
  ASSERT_TRUE(ten.put(100, &item));
  EXPECT_EQ(105, ten.getSize());

  R_FieldTemplate<int> sixteen(16);
  ASSERT_TRUE(sixteen.put(15, &item));
  EXPECT_EQ(16, sixteen.getSize());
  ASSERT_TRUE(sixteen.put(16, &item));
  EXPECT_EQ(24, sixteen.getSize());
  ASSERT_TRUE(sixteen.put(24, &item));
  EXPECT_EQ(32, sixteen.getSize());
}

TEST(FieldTemplateTest, BasesizeOneStillMakesRoomForTheIndexAndGrowingKeepsThePointers) {
  int items[6] = {};
  R_FieldTemplate<int> one(1);
  for (int i = 0; i < 6; ++i) {
    ASSERT_TRUE(one.put(i, &items[i]));
    EXPECT_EQ(i + 1, one.getSize());
  }
  for (int i = 0; i < 6; ++i) EXPECT_EQ(&items[i], one.get(i));
}

TEST(FieldTemplateTest, GetOutsideTheCapacityAnswersNull) {
  int item = 0;
  R_FieldTemplate<int> field(8);
  field.put(7, &item);
  EXPECT_EQ(&item, field.get(7));
  EXPECT_EQ(nullptr, field.get(8));
  EXPECT_EQ(nullptr, field.get(-1));
  EXPECT_EQ(nullptr, field.get(INT_MAX));
}

TEST(FieldTemplateTest, ResizeNeverShrinks) {
  R_FieldTemplate<int> field(8);
  EXPECT_TRUE(field.resize(3));
  EXPECT_EQ(8, field.getSize());
  EXPECT_TRUE(field.resize(20));
  EXPECT_EQ(20, field.getSize());
}

TEST(FieldTemplateTest, AnIndexWhoseGrowthPassesTheIntRangeIsRefused) {
  int item = 0;
  R_FieldTemplate<int> field(10);
  EXPECT_FALSE(field.put(INT_MAX, &item));
  EXPECT_FALSE(field.put(INT_MAX - 4, &item));
  EXPECT_EQ(10, field.getSize());
  EXPECT_TRUE(field.put(3, &item));
  EXPECT_EQ(&item, field.get(3));
}
