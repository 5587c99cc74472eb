#include "tools/auxtool/csvline.h"

#include <cstdio>
#include <cstring>

#include "core/r_number.h"

void CsvLine::startField() {
  if (fields++ > 0) line += separator;
}

void CsvLine::addText(const char* text) {
  startField();
  bool quote = false;
  for (const char* p = text; *p; ++p) {
    if (*p == separator || *p == '"' || *p == '\n' || *p == '\r') quote = true;
  }
  if (!quote) {
    line += text;
    return;
  }
  line += '"';
  for (const char* p = text; *p; ++p) {
    if (*p == '"') line += '"';
    line += *p;
  }
  line += '"';
}

void CsvLine::addNumber(const R_Number& number) {
  startField();
  if (!number.isDefined()) return;
  char text[64];
  snprintf(text, sizeof text, "%.9g", number.getValue());
  line += text;
}

void CsvLine::addInteger(int value) {
  startField();
  line += std::to_string(value);
}

void CsvLine::addEmpty() { startField(); }

std::string CsvLine::take() {
  std::string done;
  done.swap(line);
  done += '\n';
  fields = 0;
  return done;
}
