// The pointer arrays R_FieldTemplate and R_SortedFieldTemplate.
#include "core/r_fieldtemplate.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <random>
#include <string>

#include "core/r_sortedfieldtemplate.h"

namespace {

// An element ordered by key; a negative key is unknown and compares false both ways, as a visit without age and date
// does. Counts the live items to tell deleting from handing back.
struct Item {
  Item(int k, int s = 0) : key(k), serial(s) { ++alive; }
  ~Item() { --alive; }
  bool operator<(const Item& other) const { return key >= 0 && other.key >= 0 && key < other.key; }
  int key, serial;
  static int alive;
};
int Item::alive = 0;

typedef R_SortedFieldTemplate<Item> Items;

// "key.serial " of each element.
std::string contents(const Items& items) {
  std::string text;
  for (int i = 0; i < items.getCount(); ++i)
    text += std::to_string(items.get(i)->key) + "." + std::to_string(items.get(i)->serial) + " ";
  return text;
}

}  // namespace

TEST(FieldTemplateTest, PutGrowsToTheIndexPlusHalfTheBasesizeWithinTheIntRange) {
  int items[6] = {}, extra = 0;
  const struct { int basesize, index, size; } rows[] = {{10, 100, 105}, {16, 15, 16}, {16, 16, 24}, {1, 6, 7}};
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
  R_FieldTemplate<int> field(10);
  EXPECT_TRUE(field.resize(3));
  EXPECT_FALSE(field.put(INT_MAX, &extra) || field.put(INT_MAX - 4, &extra));
  EXPECT_EQ(10, field.getSize()) << "resize never shrinks";
}

// Detach hands an element back; remove and clear delete it, and so does the container for what it still holds.
TEST(SortedFieldTemplateTest, AddInsertsBeforeTheFirstElementTheItemPrecedesAndOnlyDetachHandsItBack) {
  Item::alive = 0;
  {
    Items items(4);
    const int keys[] = {3, 1, 2, -1, 4, 0, 2}, positions[] = {0, 0, 1, 3, 4, 0, 3};
    for (int i = 0; i < 7; ++i) EXPECT_EQ(positions[i], items.add(new Item(keys[i], i))) << "key " << keys[i];
    // The unknown key preceded nothing when it came, so it went to the end.
    EXPECT_EQ("0.5 1.1 2.2 2.6 3.0 -1.3 4.4 ", contents(items));
    EXPECT_EQ(8, items.getSize());  // 4, then 4 + 4 / 2 = 6, then 8
    EXPECT_TRUE(items.get(7) == nullptr && items.get(-1) == nullptr);
    std::unique_ptr<Item> detached(items.detach(1));
    items.remove(0);
    items.remove(4);
    items.remove(-1);
    EXPECT_EQ("2.2 2.6 3.0 -1.3 ", contents(items));
    EXPECT_EQ(5, Item::alive);
    items.clear();
    EXPECT_EQ(1, Item::alive);
    items.add(new Item(9));
  }
  EXPECT_EQ(0, Item::alive);
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
    ASSERT_EQ(contents(scanned), contents(searched));
  }
}
