#include "xml/r_xmlbuffer.h"

#include <cassert>
#include <cstdlib>
#include <cstring>

#include "core/r_ascii.h"

namespace {

// Blocks of buffers that went, kept for the next buffer of the same size.
// Loading a database builds two parsers per record, each with a buffer of
// 16 kB, and asking the heap for a block that large each time makes it
// tidy up all its small free pieces first; a kept block costs nothing. The
// system has one thread, so one shared store serves.
struct SpareBlocks {
  static const int capacity = 4;
  char* blocks[capacity];
  int count;
  size_t bytes;  // the size of the blocks kept
};
SpareBlocks spares = {{nullptr, nullptr, nullptr, nullptr}, 0, 0};

char* takeBlock(size_t bytes) {
  if (spares.count > 0 && spares.bytes == bytes) return spares.blocks[--spares.count];
  return static_cast<char*>(malloc(bytes));
}

void giveBlock(char* block, size_t bytes) {
  if (!block) return;
  if (spares.count == 0) spares.bytes = bytes;
  if (spares.count < SpareBlocks::capacity && spares.bytes == bytes)
    spares.blocks[spares.count++] = block;
  else
    free(block);
}

}  // namespace

R_XMLBuffer::R_XMLBuffer(int buffer_size)
    : text(takeBlock(static_cast<size_t>(buffer_size) + 2)),
      length(0),
      size(text ? buffer_size : 0),
      reading(false),
      overflow(false) {
  assert(buffer_size > 0);
  // Without memory every capture overflows and arrives empty.
  if (text) text[0] = 0;
}

R_XMLBuffer::~R_XMLBuffer() { giveBlock(text, static_cast<size_t>(size) + 2); }

const char* R_XMLBuffer::getText() const {
  assert(!reading);
  return text ? text : "";
}

void R_XMLBuffer::clear() {
  length = 0;
  if (text) text[0] = 0;
  reading = false;
  overflow = false;
}

void R_XMLBuffer::startReading() {
  length = 0;
  reading = true;
  overflow = false;
}

// What does not fit only marks the overflow: an overflowed capture ends
// empty, so the bytes that did fit do not matter.
void R_XMLBuffer::putRun(const unsigned char* bytes, int count) {
  if (!reading || overflow) return;
  if (count > size - length) {
    overflow = true;
    return;
  }
  memcpy(text + length, bytes, static_cast<size_t>(count));
  length += count;
}

void R_XMLBuffer::stopReading() {
  reading = false;
  if (overflow) length = 0;
  if (!text) return;
  text[length] = 0;
  for (int i = length - 1; i >= 0; --i) {
    if (text[i] == '<') {
      length = i;
      text[i] = 0;
      return;
    }
  }
}

void R_XMLBuffer::normalize() {
  assert(!reading);
  if (text) length = normalize(text);
}

int R_XMLBuffer::normalize(char* source) {
  assert(source != nullptr);
  return R_normalizeWhitespace(source);
}
