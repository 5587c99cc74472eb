#include "proband/r_a_querytext.h"

#include <cassert>
#include <cstring>

#include "core/r_ascii.h"
#include "core/r_date.h"
#include "core/r_number.h"

R_A_QueryText::R_A_QueryText(char* text_buffer, int buffer_size)
    : buffer(text_buffer), size(buffer_size), length(0) {
  assert(buffer && size > 0);
  buffer[0] = 0;
}

bool R_A_QueryText::isSafe(unsigned char c) {
  return R_isAlnum(c) || (c != 0 && strchr("_-.!@#$*()[]{};/,", c) != nullptr);
}

void R_A_QueryText::put(char c) {
  if (length >= size - 1) return;
  buffer[length++] = c;
  buffer[length] = 0;
}

void R_A_QueryText::putText(const char* text) {
  for (; *text; ++text) put(*text);
}

int R_A_QueryText::encodeValueByte(unsigned char c, char out[3]) {
  static const char kHex[] = "0123456789ABCDEF";
  if (c == ' ') {
    out[0] = '+';
  } else if (isSafe(c)) {
    out[0] = static_cast<char>(c);
  } else {
    out[0] = '%';
    out[1] = kHex[c >> 4];
    out[2] = kHex[c & 15];
    return 3;
  }
  return 1;
}

// Stops three bytes before the end, so that a '%' triple is never cut.
void R_A_QueryText::putValue(const char* value) {
  for (; *value && length < size - 3; ++value) {
    char text[3];
    int count = encodeValueByte(static_cast<unsigned char>(*value), text);
    for (int i = 0; i < count; ++i) put(text[i]);
  }
}

void R_A_QueryText::setPage(const char* page) {
  putText(page);
  put('?');
}

void R_A_QueryText::add(const char* name, const char* value) {
  putText(name);
  put('=');
  putValue(value ? value : "");
  put('&');
}

void R_A_QueryText::addNumber(const char* name, const R_Number& value) {
  char text[64];
  value.toText(text);
  add(name, text);
}

void R_A_QueryText::addDate(const char* name, const R_Date& date) {
  char text[64];
  date.format(text, "%d.%m.%Y");
  add(name, text);
}
