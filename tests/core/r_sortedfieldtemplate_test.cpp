#include "core/r_sortedfieldtemplate.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

// An element ordered by key; a negative key is unknown and compares false
// both ways, as a visit without age and date does. Counts the live items to
// tell deleting from handing back.
struct Item {
  Item(int k, int s = 0) : key(k), serial(s) { ++alive; }
  ~Item() { --alive; }
  bool operator<(const Item& other) const { return key >= 0 && other.key >= 0 && key < other.key; }
  int key;
  int serial;
  static int alive;
};
int Item::alive = 0;

typedef R_SortedFieldTemplate<Item> Items;

std::string keysOf(const Items& items) {
  std::string keys;
  for (int i = 0; i < items.getCount(); ++i) keys += std::to_string(items.get(i)->key) + " ";
  return keys;
}

}  // namespace

TEST(SortedFieldTemplateTest, GrowsByHalfTheBasesize) {
  Items items(16);
  for (int i = 0; i < 32; ++i) {
    ASSERT_EQ(i, items.add(new Item(i)));
    EXPECT_EQ(i < 16 ? 16 : i < 24 ? 24 : 32, items.getSize()) << "after " << i + 1 << " items";
  }
  Items one(1);
  for (int i = 0; i < 5; ++i) ASSERT_EQ(0, one.add(new Item(-i + 10)));
  EXPECT_EQ(5, one.getSize());
  EXPECT_EQ("6 7 8 9 10 ", keysOf(one));
}

TEST(SortedFieldTemplateTest, AddInsertsBeforeTheFirstElementThatTheItemPrecedes) {
  Items items(4);
  EXPECT_EQ(0, items.add(new Item(3)));
  EXPECT_EQ(0, items.add(new Item(1)));
  EXPECT_EQ(1, items.add(new Item(2)));
  EXPECT_EQ("1 2 3 ", keysOf(items));
  EXPECT_EQ(3, items.add(new Item(-1))) << "an item that precedes nothing goes to the end";
  EXPECT_EQ(4, items.add(new Item(4)));
  EXPECT_EQ(0, items.add(new Item(0)));
  EXPECT_EQ("0 1 2 3 -1 4 ", keysOf(items));
}

TEST(SortedFieldTemplateTest, EqualItemsKeepTheirOrderOfArrival) {
  Items items(2);
  items.add(new Item(2, 1));
  items.add(new Item(1, 2));
  items.add(new Item(2, 3));
  items.addOrdered(new Item(2, 4));
  items.add(new Item(1, 5));
  const int serials[] = {2, 5, 1, 3, 4};
  ASSERT_EQ(5, items.getCount());
  for (int i = 0; i < 5; ++i) EXPECT_EQ(serials[i], items.get(i)->serial) << "at " << i;
}

TEST(SortedFieldTemplateTest, GetOutsideTheCountAnswersNull) {
  Items items(8);
  items.add(new Item(1));
  EXPECT_NE(nullptr, items.get(0));
  EXPECT_EQ(nullptr, items.get(1));
  EXPECT_EQ(nullptr, items.get(-1));
}

TEST(SortedFieldTemplateTest, DetachHandsTheElementBackWhileRemoveDeletesIt) {
  Item::alive = 0;
  {
    Items items(4);
    for (int k : {1, 2, 3, 4}) items.add(new Item(k));
    Item* detached = items.detach(1);
    EXPECT_EQ(2, detached->key);
    EXPECT_EQ(4, Item::alive);
    EXPECT_EQ("1 3 4 ", keysOf(items));
    items.remove(0);
    EXPECT_EQ(3, Item::alive);
    EXPECT_EQ("3 4 ", keysOf(items));
    items.remove(2);
    items.remove(-1);
    EXPECT_EQ(2, items.getCount());
    delete detached;
  }
  EXPECT_EQ(0, Item::alive) << "the container deletes what it still holds";
}

TEST(SortedFieldTemplateTest, ClearDeletesTheElementsAndKeepsTheCapacity) {
  Item::alive = 0;
  Items items(2);
  for (int k = 0; k < 5; ++k) items.add(new Item(k));
  int size = items.getSize();
  items.clear();
  EXPECT_EQ(0, Item::alive);
  EXPECT_EQ(0, items.getCount());
  EXPECT_EQ(size, items.getSize());
  EXPECT_EQ(0, items.add(new Item(9)));
}

TEST(SortedFieldTemplateTest, AddOrderedFindsTheSamePositionsAsAddOnManyEqualKeys) {
  std::mt19937 random(20240611);
  for (int round = 0; round < 20; ++round) {
    Items scanned(3), searched(3);
    int n = 1 + static_cast<int>(random() % 200);
    for (int serial = 0; serial < n; ++serial) {
      int key = static_cast<int>(random() % 5);
      int at = scanned.add(new Item(key, serial));
      ASSERT_EQ(at, searched.addOrdered(new Item(key, serial))) << "round " << round << " item " << serial;
    }
    for (int i = 1; i < n; ++i) {
      const Item* before = searched.get(i - 1);
      const Item* after = searched.get(i);
      ASSERT_TRUE(before->key < after->key || (before->key == after->key && before->serial < after->serial))
          << "round " << round << " at " << i;
      ASSERT_EQ(scanned.get(i)->serial, after->serial);
    }
  }
}
