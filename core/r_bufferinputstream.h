// Input stream over a borrowed memory buffer, which must outlive it.
#ifndef CORE_R_BUFFERINPUTSTREAM_H
#define CORE_R_BUFFERINPUTSTREAM_H

#include "core/r_inputstream.h"

class R_BufferInputStream : public R_InputStream {
 public:
  // The whole buffer is the stream's window. A negative count reads as 0.
  R_BufferInputStream(const unsigned char* bytes, int byte_count) {
    next = bytes;
    end = bytes + (byte_count > 0 ? byte_count : 0);
  }

 protected:
  // Only called once the window is used up: the end.
  int read() override {
    failed = true;
    return -1;
  }
};

#endif
