#include "tools/auxtool/csvline.h"

#include <cmath>
#include <cstdio>
#include <cstring>

#include "core/r_number.h"
#include "core/r_numbertext.h"

void CsvLine::startField() {
  if (fields++ > 0) text.put(separator);
}

void CsvLine::addText(const char* field) {
  startField();
  bool quote = false;
  for (const char* p = field; *p; ++p) {
    if (*p == separator || *p == '"' || *p == '\n' || *p == '\r') quote = true;
  }
  if (!quote) {
    text.put(field);
    return;
  }
  text.put('"');
  for (const char* p = field; *p; ++p) {
    if (*p == '"') text.put('"');
    text.put(*p);
  }
  text.put('"');
}

void CsvLine::addNumber(const R_Number& number) {
  startField();
  // An infinity or a NaN (1e308*10, (-8)^(1/3)) is no value a reader of the
  // CSV could use: it is undefined, like any other such result.
  if (!number.isDefined() || !std::isfinite(number.getValue())) return;
  char digits[R_numberTextSize];
  text.put(digits, static_cast<size_t>(R_formatG(number.getValue(), 9, digits)));
}

void CsvLine::addInteger(int value) {
  startField();
  char digits[R_numberTextSize];
  text.put(digits, static_cast<size_t>(R_formatInt(value, digits)));
}

void CsvLine::addEmpty() { startField(); }

void CsvLine::endLine() {
  text.put('\n');
  fields = 0;
}

bool CsvLine::flush(FILE* file) {
  bool written = text.size() == 0 || fwrite(text.data(), 1, text.size(), file) == text.size();
  text.clear();
  return written;
}
