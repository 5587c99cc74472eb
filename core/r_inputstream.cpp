#include "core/r_inputstream.h"

#include <cstring>

bool R_InputStream::checkType(int type) {
  if (failed) return false;
  return readByte() == type;
}

void R_InputStream::readBytes(unsigned char* buffer, int count) {
  if (!failed && count > 0 && end - next >= count) {
    memcpy(buffer, next, static_cast<size_t>(count));
    next += count;
    return;
  }
  for (int i = 0; i < count; ++i) {
    int c = readByte();
    if (c < 0) {
      failed = true;
      memset(buffer + i, 0, static_cast<size_t>(count - i));
      return;
    }
    buffer[i] = static_cast<unsigned char>(c);
  }
}

double R_InputStream::readDouble() {
  unsigned char bytes[8];
  readBytes(bytes, 8);
  if (failed) return 0.0;
  unsigned long long bits = 0;
  for (int i = 7; i >= 0; --i) bits = (bits << 8) | bytes[i];
  double value;
  memcpy(&value, &bits, sizeof value);
  return value;
}

int R_InputStream::readInt32() {
  unsigned char bytes[4];
  readBytes(bytes, 4);
  if (failed) return 0;
  unsigned int bits = 0;
  for (int i = 3; i >= 0; --i) bits = (bits << 8) | bytes[i];
  return static_cast<int>(bits);
}

int R_InputStream::readWord() {
  int low = readByte();
  int high = readByte();
  if (low < 0 || high < 0) {
    failed = true;
    return 0;
  }
  return low | (high << 8);
}
