#include "knowledge/r_referenceindex.h"

#include <gtest/gtest.h>

#include <vector>

#include "knowledge/r_xyvar.h"

namespace {

std::vector<int> found(const R_ReferenceIndex& index, const R_XYVar& pair) {
  const int* begin = nullptr;
  const int* end = nullptr;
  index.find(pair, &begin, &end);
  return std::vector<int>(begin, end);
}

}  // namespace

// References of one pair that lie apart in the file come back together, in
// file order; pairs that differ in one variable only stay apart.
TEST(ReferenceIndexTest, FindsTheReferencesOfAPairInFileOrder) {
  const R_XYVar height(-1, 0, 1), weight(-1, 0, 2), father(2, -1, -1), swapped(-1, 1, 0), unused(-1, 0, 3);
  R_ReferenceIndex index;
  for (const R_XYVar* pair : {&height, &father, &weight, &height, &swapped, &height, &father})
    index.add(*pair);
  index.finish();
  EXPECT_EQ(std::vector<int>({0, 3, 5}), found(index, height));
  EXPECT_EQ(std::vector<int>({1, 6}), found(index, father));
  EXPECT_EQ(std::vector<int>({2}), found(index, weight));
  EXPECT_EQ(std::vector<int>({4}), found(index, swapped));
  EXPECT_EQ(std::vector<int>(), found(index, unused));
}

// Hundreds of pairs, so that many share hash slots.
TEST(ReferenceIndexTest, ManyPairsEachFindTheirOwn) {
  R_ReferenceIndex index;
  for (int i = 0; i < 600; ++i) index.add(R_XYVar(-1, i % 7, i % 300));
  index.finish();
  for (int y = 0; y < 300; ++y)
    for (int x = 0; x < 7; ++x) {
      std::vector<int> expected;
      for (int i = 0; i < 600; ++i)
        if (i % 7 == x && i % 300 == y) expected.push_back(i);
      ASSERT_EQ(expected, found(index, R_XYVar(-1, x, y))) << x << " " << y;
    }
}
