#include "core/r_string.h"

#include <cassert>
#include <cstdlib>
#include <cstring>

#include "core/r_ascii.h"
#include "core/r_inputstream.h"
#include "core/r_outputstream.h"
#include "core/r_typecodes.h"

namespace {
// Stored texts up to this length are read through a buffer on the stack.
const int kShortText = 255;
}  // namespace

R_String::R_String(const R_String& other) : text(nullptr), length(0) { set(other.text); }

R_String::R_String(const char* source) : text(nullptr), length(0) { set(source); }

R_String::R_String(R_InputStream& stream, bool* ok) : text(nullptr), length(0) { load(stream, ok); }

R_String& R_String::operator=(const R_String& other) {
  if (this != &other) set(other.text);
  return *this;
}

R_String& R_String::operator=(const char* source) {
  if (source != text) set(source);
  return *this;
}

bool R_String::operator==(const R_String& other) const {
  if (length != other.length) return false;
  return length == 0 || memcmp(text, other.text, static_cast<size_t>(length)) == 0;
}

char R_String::charAt(int i) const {
  assert(i >= 0);
  return i < length ? text[i] : 0;
}

void R_String::setChar(int i, char c) {
  if (i >= 0 && i < length) text[i] = c;
}

void R_String::clear() {
  free(text);
  text = nullptr;
  length = 0;
}

void R_String::adopt(char* owned, int owned_length) {
  clear();
  if (owned_length == 0) {
    free(owned);
    return;
  }
  text = owned;
  length = owned_length;
}

bool R_String::set(const char* source, bool result_if_empty) {
  if (!source || !*source) {
    clear();
    return result_if_empty;
  }
  size_t n = strlen(source);
  char* copy = static_cast<char*>(malloc(n + 1));
  memcpy(copy, source, n + 1);
  adopt(copy, static_cast<int>(n));
  return true;
}

bool R_String::setNormalized(const char* source, bool result_if_empty) {
  if (!source || !*source) {
    clear();
    return result_if_empty;
  }
  size_t n = strlen(source);
  char* copy = static_cast<char*>(malloc(n + 1));
  memcpy(copy, source, n + 1);
  adopt(copy, R_normalizeWhitespace(copy));
  return length > 0 ? true : result_if_empty;
}

bool R_String::contains(const char* pattern) const {
  if (!text) return false;
  if (!pattern || !*pattern) return true;
  int p = 0;
  for (int i = 0; i < length; ++i) {
    if (R_toUpper(text[i]) == R_toUpper(pattern[p])) {
      if (pattern[++p] == 0) return true;
    } else {
      p = 0;
    }
  }
  return false;
}

void R_String::toLower() {
  for (int i = 0; i < length; ++i) text[i] = R_toLower(text[i]);
}

void R_String::toUpper() {
  for (int i = 0; i < length; ++i) text[i] = R_toUpper(text[i]);
}

void R_String::load(R_InputStream& stream, bool* ok) {
  assert(ok);
  clear();
  if (!*ok) return;
  if (!stream.checkType(R_TypeString)) {
    *ok = false;
    return;
  }
  int n = stream.readWord();
  if (!stream.isOK()) {
    *ok = false;
    return;
  }
  // Short texts, most of them empty, are read on the stack, so that only a
  // text that is kept costs an allocation.
  char small[kShortText + 1];
  char* bytes = n <= kShortText ? small : static_cast<char*>(malloc(static_cast<size_t>(n) + 1));
  stream.readBytes(reinterpret_cast<unsigned char*>(bytes), n);
  bytes[n] = 0;
  if (!stream.isOK()) {
    if (bytes != small) free(bytes);
    *ok = false;
    return;
  }
  // A stored NUL would cut the text; the length follows the terminator.
  if (bytes == small)
    set(small);
  else
    adopt(bytes, static_cast<int>(strlen(bytes)));
}

void R_String::save(R_OutputStream& stream) const {
  int n = length > 65535 ? 65535 : length;
  stream.put(R_TypeString);
  stream.writeWord(n);
  stream.writeBytes(reinterpret_cast<const unsigned char*>(get()), n);
}
