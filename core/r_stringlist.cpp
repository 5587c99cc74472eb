#include "core/r_stringlist.h"

#include <cassert>
#include <cstdlib>
#include <cstring>

#include "core/r_ascii.h"

R_StringList::R_StringList(const char* text) : buffer(nullptr), offsets(nullptr), actual_substrings(0) {
  assert(text);
  size_t n = strlen(text);
  buffer = static_cast<char*>(malloc(n + 1));
  memcpy(buffer, text, n + 1);
  int most_words = 1;
  for (size_t i = 0; i < n; ++i) {
    if (R_isBlank(static_cast<unsigned char>(buffer[i]))) {
      buffer[i] = 0;
      ++most_words;
    }
  }
  offsets = static_cast<int*>(malloc(sizeof(int) * static_cast<size_t>(most_words)));
  for (size_t i = 0; i < n; ++i) {
    if (buffer[i] != 0 && (i == 0 || buffer[i - 1] == 0)) offsets[actual_substrings++] = static_cast<int>(i);
  }
}

R_StringList::~R_StringList() {
  free(buffer);
  free(offsets);
}

const char* R_StringList::get(int index) const {
  assert(index >= 0 && index < actual_substrings);
  return buffer + offsets[index];
}
