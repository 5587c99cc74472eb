#include "core/r_fileinputstream.h"

R_FileInputStream::R_FileInputStream(const char* path)
    : file(path ? fopen(path, "rb") : nullptr), block_length(0), block_position(0) {
  if (!file) failed = true;
}

R_FileInputStream::~R_FileInputStream() {
  if (file) fclose(file);
}

int R_FileInputStream::read() {
  if (block_position < block_length) return block[block_position++];
  return refill();
}

int R_FileInputStream::refill() {
  if (!file) {
    failed = true;
    return -1;
  }
  block_length = static_cast<int>(fread(block, 1, sizeof block, file));
  block_position = 0;
  if (block_length <= 0) {
    block_length = 0;
    failed = true;
    return -1;
  }
  return block[block_position++];
}
