// Output stream into a borrowed buffer of fixed size. Bytes beyond the size
// are counted but not stored, so getCount() tells how much room was needed.
#ifndef CORE_R_BUFFEROUTPUTSTREAM_H
#define CORE_R_BUFFEROUTPUTSTREAM_H

#include "core/r_outputstream.h"

class R_BufferOutputStream : public R_OutputStream {
 public:
  R_BufferOutputStream(unsigned char* bytes, int room) : buffer(bytes), size(room), count(0) {}

  void put(int byte) override {
    if (count < size) buffer[count] = static_cast<unsigned char>(byte);
    ++count;
  }
  int getCount() const { return count; }
  bool isOK() const { return count <= size; }

 private:
  unsigned char* buffer;
  int size;
  int count;
};

#endif
