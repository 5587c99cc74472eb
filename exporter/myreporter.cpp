#include "exporter/myreporter.h"

#include <cstring>

MyReporter::MyReporter() : length(0) { text[0] = 0; }

void MyReporter::report(const char* message) {
  size_t n = message ? strnlen(message, kPieceLimit) : 0;
  if (length + static_cast<int>(n) + 1 >= kCapacity) return;
  memcpy(text + length, message, n);
  length += static_cast<int>(n);
  text[length++] = '\n';
  text[length] = 0;
}
