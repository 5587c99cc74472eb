// The places taken by the texts of one kind on a graph (the numbers of one
// axis, the labels of one block's reference lines), so that a new text that
// would lie on an earlier one is left out. Only the corners of a new text
// are tested: a text that wholly spans a smaller earlier one still passes.
// Holds at most `capacity` places; a text that finds no room left is still
// allowed, it just is not remembered. Not copyable.
#ifndef GRAPH_R_GRAPHTEXTMAP_H
#define GRAPH_R_GRAPHTEXTMAP_H

#include <vector>

class R_OutputInterface;

class R_GraphTextMap {
 public:
  // A capacity of 0 or below remembers nothing.
  explicit R_GraphTextMap(int capacity);
  R_GraphTextMap(const R_GraphTextMap&) = delete;
  R_GraphTextMap& operator=(const R_GraphTextMap&) = delete;

  // Whether `text`, measured in `font` and placed at x, y as drawText would
  // place it (horizontal alignment 0 left edge, 1 right edge, 2 centre;
  // vertical 0 top, 1 bottom, 2 centre), may be drawn: false when one of its
  // corners lies in a place taken before (left and top edges included, right
  // and bottom excluded); nothing is taken then. Otherwise its place is
  // taken while there is room, and the answer is true.
  bool add(int x, int y, const char* text, R_OutputInterface& output, int font, int horizontalAlign,
           int verticalAlign);

  int getCount() const { return static_cast<int>(boxes.size()); }

 private:
  struct Box {
    int x, y, width, height;
    bool contains(long long px, long long py) const;
  };

  std::vector<Box> boxes;  // grows up to capacity, so a damaged count costs nothing
  int capacity;
};

#endif
