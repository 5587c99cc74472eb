#include "xml/r_xmlparser.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "xml/r_xmlbuffer.h"
#include "xml/r_xmlerrorreporter.h"
#include "xml/r_xmlinputfile.h"
#include "xml/r_xmlinputstring.h"
#include "xml/r_xmlrecipient.h"

namespace {

// Replaces the owned text `*target` by a copy of `source`.
void replaceCopy(char** target, const char* source) {
  size_t length = strlen(source);
  char* copy = static_cast<char*>(realloc(*target, length + 1));
  if (!copy) return;
  memcpy(copy, source, length + 1);
  *target = copy;
}

}  // namespace

R_XMLParser::R_XMLParser(int capacity, R_XMLErrorReporter* error_reporter)
    : reporter(error_reporter),
      buffer(new R_XMLBuffer(capacity)),
      block_name(nullptr),
      block_code(0),
      failed(false),
      line(0),
      longest_entry(0) {
  element[0] = 0;
}

R_XMLParser::~R_XMLParser() {
  delete buffer;
  free(block_name);
}

bool R_XMLParser::parseFile(const char* file, R_XMLRecipient* recipient) {
  start(*recipient);
  R_XMLInputFile input(file);
  readAll(input, *recipient);
  return !failed;
}

bool R_XMLParser::parseString(const char* text, R_XMLRecipient* recipient) {
  start(*recipient);
  R_XMLInputString input(text);
  readAll(input, *recipient);
  return !failed;
}

void R_XMLParser::start(const R_XMLRecipient& recipient) {
  failed = false;
  line = 0;
  // A path longer than every entry cannot match one, so lookups of deeper
  // paths skip building the path at all.
  longest_entry = 0;
  for (int i = 0; i < recipient.getTagCount(); ++i) {
    const char* entry = recipient.getTag(i);
    size_t length = entry ? strlen(entry) : 0;
    if (length > longest_entry) longest_entry = length;
  }
}

// Instantiated for each input kind, so that the calls made for every byte
// bind statically and inline. `capturing` mirrors buffer->isReading(),
// which only the processing of a tag can change.
template <class Input>
void R_XMLParser::readAll(Input& input, R_XMLRecipient& recipient) {
  buffer->clear();
  parameters.clear();
  if (!input.canRead()) {
    fail("no input data");
    return;
  }
  char tag[longestTag + 1];
  int length = 0;
  bool in_tag = false;
  bool capturing = false;
  while (input.canRead()) {
    line = input.getLine();
    int c = input.getChar();
    // Every byte goes to the capture, tags too: that is how a captured
    // element keeps its nested tags.
    if (capturing) buffer->put(c);
    if (in_tag) {
      if (length >= longestTag) return fail("too long tag");
      tag[length++] = static_cast<char>(c);
    }
    if (c == '<') {
      if (in_tag) return fail("unexpected opening char");
      tag[0] = '<';
      length = 1;
      in_tag = true;
    } else if (c == '>') {
      if (!in_tag) return fail("unexpected closing char");
      tag[length] = 0;
      in_tag = false;
      if (!processTag(tag, recipient)) return;
      capturing = buffer->isReading();
    }
  }
  if (in_tag) return fail("unfinished tag");
  if (parameters.hasOpenElements()) fail("unfinished structure (missing end tags)");
}

bool R_XMLParser::processTag(const char* tag, R_XMLRecipient& recipient) {
  switch (R_XMLParameters::checkTag(tag)) {
    case R_XMLParameters::elementBegin:
      beginTag(tag, recipient);
      return true;
    case R_XMLParameters::elementEnd:
      return endTag(tag, recipient);
    case R_XMLParameters::elementStandalone:
      standaloneTag(tag, recipient);
      return true;
    case R_XMLParameters::elementSkipped:
      return true;
    case R_XMLParameters::elementUnknown:
      break;
  }
  failed = true;
  reportFormatted("wrong tag type [%s]%s", tag, "");
  return false;
}

void R_XMLParser::beginTag(const char* tag, R_XMLRecipient& recipient) {
  parameters.beginElement(tag, element);
  // Start tags nested in a capture are part of its text, not events.
  if (buffer->isReading()) return;
  int code = lookup(recipient, '<');
  if (code >= 0) deliver(recipient, code, "", "data error opening block <%s...>: %s");
  code = lookup(recipient, 0);
  if (code < 0) return;
  buffer->startReading();
  block_code = code;
  replaceCopy(&block_name, element);
}

bool R_XMLParser::endTag(const char* tag, R_XMLRecipient& recipient) {
  int code = lookup(recipient, '>');
  bool struct_ok = false;
  parameters.endElement(tag, element, &struct_ok, false);
  if (!struct_ok) {
    failed = true;
    reportFormatted("wrong structure: %s%s", element, "");
    return false;
  }
  if (block_name && block_name[0] == element[0] && strcmp(block_name, element) == 0) {
    deliverCapture(recipient);
  }
  if (code >= 0) deliver(recipient, code, "", "data error processing block <%s>: %s");
  parameters.popElement();
  return true;
}

void R_XMLParser::standaloneTag(const char* tag, R_XMLRecipient& recipient) {
  parameters.standaloneElement(tag, element);
  int code = lookup(recipient, 0);
  if (code >= 0) deliver(recipient, code, "", "data error processing standalone tag <%s../>: %s");
  parameters.popElement();
}

int R_XMLParser::lookup(const R_XMLRecipient& recipient, char prefix) {
  if (parameters.getPathLength() > longest_entry) return -1;
  return recipient.findTag(parameters.getPath(':', prefix));
}

void R_XMLParser::deliverCapture(R_XMLRecipient& recipient) {
  buffer->stopReading();
  deliver(recipient, block_code, buffer->getText(), "data error closing block </%s>: %s");
  buffer->clear();
}

void R_XMLParser::deliver(R_XMLRecipient& recipient, int code, const char* text,
                          const char* format) {
  const char* refusal = recipient.receive(code, text, parameters);
  if (!refusal) return;
  failed = true;
  reportFormatted(format, element, refusal);
}

void R_XMLParser::fail(const char* message) {
  failed = true;
  report(message);
}

void R_XMLParser::report(const char* message) {
  if (!reporter) return;
  char text[longestMessage + 1];
  int prefix = line >= 2 ? snprintf(text, sizeof text, "(%d) ", line) : 0;
  // The message is cut to what is left of the line.
  size_t length = strnlen(message, static_cast<size_t>(longestMessage - prefix));
  memcpy(text + prefix, message, length);
  text[prefix + length] = 0;
  reporter->report(text);
}

void R_XMLParser::reportFormatted(const char* format, const char* first, const char* second) {
  char text[longestMessage + 1];
  // A longer text is cut at the end of the buffer; only a broken format
  // gives nothing.
  if (snprintf(text, sizeof text, format, first, second) < 0) text[0] = 0;
  report(text);
}
