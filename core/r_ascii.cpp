#include "core/r_ascii.h"

int R_stricmp(const char* a, const char* b) {
  for (;; ++a, ++b) {
    unsigned char ca = static_cast<unsigned char>(R_toLower(*a));
    unsigned char cb = static_cast<unsigned char>(R_toLower(*b));
    if (ca != cb) return ca < cb ? -1 : 1;
    if (ca == 0) return 0;
  }
}

int R_normalizeWhitespace(char* text) {
  int out = 0;
  bool pending_blank = false;
  for (const char* in = text; *in; ++in) {
    if (R_isBlank(static_cast<unsigned char>(*in))) {
      pending_blank = out > 0;
      continue;
    }
    if (pending_blank) text[out++] = ' ';
    pending_blank = false;
    text[out++] = *in;
  }
  text[out] = 0;
  return out;
}
