// Maps a size (a window's width, say) to a named style, from a style list
// file in the format of the setup file. A line `min-size = n` or
// `max-size = n` (names in any case) sets a limit for the next entry; any
// other setting `name = value` is an entry, which takes the pending limits
// and clears them. An unreadable file gives an empty list. Copyable.
#ifndef PAGE_R_A_STYLELIST_H
#define PAGE_R_A_STYLELIST_H

#include <vector>

#include "core/r_string.h"

class R_A_StyleList {
 public:
  explicit R_A_StyleList(const char* path);

  int getCount() const { return static_cast<int>(entries.size()); }
  // Require: 0 <= i < getCount().
  const char* getName(int i) const;
  const char* getValue(int i) const;

  // The index of the entry for `size`. A list of exactly two entries is a
  // pair for small and large, split at 1000 whatever its limits say: 1
  // below 1000, else 0. Otherwise the first entry whose limits (each read
  // as an integer, an empty one holding no limit) hold `size`; 0 when none
  // does, also for an empty list.
  int find(int size) const;

 private:
  struct Entry {
    R_String name;
    R_String value;
    R_String min_size;
    R_String max_size;
  };
  bool fits(const Entry& entry, int size) const;

  std::vector<Entry> entries;
};

#endif
