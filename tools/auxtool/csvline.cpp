#include "tools/auxtool/csvline.h"

#include <cstdio>
#include <cstring>

#include "core/r_number.h"
#include "core/r_numbertext.h"

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
  char text[R_numberTextSize];
  line.append(text, static_cast<size_t>(R_formatG(number.getValue(), 9, text)));
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
