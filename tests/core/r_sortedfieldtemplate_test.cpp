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

// "key.serial" of each element, or the keys alone.
std::string contents(const Items& items, bool serials = false) {
  std::string text;
  for (int i = 0; i < items.getCount(); ++i) {
    text += std::to_string(items.get(i)->key) + (serials ? "." + std::to_string(items.get(i)->serial) : "") + " ";
  }
  return text;
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
  EXPECT_EQ("6 7 8 9 10 ", contents(one));
}

TEST(SortedFieldTemplateTest, AddInsertsBeforeTheFirstElementThatTheItemPrecedesSoEqualItemsKeepTheirOrder) {
  Items items(4);
  const int keys[] = {3, 1, 2, -1, 4, 0, 2}, positions[] = {0, 0, 1, 3, 4, 0, 3};
  for (int i = 0; i < 7; ++i) EXPECT_EQ(positions[i], items.add(new Item(keys[i], i))) << "key " << keys[i];
  // The unknown key preceded nothing when it came, so it went to the end.
  EXPECT_EQ("0.5 1.1 2.2 2.6 3.0 -1.3 4.4 ", contents(items, true));
  EXPECT_EQ(nullptr, items.get(7));
  EXPECT_EQ(nullptr, items.get(-1));
}

TEST(SortedFieldTemplateTest, DetachHandsTheElementBackWhileRemoveAndClearDeleteIt) {
  Item::alive = 0;
  {
    Items items(2);
    for (int k : {1, 2, 3, 4, 5}) items.add(new Item(k));
    Item* detached = items.detach(1);
    items.remove(0);
    items.remove(3);
    items.remove(-1);
    EXPECT_EQ(4, Item::alive);
    EXPECT_EQ("3 4 5 ", contents(items));
    delete detached;
    items.clear();
    EXPECT_EQ(0, Item::alive);
    EXPECT_EQ(5, items.getSize()) << "clear keeps the capacity";
    items.add(new Item(9));
  }
  EXPECT_EQ(0, Item::alive) << "the container deletes what it still holds";
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
    }
  }
}
