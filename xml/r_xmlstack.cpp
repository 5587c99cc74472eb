#include "xml/r_xmlstack.h"

#include <climits>
#include <cstdlib>
#include <cstring>

namespace {
const int kBaseSize = 32;
}

R_XMLStack::R_XMLStack()
    : field(kBaseSize), count(0), path_length(0), path(nullptr), path_capacity(0) {}

R_XMLStack::~R_XMLStack() {
  clear();
  free(path);
}

const char* R_XMLStack::top() const { return count > 0 ? field.get(count - 1) : ""; }

int R_XMLStack::find(const char* item) const {
  for (int i = 0; i < count; ++i) {
    if (strcmp(field.get(i), item) == 0) return i;
  }
  return -1;
}

const char* R_XMLStack::getPath(char separator, char prefix) {
  if (!reservePath(path_length + 2)) return "";
  char* out = path;
  if (count > 0 && prefix) *out++ = prefix;
  for (int i = 0; i < count; ++i) {
    if (i > 0) *out++ = separator;
    const char* name = field.get(i);
    size_t length = strlen(name);
    memcpy(out, name, length);
    out += length;
  }
  *out = 0;
  return path;
}

bool R_XMLStack::reservePath(size_t needed) {
  if (needed <= path_capacity) return true;
  size_t capacity = path_capacity > 0 ? path_capacity : 64;
  while (capacity < needed) capacity *= 2;
  char* grown = static_cast<char*>(realloc(path, capacity));
  if (!grown) return false;
  path = grown;
  path_capacity = capacity;
  return true;
}

void R_XMLStack::push(const char* item) {
  if (!item || !*item || !reserveLevel()) return;
  size_t length = strlen(item);
  char* copy = static_cast<char*>(malloc(length + 1));
  if (!copy) return;
  memcpy(copy, item, length + 1);
  field.put(count, copy);
  path_length += length + (count > 0 ? 1 : 0);
  ++count;
}

bool R_XMLStack::reserveLevel() {
  if (count < field.getSize()) return true;
  if (field.getSize() > INT_MAX / 2 - kBaseSize) return false;
  // Doubling keeps deep nesting linear; the container's own step would not.
  if (field.resize(2 * field.getSize() + kBaseSize)) return true;
  // The container has dropped its array with the names in it: start over
  // empty rather than read through it.
  count = 0;
  path_length = 0;
  return false;
}

void R_XMLStack::pop() {
  if (count == 0) return;
  --count;
  char* name = field.get(count);
  path_length -= strlen(name) + (count > 0 ? 1 : 0);
  free(name);
}

void R_XMLStack::clear() {
  while (count > 0) pop();
}
