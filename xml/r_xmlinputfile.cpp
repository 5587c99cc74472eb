#include "xml/r_xmlinputfile.h"

#include <cassert>
#include <cstdlib>

namespace {
const size_t kBlockSize = 65536;
}

R_XMLInputFile::R_XMLInputFile(const char* path)
    : file(nullptr), line(1), ended(false), block(nullptr), next(nullptr), end(nullptr) {
  assert(path != nullptr);
  if (!*path) return;
  block = static_cast<unsigned char*>(malloc(kBlockSize));
  // This platform has no text mode: "r" reads the bytes as they are.
  if (block) file = fopen(path, "r");
  next = end = block;
}

R_XMLInputFile::~R_XMLInputFile() {
  if (file) fclose(file);
  free(block);
}

bool R_XMLInputFile::refill() {
  size_t count = fread(block, 1, kBlockSize, file);
  next = block;
  end = block + count;
  return count > 0;
}
