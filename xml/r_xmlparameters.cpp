#include "xml/r_xmlparameters.h"

#include <cstring>

#include "core/r_ascii.h"
#include "xml/r_xmlattributes.h"
#include "xml/r_xmlstack.h"

namespace {

bool isLetterAt(const char* p) { return R_isLetter(static_cast<unsigned char>(*p)); }

// Copies into `element` the name that starts at the first ASCII letter of
// `text`; answers the position behind the name and its length.
int copyName(const char* text, char* element, size_t* length) {
  const char* begin = text;
  while (*begin && !isLetterAt(begin)) ++begin;
  const char* end = begin;
  while (R_XMLAttributes::isNameChar(static_cast<unsigned char>(*end))) *element++ = *end++;
  *element = 0;
  *length = static_cast<size_t>(end - begin);
  return static_cast<int>(end - text);
}

}  // namespace

R_XMLParameters::R_XMLParameters() : attributes(new R_XMLAttributes), stack(new R_XMLStack), read_levels(0) {}

R_XMLParameters::~R_XMLParameters() {
  delete attributes;
  delete stack;
}

int R_XMLParameters::levelOf(const char* elem_name) const { return stack->find(elem_name); }

void R_XMLParameters::readWaiting() const {
  for (size_t i = 0; i < waiting_starts.size(); ++i) {
    const char* text = &waiting_text[waiting_starts[i]];
    int position = 0;
    while (attributes->parse(text, &position, read_levels + static_cast<int>(i))) {
    }
  }
  waiting_starts.clear();
  waiting_text.clear();
  read_levels = stack->getCount();
}

bool R_XMLParameters::isParameter(const char* param_name) const {
  return getParameter(param_name) != nullptr;
}

bool R_XMLParameters::isParameterInElement(const char* param_name, const char* elem_name) const {
  return getParameterInElement(param_name, elem_name) != nullptr;
}

bool R_XMLParameters::isParameterValue(const char* param_name, const char* value) const {
  readWaiting();
  return attributes->hasValue(param_name, -1, value);
}

bool R_XMLParameters::isParameterValueInElement(const char* param_name, const char* elem_name,
                                                const char* value) const {
  readWaiting();
  int level = levelOf(elem_name);
  return level >= 0 && attributes->hasValue(param_name, level, value);
}

const char* R_XMLParameters::getParameter(const char* param_name) const {
  readWaiting();
  return attributes->findValue(param_name, -1);
}

const char* R_XMLParameters::getParameterInElement(const char* param_name,
                                                   const char* elem_name) const {
  readWaiting();
  int level = levelOf(elem_name);
  return level >= 0 ? attributes->findValue(param_name, level) : nullptr;
}

R_XMLParameters::TagKind R_XMLParameters::checkTag(const char* text) {
  const char* close = strchr(text, '>');
  return close ? classify(text, close) : elementUnknown;
}

R_XMLParameters::TagKind R_XMLParameters::checkTag(const char* text, size_t length) {
  return length > 0 && text[length - 1] == '>' ? classify(text, text + length - 1) : elementUnknown;
}

// The first '<' must come at least two places before the first '>'.
R_XMLParameters::TagKind R_XMLParameters::classify(const char* text, const char* close) {
  const char* open = text;
  while (open < close && *open != '<') ++open;
  if (close - open < 2) return elementUnknown;
  char c = open[1];
  if (c == '!' || c == '?') return elementSkipped;
  if (c == '/' && isLetterAt(open + 2)) return elementEnd;
  if (!isLetterAt(open + 1)) return elementUnknown;
  return close[-1] == '/' ? elementStandalone : elementBegin;
}

void R_XMLParameters::beginElement(const char* text, char* element) {
  size_t length = 0;
  int position = copyName(text, element, &length);
  int level = stack->getCount();
  stack->push(element, length);
  if (stack->getCount() == level) {
    // Not pushed (no memory): the attributes go in at once, as they always did.
    readWaiting();
    while (attributes->parse(text, &position, level)) {
    }
    return;
  }
  const char* rest = text + position;
  waiting_starts.push_back(waiting_text.size());
  waiting_text.insert(waiting_text.end(), rest, rest + strlen(rest) + 1);
}

void R_XMLParameters::standaloneElement(const char* text, char* element) {
  beginElement(text, element);
}

void R_XMLParameters::endElement(const char* text, char* element, bool* struct_ok, bool pop) {
  // The name is taken also on an empty stack, so that a message about the
  // stray end tag can name it.
  size_t length = 0;
  copyName(text, element, &length);
  *struct_ok = stack->isNotEmpty() && strcmp(element, stack->top()) == 0;
  if (*struct_ok && pop) popElement();
}

void R_XMLParameters::popElement() {
  if (!stack->isNotEmpty()) return;
  int level = stack->getCount() - 1;
  if (level >= read_levels && !waiting_starts.empty()) {
    waiting_text.resize(waiting_starts.back());
    waiting_starts.pop_back();
  } else {
    read_levels = level;
  }
  attributes->removeElement(level);
  stack->pop();
}

void R_XMLParameters::clear() {
  attributes->removeElement(-1);
  stack->clear();
  waiting_text.clear();
  waiting_starts.clear();
  read_levels = 0;
}

bool R_XMLParameters::hasOpenElements() const { return stack->isNotEmpty(); }

size_t R_XMLParameters::getPathLength() const { return stack->getPathLength(); }

const char* R_XMLParameters::getPath(char separator, char prefix) {
  return stack->getPath(separator, prefix);
}
