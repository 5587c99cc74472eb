#include "knowledge/r_knowledgexml.h"

#include "xml/r_xmlparser.h"
#include "xml/r_xmlrecipient.h"
#include "xml/r_xmltextoutput.h"

namespace {

void setTags(R_XMLRecipient& recipient, const char* const* tags, int count) {
  recipient.setTagCount(count);
  for (int i = 0; i < count; ++i) recipient.setTag(i, tags[i]);
}

}  // namespace

bool R_parseTagged(R_XMLParser& parser, R_XMLRecipient& recipient, const char* const* tags, int count,
                   const char* text) {
  setTags(recipient, tags, count);
  bool parsed = parser.parseString(text, &recipient);
  recipient.clearTags();
  return parsed;
}

bool R_parseFileTagged(R_XMLParser& parser, R_XMLRecipient& recipient, const char* const* tags,
                       int count, const char* filename) {
  setTags(recipient, tags, count);
  bool parsed = parser.parseFile(filename, &recipient);
  recipient.clearTags();
  return parsed;
}

void R_writeTextElement(R_XMLTextOutput& output, const char* tag, const char* text) {
  R_openElement(output, tag);
  output.writeText(text);
  output.closeTag(tag);
}

void R_writeNumberElement(R_XMLTextOutput& output, const char* tag, const R_Number& number) {
  R_openElement(output, tag);
  output.writeNumber(number);
  output.closeTag(tag);
}

void R_openElement(R_XMLTextOutput& output, const char* tag) {
  output.openTag(tag);
  output.endOpenTag();
}
