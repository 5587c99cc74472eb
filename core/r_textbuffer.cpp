#include "core/r_textbuffer.h"

#include <cstdlib>

R_TextBuffer::~R_TextBuffer() { free(bytes); }

bool R_TextBuffer::reserve(size_t total) {
  if (total <= room) return true;
  void* larger = realloc(bytes, total);
  if (!larger) return false;
  bytes = static_cast<char*>(larger);
  room = total;
  return true;
}

bool R_TextBuffer::grow(size_t more) {
  if (more > static_cast<size_t>(-1) / 2 - count) return false;
  size_t wanted = count + more;
  size_t doubled = room > 0 ? room : 256;
  while (doubled < wanted) doubled *= 2;
  return reserve(doubled);
}
