// A growable run of bytes in which output text is built: appending is an
// inline test and copy, and the room only grows, doubling, so a buffer that
// is cleared and filled again asks the heap nothing. When the heap refuses
// to grow it, the buffer keeps what it has and drops what does not fit, as
// writers drop what an output refuses. Not copyable.
#ifndef CORE_R_TEXTBUFFER_H
#define CORE_R_TEXTBUFFER_H

#include <cstddef>
#include <cstring>

class R_TextBuffer {
 public:
  R_TextBuffer() : bytes(nullptr), count(0), room(0) {}
  ~R_TextBuffer();
  R_TextBuffer(const R_TextBuffer&) = delete;
  R_TextBuffer& operator=(const R_TextBuffer&) = delete;

  void put(char c) {
    if (count < room || grow(1)) bytes[count++] = c;
  }
  void put(const char* text, size_t length) {
    if (length == 0) return;
    if (length <= room - count || grow(length)) {
      memcpy(bytes + count, text, length);
      count += length;
    }
  }
  // Requires: text != null.
  void put(const char* text) { put(text, strlen(text)); }

  // The bytes, without a terminator; null while nothing was ever put.
  const char* data() const { return bytes; }
  size_t size() const { return count; }
  void clear() { count = 0; }
  // Makes room for `total` bytes in all; false when the heap refused.
  bool reserve(size_t total);

 private:
  bool grow(size_t more);

  char* bytes;  // owned
  size_t count;
  size_t room;
};

#endif
