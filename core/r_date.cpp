#include "core/r_date.h"

#include <cassert>
#include <cmath>
#include <cstdio>
#include <string>

#include "core/r_ascii.h"
#include "core/r_inputstream.h"
#include "core/r_number.h"
#include "core/r_outputstream.h"
#include "core/r_typecodes.h"

namespace {

int daysInMonth(int month, int year) {
  static const int kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (month == 2 && year % 4 == 0) return 29;
  return kDays[month - 1];
}

// Skips non-digits; answers false at the end of the text.
bool skipToDigit(const char*& p) {
  while (*p && !R_isDigit(*p)) ++p;
  return *p != 0;
}

// One digit, or two when a second follows at once.
int readSmallField(const char*& p) {
  int value = *p++ - '0';
  if (R_isDigit(*p)) value = value * 10 + (*p++ - '0');
  return value;
}

}  // namespace

int R_Date::fixYear(int value) {
  if (value >= 0 && value <= 69) return value + 2000;
  if (value >= 70 && value <= 99) return value + 1900;
  if (value < 1900) return -1;
  return value;
}

bool R_Date::isDefined() const {
  if (month < 1 || month > 12 || year < 1900 || year > 2100) return false;
  return day >= 1 && day <= daysInMonth(month, year);
}

int R_Date::getDay() const {
  assert(isDefined());
  return day;
}

int R_Date::getMonth() const {
  assert(isDefined());
  return month;
}

int R_Date::getYear() const {
  assert(isDefined());
  return year;
}

int R_Date::getDayNumber() const {
  assert(isDefined());
  int m = month, y = year;
  if (m < 3) {
    m += 9;
    y -= 1;
  } else {
    m -= 3;
  }
  int c = y / 100;
  return (146097 * c) / 4 + (1461 * (y - 100 * c)) / 4 + (153 * m + 2) / 5 + day + 1721119;
}

void R_Date::setDay(int value) {
  assert(value >= 1 && value <= 31);
  day = value;
}

void R_Date::setMonth(int value) {
  assert(value >= 1 && value <= 12);
  month = value;
}

void R_Date::setYear(int value) {
  assert(value >= 0 && value <= 2100);
  year = fixYear(value);
}

bool R_Date::parse(const char* text) {
  setUndefined();
  if (!text) return false;
  const char* p = text;
  if (!skipToDigit(p)) return false;
  int d = readSmallField(p);
  if (!skipToDigit(p)) return false;
  int m = readSmallField(p);
  if (!skipToDigit(p)) return false;
  int y = 0, digits = 0;
  for (; R_isDigit(*p); ++p, ++digits) {
    // Long digit runs are refused below; stop growing before overflow.
    if (y < 100000) y = y * 10 + (*p - '0');
  }
  day = d;
  month = m;
  year = fixYear(y);
  if ((digits == 2 || digits == 4) && isDefined()) return true;
  setUndefined();
  return false;
}

bool R_Date::setFromText(const char* text) {
  if (!text) {
    setUndefined();
    return false;
  }
  std::string copy(text);
  R_normalizeWhitespace(&copy[0]);
  return parse(copy.c_str());
}

void R_Date::format(char* buffer, const char* fmt) const {
  assert(buffer && fmt);
  if (!isDefined()) {
    buffer[0] = 0;
    return;
  }
  char* out = buffer;
  for (const char* p = fmt; *p; ++p) {
    if (*p != '%') {
      *out++ = *p;
      continue;
    }
    ++p;
    if (*p == 0) break;
    switch (*p) {
      case 'D': out += sprintf(out, "%02d", day); break;
      case 'M': out += sprintf(out, "%02d", month); break;
      case 'Y': out += sprintf(out, "%04d", year); break;
      case 'd': out += sprintf(out, "%d", day); break;
      case 'm': out += sprintf(out, "%d", month); break;
      case 'y': out += sprintf(out, "%02d", year % 100); break;
      default: *out++ = *p; break;
    }
  }
  *out = 0;
}

void R_Date::getAgeFrom(R_Number& result, const R_Date& from) const {
  result.setUndefined();
  if (!isDefined() || !from.isDefined()) return;
  double a = (getDayNumber() - from.getDayNumber()) / 365.25;
  if (a < 0) return;
  result.set(floor(a * 1000 + 0.5) / 1000);
}

void R_Date::load(R_InputStream& stream, bool* ok) {
  assert(ok);
  if (!*ok) return;
  setUndefined();
  if (!stream.checkType(R_TypeDate)) {
    *ok = false;
    return;
  }
  int d = stream.readByte();
  int m = stream.readByte();
  int y = stream.readWord();
  if (!stream.isOK()) {
    *ok = false;
    return;
  }
  day = d;
  month = m;
  year = y;
  if (!isDefined()) setUndefined();
}

void R_Date::save(R_OutputStream& stream) const {
  stream.put(R_TypeDate);
  bool defined = isDefined();
  stream.put(defined ? day : 0);
  stream.put(defined ? month : 0);
  stream.writeWord(defined ? year : 0);
}
