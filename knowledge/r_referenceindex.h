// The references of a knowledge file grouped by their variables: for a
// variable pair, the indices of the references that have it, in file
// order. Formulas look a reference up at every point of every proband, and
// only those of the same variables can fit; the groups are found through a
// hash of the pair, without comparing with the other references. Built
// once when the file is loaded; plain value.
#ifndef KNOWLEDGE_R_REFERENCEINDEX_H
#define KNOWLEDGE_R_REFERENCEINDEX_H

#include <cstddef>
#include <vector>

class R_XYVar;

class R_ReferenceIndex {
 public:
  // Empty: no pair has references.
  R_ReferenceIndex() {}

  // Adds the next reference of the file, which has `pair`. References must
  // be added in file order, the first with index 0.
  void add(const R_XYVar& pair);
  // Makes the groups; add() is not called afterwards.
  void finish();

  // The references of `pair` are getReference(*begin) up to *end, in file
  // order; none when *begin == *end.
  void find(const R_XYVar& pair, const int** begin, const int** end) const;

 private:
  struct Pair {
    int avar, xvar, yvar;
    bool operator==(const Pair& other) const { return avar == other.avar && xvar == other.xvar && yvar == other.yvar; }
  };
  // One group: its pair and where its indices stand in `indices`.
  struct Group {
    Pair pair;
    int begin, end;
  };

  static Pair pairOf(const R_XYVar& xyvar);
  static size_t hashOf(const Pair& pair);
  int findGroup(const Pair& pair) const;

  std::vector<Pair> pairs;    // of each reference, by index, until finish()
  std::vector<int> indices;   // the references, group after group
  std::vector<Group> groups;  // open-addressed by hashOf; end == 0 for an empty slot
};

#endif
