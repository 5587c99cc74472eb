#include "page/r_a_stylelist.h"

#include <cassert>
#include <cstdlib>

#include "core/r_ascii.h"
#include "page/r_a_setupreader.h"

R_A_StyleList::R_A_StyleList(const char* path) {
  R_A_SetupReader reader(path);
  R_String pending_min;
  R_String pending_max;
  while (reader.next()) {
    if (R_stricmp(reader.getName(), "min-size") == 0) {
      pending_min = reader.getValue();
    } else if (R_stricmp(reader.getName(), "max-size") == 0) {
      pending_max = reader.getValue();
    } else {
      entries.push_back(Entry{reader.getName(), reader.getValue(), pending_min, pending_max});
      pending_min.clear();
      pending_max.clear();
    }
  }
}

const char* R_A_StyleList::getName(int i) const {
  assert(i >= 0 && i < getCount());
  return entries[i].name.get();
}

const char* R_A_StyleList::getValue(int i) const {
  assert(i >= 0 && i < getCount());
  return entries[i].value.get();
}

// Two entries are taken as the small and the large style of a front end
// that never wrote limits for them; their order puts the large one first.
int R_A_StyleList::find(int size) const {
  if (getCount() == 2) return size < 1000 ? 1 : 0;
  for (int i = 0; i < getCount(); i++) {
    if (fits(entries[i], size)) return i;
  }
  return 0;
}

bool R_A_StyleList::fits(const Entry& entry, int size) const {
  if (!entry.min_size.isEmpty() && atoi(entry.min_size.get()) > size) return false;
  if (!entry.max_size.isEmpty() && atoi(entry.max_size.get()) < size) return false;
  return true;
}
