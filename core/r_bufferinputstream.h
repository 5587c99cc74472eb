// Input stream over a borrowed memory buffer, which must outlive it.
#ifndef CORE_R_BUFFERINPUTSTREAM_H
#define CORE_R_BUFFERINPUTSTREAM_H

#include "core/r_inputstream.h"

class R_BufferInputStream : public R_InputStream {
 public:
  R_BufferInputStream(const unsigned char* bytes, int byte_count)
      : buffer(bytes), size(byte_count), position(0) {}

 protected:
  int read() override {
    if (position >= size) {
      failed = true;
      return -1;
    }
    return buffer[position++];
  }

 private:
  const unsigned char* buffer;
  int size;
  int position;
};

#endif
