#include "document/r_texttranslator.h"

#include <cstdio>
#include <cstring>

#include "core/r_string.h"
#include "knowledge/r_filestatistics.h"
#include "xml/r_xmlerrorreporter.h"
#include "xml/r_xmlparser.h"

namespace {

// Room the stored form may need beyond the source's length.
const size_t kSlack = 32;

// A byte that names an element: what follows '<' or "</" in a tag.
bool isNameByte(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '-' ||
         c == '.';
}

}  // namespace

R_TextTranslator::R_TextTranslator(const char* text, const R_FileStatistics& statistics_in,
                                   R_XMLErrorReporter* reporter_in)
    : statistics(statistics_in),
      reporter(reporter_in),
      length(strlen(text)),
      written(0),
      ok(true),
      bold(false),
      italics(false) {
  result.assign(length + kSlack, 0);
  translate(text);
}

void R_TextTranslator::getResult(R_String& out) const {
  if (ok) out.set(result.data());
}

void R_TextTranslator::translate(const char* text) {
  bool in_tag = false;
  for (size_t s = 0; s < length; ++s) {
    char c = text[s] == '\\' ? '/' : text[s];
    if (in_tag) {
      tag.push_back(c);
      if (c != '>') continue;
      in_tag = false;
      processTag();
    } else if (c == '<') {
      in_tag = true;
      tag.assign(1, c);
    } else {
      emit(c);
    }
  }
  if (written > length) {
    fail("text length error", "p");
  } else if (bold || italics || in_tag) {
    fail("unfinished tag in text", "p");
  } else {
    finish();
  }
}

// The result is terminated and normalised where it stands.
void R_TextTranslator::finish() {
  result[written] = 0;
  R_String normalised;
  normalised.setNormalized(result.data());
  memcpy(result.data(), normalised.get(), static_cast<size_t>(normalised.getLength()) + 1);
  if (normalised.isEmpty()) fail("no text defined", "p");
}

void R_TextTranslator::processTag() {
  tag.push_back(0);
  R_String normalised;
  normalised.setNormalized(tag.data());
  const char* text = normalised.get();
  element.assign(strlen(text) + 1, 0);
  switch (R_XMLParameters::checkTag(text)) {
    case R_XMLParameters::elementBegin: beginTag(text); break;
    case R_XMLParameters::elementEnd: endTag(text); break;
    case R_XMLParameters::elementStandalone: standaloneTag(text); break;
    case R_XMLParameters::elementSkipped: break;
    case R_XMLParameters::elementUnknown: {
      // No name was read; the bytes after '<' or "</" stand for it.
      const char* p = text + (text[1] == '/' ? 2 : 1);
      size_t n = 0;
      while (p[n] && isNameByte(p[n])) ++n;
      memcpy(element.data(), p, n);
      fail("wrong standalone element", element.data());
      break;
    }
  }
}

// Bold and italics open only while neither is open: they never nest.
void R_TextTranslator::beginTag(const char* text) {
  parameters.beginElement(text, element.data());
  const char* name = element.data();
  bool plain = !bold && !italics;
  if (plain && strcmp(name, "b") == 0) {
    bold = true;
    emit('\\');
    emit('b');
  } else if (plain && strcmp(name, "i") == 0) {
    italics = true;
    emit('\\');
    emit('i');
  } else {
    fail("unknown begin element", name);
  }
}

void R_TextTranslator::endTag(const char* text) {
  bool struct_ok = false;
  parameters.endElement(text, element.data(), &struct_ok, true);
  const char* name = element.data();
  if (!struct_ok) {
    fail("wrong structure", name, true);
  } else if (bold && !italics && strcmp(name, "b") == 0) {
    bold = false;
    emit('\\');
    emit('c');
  } else if (italics && !bold && strcmp(name, "i") == 0) {
    italics = false;
    emit('\\');
    emit('j');
  } else {
    fail("unknown end element", name, true);
  }
}

void R_TextTranslator::standaloneTag(const char* text) {
  parameters.standaloneElement(text, element.data());
  const char* name = element.data();
  const char* var = parameters.getParameter("var");
  const char* target = parameters.getParameter("target");
  if (strcmp(name, "value") == 0 && var && statistics.getVarIndex(var) >= 0) {
    emitNamed('V', var);
  } else if (strcmp(name, "link") == 0 && target) {
    emitNamed('L', target);
  } else if (strcmp(name, "external") == 0 && target) {
    emitNamed('E', target);
  } else {
    fail("wrong standalone element", name);
  }
  parameters.popElement();
}

void R_TextTranslator::emitNamed(char code, const char* name) {
  emit('\\');
  emit(code);
  for (const char* p = name; *p && written < length; ++p) emit(*p);
  emit('\\');
}

// Bytes beyond the buffer are counted but not stored; the count then tells
// the fault.
void R_TextTranslator::emit(char c) {
  if (written + 1 < result.size()) result[written] = c;
  ++written;
}

void R_TextTranslator::fail(const char* message, const char* name, bool end) {
  ok = false;
  if (!reporter) return;
  // A message is cut to the length every reporter of the system takes; a
  // tag name may be as long as a whole tag.
  char line[R_XMLParser::longestMessage + 1];
  snprintf(line, sizeof line, "error %s processing element <%s%s>", message, end ? "/" : "", name);
  reporter->report(line);
}
