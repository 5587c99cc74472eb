#include "core/r_outputstream.h"

#include <cstring>

void R_OutputStream::writeBytes(const unsigned char* buffer, int count) {
  for (int i = 0; i < count; ++i) put(buffer[i]);
}

// The fixed-size writers hand their bytes over in one call, so that a
// buffered stream copies them at once instead of taking eight calls of put().
void R_OutputStream::writeDouble(double x) {
  unsigned long long bits;
  memcpy(&bits, &x, sizeof bits);
  unsigned char bytes[8];
  for (int i = 0; i < 8; ++i) bytes[i] = static_cast<unsigned char>((bits >> (8 * i)) & 0xFF);
  writeBytes(bytes, 8);
}

void R_OutputStream::writeInt32(int x) {
  unsigned int bits = static_cast<unsigned int>(x);
  unsigned char bytes[4];
  for (int i = 0; i < 4; ++i) bytes[i] = static_cast<unsigned char>((bits >> (8 * i)) & 0xFF);
  writeBytes(bytes, 4);
}

void R_OutputStream::writeWord(int x) {
  const unsigned char bytes[2] = {static_cast<unsigned char>(x & 0xFF), static_cast<unsigned char>((x >> 8) & 0xFF)};
  writeBytes(bytes, 2);
}
