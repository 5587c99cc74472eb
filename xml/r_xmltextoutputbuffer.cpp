#include "xml/r_xmltextoutputbuffer.h"

#include <cassert>

R_XMLTextOutputBuffer::R_XMLTextOutputBuffer(char* buffer, int buffer_size)
    : buf(buffer), maxsize(buffer_size), count(0), overflow(false) {
  assert(buf != nullptr && maxsize > 0);
  buf[0] = 0;
}

void R_XMLTextOutputBuffer::putRaw(char c) {
  if (count < maxsize - 1) {
    buf[count++] = c;
    buf[count] = 0;
  } else {
    overflow = true;
  }
}
