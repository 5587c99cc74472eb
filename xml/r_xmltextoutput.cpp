#include "xml/r_xmltextoutput.h"

#include <cassert>
#include <cstdio>

#include "core/r_ascii.h"
#include "core/r_integer.h"
#include "core/r_number.h"
#include "core/r_string.h"

namespace {

// A blank at or after this column starts a new line.
const int kFoldColumn = 61;

struct Entity {
  char c;
  const char* text;
};
const Entity kEntities[] = {{'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}};

// The entity written for c, null for bytes written as they are.
const char* entityOf(char c) {
  for (const Entity& entity : kEntities) {
    if (entity.c == c) return entity.text;
  }
  return nullptr;
}

}  // namespace

// The text of `number`, counting it when the text reads back as another
// value: "%g" keeps six significant digits.
void R_XMLTextOutput::numberText(const R_Number& number, char* text) {
  number.toText(text);
  R_Number back;
  if (number.isDefined() && !(back.parse(text) && back.getValue() == number.getValue())) ++rounded;
}

void R_XMLTextOutput::openTag(const char* tag) {
  startLine(level);
  put('<');
  putEscaped(tag);
  ++level;
}

void R_XMLTextOutput::writeAttribute(const char* param, const char* value) {
  put(' ');
  putEscaped(param);
  put('=');
  put('"');
  putEscaped(value);
  put('"');
}

void R_XMLTextOutput::writeAttribute(const char* param, const R_Integer& value) {
  char text[64];
  value.toText(text);
  writeAttribute(param, text);
}

void R_XMLTextOutput::writeAttribute(const char* param, const R_Number& value) {
  char text[64];
  numberText(value, text);
  writeAttribute(param, text);
}

void R_XMLTextOutput::endOpenTag() {
  put('>');
  fresh = true;
}

void R_XMLTextOutput::endEmptyTag() {
  putPlain(" />");
  if (level > 0) --level;
  fresh = true;
}

void R_XMLTextOutput::closeTag(const char* tag) {
  if (level > 0) --level;
  startLine(level);
  putPlain("</");
  putEscaped(tag);
  put('>');
  fresh = true;
}

void R_XMLTextOutput::writeDirective(char type, const char* inside) {
  assert(type == '?' || type == '!');
  startLine(0);
  put('<');
  put(type);
  putEscaped(inside);
  if (type == '?') put(type);
  put('>');
  fresh = true;
}

void R_XMLTextOutput::writeText(const char* text) { putEscaped(text); }

void R_XMLTextOutput::writeRaw(const char* text) { putPlain(text); }

void R_XMLTextOutput::writeString(const R_String& string) { putEscaped(string.get()); }

void R_XMLTextOutput::writeInteger(const R_Integer& integer) {
  char text[64];
  integer.toText(text);
  putEscaped(text);
}

void R_XMLTextOutput::writeNumber(const R_Number& number) {
  char text[64];
  numberText(number, text);
  putEscaped(text);
}

void R_XMLTextOutput::putRaw(char c) { putchar(static_cast<unsigned char>(c)); }

void R_XMLTextOutput::startLine(int indentation) {
  if (!first) {
    newLine();
    indent(indentation);
  }
  first = false;
  column = 0;
  fresh = false;
}

void R_XMLTextOutput::put(char c) {
  if (fresh || (R_isBlank(static_cast<unsigned char>(c)) && column >= kFoldColumn)) {
    startLine(level + 1);
  }
  putRaw(c);
  ++column;
}

void R_XMLTextOutput::putPlain(const char* text) {
  for (; *text; ++text) put(*text);
}

void R_XMLTextOutput::putEscaped(const char* text) {
  for (; *text; ++text) {
    const char* entity = entityOf(*text);
    if (entity) {
      putPlain(entity);
    } else {
      put(*text);
    }
  }
}
