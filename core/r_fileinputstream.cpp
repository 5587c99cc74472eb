#include "core/r_fileinputstream.h"

R_FileInputStream::R_FileInputStream(const char* path) : file(path ? fopen(path, "rb") : nullptr) {
  if (!file) failed = true;
}

R_FileInputStream::~R_FileInputStream() {
  if (file) fclose(file);
}

int R_FileInputStream::read() { return refill(); }

// The next block becomes the window, and its first byte is taken.
int R_FileInputStream::refill() {
  if (!file) {
    failed = true;
    return -1;
  }
  size_t length = fread(block, 1, sizeof block, file);
  if (length == 0) {
    next = end = nullptr;
    failed = true;
    return -1;
  }
  next = block + 1;
  end = block + length;
  return block[0];
}
