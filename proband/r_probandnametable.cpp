#include "proband/r_probandnametable.h"

#include <cassert>
#include <cstdlib>

#include "core/r_inputstream.h"

R_ProbandNameTable::R_ProbandNameTable(R_InputStream& stream, bool* ok)
    : names(nullptr), count(0), capacity(0) {
  size.load(stream, ok);
  while (*ok && count < size.get()) {
    R_String* name = new R_String(stream, ok);
    if (!*ok || !append(name)) {
      delete name;
      *ok = false;
    }
  }
}

R_ProbandNameTable::~R_ProbandNameTable() {
  for (int i = 0; i < count; ++i) delete names[i];
  free(names);
}

const char* R_ProbandNameTable::getName(int index) const {
  assert(index >= 0 && index < count);
  return names[index]->get();
}

// Doubling keeps the growth linear in the names read.
bool R_ProbandNameTable::append(R_String* name) {
  if (count == capacity) {
    if (capacity > (1 << 29)) return false;
    int grown_capacity = capacity > 0 ? capacity * 2 : 16;
    void* grown = realloc(names, sizeof(R_String*) * static_cast<size_t>(grown_capacity));
    if (!grown) return false;
    names = static_cast<R_String**>(grown);
    capacity = grown_capacity;
  }
  names[count++] = name;
  return true;
}
