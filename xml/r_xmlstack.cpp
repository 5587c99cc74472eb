#include "xml/r_xmlstack.h"

#include <climits>
#include <cstdlib>
#include <cstring>

namespace {
const int kBaseLevels = 32;
const size_t kBaseBytes = 256;
}  // namespace

R_XMLStack::R_XMLStack()
    : names(nullptr),
      names_used(0),
      names_capacity(0),
      starts(nullptr),
      starts_capacity(0),
      count(0),
      path(nullptr),
      path_capacity(0) {}

R_XMLStack::~R_XMLStack() {
  free(names);
  free(starts);
  free(path);
}

int R_XMLStack::find(const char* item) const {
  for (int i = 0; i < count; ++i) {
    if (strcmp(names + starts[i], item) == 0) return i;
  }
  return -1;
}

const char* R_XMLStack::getPath(char separator, char prefix) {
  if (count == 0) return "";
  size_t offset = prefix ? 1 : 0;
  if (!reserve(&path, &path_capacity, names_used + offset)) return "";
  if (prefix) path[0] = prefix;
  memcpy(path + offset, names, names_used);
  // Every terminator but the last joins two names.
  char* end = path + offset + names_used - 1;
  for (char* p = path + offset; p < end; ++p) {
    if (*p == 0) *p = separator;
  }
  return path;
}

void R_XMLStack::push(const char* item) {
  if (item) push(item, strlen(item));
}

void R_XMLStack::push(const char* item, size_t length) {
  if (length == 0 || !reserveStarts() || !reserveNames(names_used + length + 1)) return;
  memcpy(names + names_used, item, length);
  names[names_used + length] = 0;
  starts[count++] = names_used;
  names_used += length + 1;
}

void R_XMLStack::pop() {
  if (count == 0) return;
  names_used = starts[--count];
}

void R_XMLStack::clear() {
  count = 0;
  names_used = 0;
}

bool R_XMLStack::reserveNames(size_t needed) {
  return reserve(&names, &names_capacity, needed);
}

bool R_XMLStack::reserveStarts() {
  if (count < starts_capacity) return true;
  if (starts_capacity > INT_MAX / 2 - kBaseLevels) return false;
  // Doubling keeps deep nesting linear.
  int capacity = 2 * starts_capacity + kBaseLevels;
  void* grown = realloc(starts, sizeof(size_t) * static_cast<size_t>(capacity));
  if (!grown) return false;
  starts = static_cast<size_t*>(grown);
  starts_capacity = capacity;
  return true;
}

bool R_XMLStack::reserve(char** text, size_t* capacity, size_t needed) {
  if (needed <= *capacity) return true;
  size_t grown_capacity = *capacity > 0 ? *capacity : kBaseBytes;
  while (grown_capacity < needed) grown_capacity *= 2;
  char* grown = static_cast<char*>(realloc(*text, grown_capacity));
  if (!grown) return false;
  *text = grown;
  *capacity = grown_capacity;
  return true;
}
