#include "output/r_a_colorname.h"

#include <cassert>
#include <cstring>

#include "core/r_ascii.h"

namespace {

const R_A_ColorName kTable[] = {
#include "output/r_a_colorname_table.inc"
};
static_assert(sizeof kTable / sizeof kTable[0] == R_A_ColorName::_count,
              "the colour table and its count must agree");

// A byte that is no hexadecimal digit counts as 0, so "#gg0000" is black.
int hexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return 0;
}

int hexPair(const char* p) { return hexDigit(p[0]) * 16 + hexDigit(p[1]); }

}  // namespace

const R_A_ColorName& R_A_ColorName::get(int index) {
  assert(index >= 0 && index < _count);
  return kTable[index];
}

bool resolveColorName(const char* name, int* r, int* g, int* b) {
  assert(name != nullptr && r != nullptr && g != nullptr && b != nullptr);
  if (name[0] == '#') {
    const char* digits = name + 1;
    if (std::strlen(digits) < 6) return false;
    *r = hexPair(digits);
    *g = hexPair(digits + 2);
    *b = hexPair(digits + 4);
    return true;
  }
  // Table names are lower case, so the first byte rules out most entries
  // before a whole comparison.
  const char first = R_toLower(name[0]);
  for (const R_A_ColorName& entry : kTable) {
    if (entry.name[0] == first && R_stricmp(entry.name, name) == 0) {
      *r = entry.red;
      *g = entry.green;
      *b = entry.blue;
      return true;
    }
  }
  return false;
}
