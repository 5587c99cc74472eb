// The report texts a page lists: the indices of the knowledge file's text
// blocks whose title is not empty, in file order. Working texts that are
// only inserted into others have no title and stay out. Built once from a
// loaded file; a file that is not loaded gives an empty list. Not copyable.
#ifndef PAGE_R_A_TEXTLIST_H
#define PAGE_R_A_TEXTLIST_H

#include <vector>

class R_File;

class R_A_TextList {
 public:
  explicit R_A_TextList(const R_File& file);
  R_A_TextList(const R_A_TextList&) = delete;
  R_A_TextList& operator=(const R_A_TextList&) = delete;

  int getCount() const { return static_cast<int>(table.size()); }
  // The text block index of entry `i`. Requires: 0 <= i < getCount().
  int get(int i) const { return table[i]; }

 private:
  std::vector<int> table;
};

#endif
