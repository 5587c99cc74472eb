#include "page/r_a_encodeurl.h"

#include <cassert>
#include <cstring>

namespace {

// Copies at most `limit` bytes of `text` and terminates.
void copyCut(char* target, const char* text, int limit) {
  int length = 0;
  if (text != nullptr) {
    while (length < limit && text[length] != 0) {
      target[length] = text[length];
      length++;
    }
  }
  target[length] = 0;
}

}  // namespace

R_A_EncodeURL::R_A_EncodeURL(const char* text) : resultLength(0) {
  copyCut(pattern, text, maxText);
  for (char* param : params) param[0] = 0;
  expand();
}

bool R_A_EncodeURL::isUsed(int index) const {
  assert(index >= 0 && index < R_A_EncodeURLParamCount);
  const char place[] = {'$', static_cast<char>('0' + index), 0};
  return strstr(pattern, place) != nullptr;
}

const char* R_A_EncodeURL::getResult() {
  expand();
  return result;
}

void R_A_EncodeURL::setParam(int index, const char* text) {
  assert(index >= 0 && index < R_A_EncodeURLParamCount);
  copyCut(params[index], text, maxParam);
}

void R_A_EncodeURL::expand() {
  resultLength = 0;
  for (const char* cursor = pattern; *cursor != 0; cursor++) {
    if (*cursor != '$') {
      const char byte[] = {*cursor, 0};
      put(byte);
    } else if (cursor[1] == '$') {
      put("$");
      cursor++;
    } else if (cursor[1] >= '0' && cursor[1] < '0' + R_A_EncodeURLParamCount) {
      put(params[cursor[1] - '0']);
      cursor++;
    }
  }
  result[resultLength] = 0;
}

void R_A_EncodeURL::put(const char* text) {
  while (*text != 0 && resultLength < maxText) result[resultLength++] = *text++;
}
