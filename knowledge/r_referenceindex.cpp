#include "knowledge/r_referenceindex.h"

#include <algorithm>

#include "knowledge/r_xyvar.h"

R_ReferenceIndex::Pair R_ReferenceIndex::pairOf(const R_XYVar& xyvar) {
  return Pair{xyvar.getAVar(), xyvar.getXVar(), xyvar.getYVar()};
}

size_t R_ReferenceIndex::hashOf(const Pair& pair) {
  size_t hash = static_cast<unsigned>(pair.avar);
  hash = hash * 1000003u ^ static_cast<unsigned>(pair.xvar);
  hash = hash * 1000003u ^ static_cast<unsigned>(pair.yvar);
  return hash ^ (hash >> 17);
}

void R_ReferenceIndex::add(const R_XYVar& pair) { pairs.push_back(pairOf(pair)); }

// The references sorted by pair, file order kept within a pair, then one
// hash slot per pair; at most half of the slots are used.
void R_ReferenceIndex::finish() {
  for (int i = 0; i < static_cast<int>(pairs.size()); ++i) indices.push_back(i);
  auto byPair = [this](int a, int b) {
    const Pair &x = pairs[static_cast<size_t>(a)], &y = pairs[static_cast<size_t>(b)];
    if (x.avar != y.avar) return x.avar < y.avar;
    if (x.xvar != y.xvar) return x.xvar < y.xvar;
    return x.yvar < y.yvar;
  };
  std::stable_sort(indices.begin(), indices.end(), byPair);
  size_t slots = 4;
  while (slots < 2 * indices.size()) slots *= 2;
  groups.assign(slots, Group{Pair{0, 0, 0}, 0, 0});
  for (size_t at = 0; at < indices.size();) {
    const Pair& pair = pairs[static_cast<size_t>(indices[at])];
    size_t end = at;
    while (end < indices.size() && pairs[static_cast<size_t>(indices[end])] == pair) ++end;
    size_t slot = hashOf(pair) & (slots - 1);
    while (groups[slot].end != 0) slot = (slot + 1) & (slots - 1);
    groups[slot] = Group{pair, static_cast<int>(at), static_cast<int>(end)};
    at = end;
  }
  pairs.clear();
}

int R_ReferenceIndex::findGroup(const Pair& pair) const {
  if (groups.empty()) return -1;
  size_t mask = groups.size() - 1;
  for (size_t slot = hashOf(pair) & mask; groups[slot].end != 0; slot = (slot + 1) & mask)
    if (groups[slot].pair == pair) return static_cast<int>(slot);
  return -1;
}

void R_ReferenceIndex::find(const R_XYVar& pair, const int** begin, const int** end) const {
  int group = findGroup(pairOf(pair));
  const int* first = indices.data();
  *begin = *end = first;
  if (group < 0) return;
  *begin = first + groups[static_cast<size_t>(group)].begin;
  *end = first + groups[static_cast<size_t>(group)].end;
}
