#include "core/r_integer.h"

#include <cassert>
#include <cstdio>
#include <cstdlib>

#include "core/r_inputstream.h"
#include "core/r_outputstream.h"
#include "core/r_typecodes.h"

bool R_Integer::setFromText(const char* text) {
  value = text ? static_cast<int>(strtol(text, nullptr, 10)) : 0;
  return true;
}

void R_Integer::toText(char* buffer) const { snprintf(buffer, 64, "%ld", static_cast<long>(value)); }

void R_Integer::load(R_InputStream& stream, bool* ok) {
  assert(ok);
  if (!*ok) return;
  if (!stream.checkType(R_TypeInteger)) {
    *ok = false;
    value = 0;
    return;
  }
  value = stream.readInt32();
  if (!stream.isOK()) {
    *ok = false;
    value = 0;
  }
}

void R_Integer::save(R_OutputStream& stream) const {
  stream.put(R_TypeInteger);
  stream.writeInt32(value);
}
