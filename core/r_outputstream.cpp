#include "core/r_outputstream.h"

#include <cstring>

void R_OutputStream::writeBytes(const unsigned char* buffer, int count) {
  for (int i = 0; i < count; ++i) put(buffer[i]);
}

void R_OutputStream::writeDouble(double x) {
  unsigned long long bits;
  memcpy(&bits, &x, sizeof bits);
  for (int i = 0; i < 8; ++i) put(static_cast<int>((bits >> (8 * i)) & 0xFF));
}

void R_OutputStream::writeInt32(int x) {
  unsigned int bits = static_cast<unsigned int>(x);
  for (int i = 0; i < 4; ++i) put(static_cast<int>((bits >> (8 * i)) & 0xFF));
}

void R_OutputStream::writeWord(int x) {
  put(x & 0xFF);
  put((x >> 8) & 0xFF);
}
