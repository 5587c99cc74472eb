#include "graph/r_graphcontainer.h"

#include <algorithm>
#include <cassert>

#include "graph/r_graphblockdata.h"

R_GraphContainer::R_GraphContainer(int max_in) : max(max_in) {
  assert(max >= 1);
  blocks.reserve(static_cast<size_t>(max));
}

void R_GraphContainer::add(const R_GraphBlockData* block) {
  assert(block);
  if (getCount() < max) blocks.push_back(block);
}

const R_GraphBlockData& R_GraphContainer::getBlock(int index) const {
  assert(index >= 0 && index < getCount());
  return *blocks[index];
}

int R_GraphContainer::getRank(int rank) const {
  assert(rank >= 0 && rank < static_cast<int>(ranks.size()));
  return ranks[rank];
}

bool R_GraphContainer::prepare() {
  if (blocks.empty()) return false;
  ranks.resize(blocks.size());
  for (int i = 0; i < getCount(); ++i) ranks[i] = i;
  // A stable sort keeps blocks of equal priority in the order of definition.
  std::stable_sort(ranks.begin(), ranks.end(),
                   [this](int a, int b) { return blocks[a]->getPriority() > blocks[b]->getPriority(); });
  return true;
}
