#include "core/r_number.h"

#include <cassert>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "core/r_ascii.h"
#include "core/r_inputstream.h"
#include "core/r_numbertext.h"
#include "core/r_outputstream.h"
#include "core/r_typecodes.h"

namespace {
// parse converts at most this many bytes.
const int kLongestNumberText = 64;
}  // namespace

int R_Number::getInt() const {
  assert(defined);
  // A cast of a double outside the int range is undefined behaviour, and
  // stored or computed values can be anything: saturate, and NaN gives 0.
  if (std::isnan(value)) return 0;
  if (value >= 2147483647.0) return INT_MAX;
  if (value <= -2147483648.0) return INT_MIN;
  return static_cast<int>(value);
}

bool R_Number::getBool() const {
  assert(defined);
  return value != 0.0;
}

bool R_Number::parse(const char* text) {
  assert(text);
  defined = false;
  char first = text[0];
  if (first == 0) return false;
  if (R_isDigit(first) || first == '-' || first == '.' || first == ',') {
    char copy[kLongestNumberText + 1];
    int n = 0;
    for (; n < kLongestNumberText && text[n]; ++n) copy[n] = text[n] == ',' ? '.' : text[n];
    copy[n] = 0;
    set(R_atof(copy));
    return true;
  }
  return first == '?';
}

bool R_Number::setFromText(const char* text) {
  if (!text) {
    defined = false;
    return false;
  }
  // parse reads no more than the first 64 bytes, so the normalised text is
  // made only that far, on the stack.
  char copy[kLongestNumberText + 1];
  int n = 0;
  bool pending_blank = false;
  for (const char* in = text; *in && n < kLongestNumberText; ++in) {
    if (R_isBlank(static_cast<unsigned char>(*in))) {
      pending_blank = n > 0;
      continue;
    }
    if (pending_blank && n < kLongestNumberText) copy[n++] = ' ';
    pending_blank = false;
    if (n < kLongestNumberText) copy[n++] = *in == ',' ? '.' : *in;
  }
  copy[n] = 0;
  return parse(copy);
}

void R_Number::round(double precision) {
  assert(defined && precision > 0);
  value = floor(value / precision + 0.5) * precision;
}

void R_Number::toText(char* buffer) const {
  if (defined)
    R_formatG(value, buffer);
  else
    strcpy(buffer, "?");
}

void R_Number::format(int decimals, char* buffer) const {
  if (!defined) {
    buffer[0] = 0;
    return;
  }
  if (decimals < 0) decimals = 0;
  if (decimals > 4) decimals = 4;
  snprintf(buffer, 64, "%.*f", decimals, value);
}

void R_Number::formatToPrecision(double precision, char* buffer) {
  if (!defined) {
    buffer[0] = 0;
    return;
  }
  double x = -log10(precision);
  int decimals = x > 0 ? static_cast<int>(ceil(x)) : 0;
  round(precision);
  format(decimals, buffer);
}

void R_Number::load(R_InputStream& stream, bool* ok) {
  assert(ok);
  defined = false;
  if (!*ok) return;
  if (!stream.checkType(R_TypeNumber)) {
    *ok = false;
    return;
  }
  // A stream that ends inside the value leaves *ok alone: the failure shows
  // at the next type byte. The number stays undefined rather than taking the
  // 0 that a failed stream reads.
  if (stream.readByte() <= 0) return;
  double x = stream.readDouble();
  if (stream.isOK()) set(x);
}

void R_Number::save(R_OutputStream& stream) const {
  stream.put(R_TypeNumber);
  stream.put(defined ? 1 : 0);
  if (defined) stream.writeDouble(value);
}
