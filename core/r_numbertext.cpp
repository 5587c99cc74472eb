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

// The decimal exponent of `a` (1e-4 <= a < 1e15, so a normal double) from
// its binary exponent: off by at most one, which the caller corrects.
int estimateExponent(double a) {
  uint64_t bits;
  memcpy(&bits, &a, sizeof bits);
  int binary = static_cast<int>((bits >> 52) & 0x7FF) - 1023;
  return static_cast<int>(floor(binary * 0.30102999566398114));
}

// Digits that the fast road writes at most: the scaled value then stays
// below 1e9, where one rounding moves it by far less than kTieMargin.
const int kLongestFastPrecision = 9;
const double kTieMargin = 1e-6;

// a * 10^(digits - 1 - e), with one rounding: the leading digits before the
// point.
double scaleToDigits(double a, int e, int digits) {
  int shift = digits - 1 - e;
  return shift >= 0 ? a * kExactPowers[shift] : a / kExactPowers[-shift];
}

// The `digits` significant digits of `a` rounded to nearest, and the
// decimal exponent X of the first one; false where the rounding is too close
// to a tie to be decided here.
bool leadingDigits(double a, int digits, long* value, int* exponent) {
  double low = kExactPowers[digits - 1], high = kExactPowers[digits];
  int e = estimateExponent(a);
  double scaled = scaleToDigits(a, e, digits);
  if (scaled < low - 0.5) scaled = scaleToDigits(a, --e, digits);
  if (scaled >= high) scaled = scaleToDigits(a, ++e, digits);
  double whole = floor(scaled);
  if (fabs(scaled - whole - 0.5) < kTieMargin) return false;
  long r = static_cast<long>(whole) + (scaled - whole > 0.5 ? 1 : 0);
  if (r == static_cast<long>(high)) {
    r = static_cast<long>(low);
    ++e;
  }
  if (r < static_cast<long>(low) || r >= static_cast<long>(high)) return false;
  *value = r;
  *exponent = e;
  return true;
}

// Writes `count` digits, or `count` zeros when `digits` is null.
char* putDigits(char* p, const char* digits, int count) {
  for (int i = 0; i < count; ++i) *p++ = digits ? digits[i] : '0';
  return p;
}

// The digits d[0..last] with the first at the decimal exponent `exponent`,
// -4 <= exponent < number of digits, in fixed notation; "%g" keeps no
// trailing zeros in the fraction, and no point without a fraction.
char* writeFixed(char* p, const char* d, int last, int exponent) {
  if (exponent < 0) {
    *p++ = '0';
    *p++ = '.';
    p = putDigits(p, nullptr, -exponent - 1);
    return putDigits(p, d, last + 1);
  }
  p = putDigits(p, d, exponent + 1);
  if (last <= exponent) return p;
  *p++ = '.';
  return putDigits(p, d + exponent + 1, last - exponent);
}

// Only exponents from 1 to 15 come here.
char* writeExponential(char* p, const char* d, int last, int exponent) {
  *p++ = d[0];
  if (last > 0) {
    *p++ = '.';
    p = putDigits(p, d + 1, last);
  }
  *p++ = 'e';
  *p++ = '+';
  *p++ = static_cast<char>('0' + exponent / 10);
  *p++ = static_cast<char>('0' + exponent % 10);
  return p;
}

int formatWithLibrary(double value, int precision, char* buffer) {
  return snprintf(buffer, static_cast<size_t>(R_numberTextSize), "%.*g", precision, value);
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

int R_formatG(double value, char* buffer) { return R_formatG(value, 6, buffer); }

int R_formatG(double value, int precision, char* buffer) {
  double a = fabs(value);
  long digits = 0;
  int exponent = 0;
  if (precision > kLongestFastPrecision || !(a >= 1e-4 && a < 1e15) ||
      !leadingDigits(a, precision, &digits, &exponent))
    return formatWithLibrary(value, precision, buffer);
  char d[kLongestFastPrecision];
  for (int i = precision - 1; i >= 0; --i, digits /= 10) d[i] = static_cast<char>('0' + digits % 10);
  int last = precision - 1;
  while (last > 0 && d[last] == '0') --last;
  char* p = buffer;
  if (value < 0) *p++ = '-';
  p = exponent < precision ? writeFixed(p, d, last, exponent) : writeExponential(p, d, last, exponent);
  *p = 0;
  return static_cast<int>(p - buffer);
}

int R_formatInt(int value, char* buffer) {
  char digits[16];
  char* p = digits + sizeof digits;
  unsigned magnitude = value < 0 ? 0u - static_cast<unsigned>(value) : static_cast<unsigned>(value);
  do {
    *--p = static_cast<char>('0' + magnitude % 10);
    magnitude /= 10;
  } while (magnitude);
  if (value < 0) *--p = '-';
  int length = static_cast<int>(digits + sizeof digits - p);
  memcpy(buffer, p, static_cast<size_t>(length));
  buffer[length] = 0;
  return length;
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
