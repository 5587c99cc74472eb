#include "core/r_numbertext.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "core/r_ascii.h"

namespace {

// Powers of ten that doubles hold exactly (up to 10^22).
const double kExactPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                               1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
const int kLargestExactPower = 22;

// The decimal exponent of `a` (1e-4 <= a < 1e15) as far as comparisons with
// rounded powers of ten tell; the caller corrects it by one where needed.
int estimateExponent(double a) {
  static const double kBounds[] = {1e-3, 1e-2, 1e-1, 1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,
                                   1e7,  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  int e = -4;
  for (double bound : kBounds) {
    if (a < bound) break;
    ++e;
  }
  return e;
}

// a * 10^(5 - e), with one rounding: the six leading digits before the point.
double scaleToSixDigits(double a, int e) {
  return e <= 5 ? a * kExactPowers[5 - e] : a / kExactPowers[e - 5];
}

// The six significant digits of `a` rounded to nearest, and the decimal
// exponent X of the first one; false where the rounding is too close to a
// tie to be decided here.
bool sixDigits(double a, long* digits, int* exponent) {
  int e = estimateExponent(a);
  double scaled = scaleToSixDigits(a, e);
  if (scaled < 99999.5) scaled = scaleToSixDigits(a, --e);
  if (scaled >= 1000000.0) scaled = scaleToSixDigits(a, ++e);
  double whole = floor(scaled);
  // The scaled value is off the exact one by far less than 1e-9.
  if (fabs(scaled - whole - 0.5) < 1e-7) return false;
  long r = static_cast<long>(whole) + (scaled - whole > 0.5 ? 1 : 0);
  if (r == 1000000) {
    r = 100000;
    ++e;
  }
  if (r < 100000 || r > 999999) return false;
  *digits = r;
  *exponent = e;
  return true;
}

// "%g" drops trailing zeros of the fraction, and the point with them.
char* dropTrailingZeros(char* begin, char* end) {
  char* point = static_cast<char*>(memchr(begin, '.', static_cast<size_t>(end - begin)));
  if (!point) return end;
  while (end > point + 1 && end[-1] == '0') --end;
  return end == point + 1 ? point : end;
}

char* writeFixed(char* p, const char* d, int exponent) {
  if (exponent < 0) {
    *p++ = '0';
    *p++ = '.';
    for (int i = -1; i > exponent; --i) *p++ = '0';
    memcpy(p, d, 6);
    return p + 6;
  }
  memcpy(p, d, static_cast<size_t>(exponent) + 1);
  p += exponent + 1;
  if (exponent < 5) {
    *p++ = '.';
    memcpy(p, d + exponent + 1, static_cast<size_t>(5 - exponent));
    p += 5 - exponent;
  }
  return p;
}

char* writeExponential(char* p, const char* d, int exponent) {
  *p++ = d[0];
  *p++ = '.';
  memcpy(p, d + 1, 5);
  p = dropTrailingZeros(p - 2, p + 5);
  *p++ = 'e';
  *p++ = '+';  // only exponents from 6 to 15 come here
  *p++ = static_cast<char>('0' + exponent / 10);
  *p++ = static_cast<char>('0' + exponent % 10);
  return p;
}

int formatWithLibrary(double value, char* buffer) {
  return snprintf(buffer, static_cast<size_t>(R_numberTextSize), "%g", value);
}

// The digits of a decimal text [-+]digits[.digits] ending at a byte that
// atof would not read on; false for anything else (exponents, "0x", "inf",
// leading blanks, more digits than a 64-bit integer holds).
bool readPlainDecimal(const char* p, uint64_t* mantissa, int* fraction_digits, bool* negative) {
  *negative = *p == '-';
  if (*p == '-' || *p == '+') ++p;
  uint64_t m = 0;
  int digits = 0, fraction = 0;
  for (; R_isDigit(*p); ++p, ++digits) m = m * 10 + static_cast<uint64_t>(*p - '0');
  if (*p == '.') {
    for (++p; R_isDigit(*p); ++p, ++digits, ++fraction) m = m * 10 + static_cast<uint64_t>(*p - '0');
  }
  if (digits == 0 || digits > 19 || *p == 'e' || *p == 'E' || *p == 'x' || *p == 'X') return false;
  *mantissa = m;
  *fraction_digits = fraction;
  return true;
}

}  // namespace

int R_formatG(double value, char* buffer) {
  double a = fabs(value);
  long digits = 0;
  int exponent = 0;
  if (!(a >= 1e-4 && a < 1e15) || !sixDigits(a, &digits, &exponent)) return formatWithLibrary(value, buffer);
  char d[7];
  for (int i = 5; i >= 0; --i, digits /= 10) d[i] = static_cast<char>('0' + digits % 10);
  char* p = buffer;
  if (value < 0) *p++ = '-';
  if (exponent < 6) {
    char* begin = p;
    p = dropTrailingZeros(begin, writeFixed(p, d, exponent));
  } else {
    p = writeExponential(p, d, exponent);
  }
  *p = 0;
  return static_cast<int>(p - buffer);
}

// A mantissa below 2^53 and a power of ten up to 10^22 are both exact, and
// one division rounds their quotient correctly: the value strtod gives.
double R_atof(const char* text) {
  uint64_t mantissa = 0;
  int fraction_digits = 0;
  bool negative = false;
  if (!readPlainDecimal(text, &mantissa, &fraction_digits, &negative) || mantissa > (uint64_t(1) << 53) ||
      fraction_digits > kLargestExactPower)
    return atof(text);
  double value = static_cast<double>(mantissa) / kExactPowers[fraction_digits];
  return negative ? -value : value;
}
