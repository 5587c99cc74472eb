// The blocks of one graph that apply to the proband at hand, in the order of
// definition, and their ranks: the block with the greatest priority comes
// first, blocks of equal priority keep their order. Blocks are addressed by
// their index here in every later stage. Borrows the blocks; lives on the
// stack of one graph's write. Not copyable.
#ifndef GRAPH_R_GRAPHCONTAINER_H
#define GRAPH_R_GRAPHCONTAINER_H

#include <vector>

class R_GraphBlockData;

class R_GraphContainer {
 public:
  // Requires: max >= 1.
  explicit R_GraphContainer(int max);
  R_GraphContainer(const R_GraphContainer&) = delete;
  R_GraphContainer& operator=(const R_GraphContainer&) = delete;

  // A block beyond the capacity is dropped without a word.
  // Requires: block != null.
  void add(const R_GraphBlockData* block);
  int getCount() const { return static_cast<int>(blocks.size()); }
  // Requires: 0 <= index < getCount().
  const R_GraphBlockData& getBlock(int index) const;
  // The index of the block with rank `rank`. Requires: prepare() succeeded,
  // 0 <= rank < getCount().
  int getRank(int rank) const;
  // Ranks the blocks; false when there are none.
  bool prepare();

 private:
  std::vector<const R_GraphBlockData*> blocks;  // borrowed
  std::vector<int> ranks;                       // ranks[i]: the index of the block with rank i
  int max;
};

#endif
