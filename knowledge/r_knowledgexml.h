// Small helpers shared by the XML forms of the knowledge classes: the tag
// table bracket around one parse, and elements that hold one value.
#ifndef KNOWLEDGE_R_KNOWLEDGEXML_H
#define KNOWLEDGE_R_KNOWLEDGEXML_H

class R_Number;
class R_XMLParser;
class R_XMLRecipient;
class R_XMLTextOutput;

// Parses `text` (a string), or the file named `text`, for `recipient` with
// the `count` entries of `tags` as its tag table, which is set before and
// cleared after the parse. Answers the parser's result.
bool R_parseTagged(R_XMLParser& parser, R_XMLRecipient& recipient, const char* const* tags, int count,
                   const char* text);
bool R_parseFileTagged(R_XMLParser& parser, R_XMLRecipient& recipient, const char* const* tags,
                       int count, const char* filename);

template <int N>
bool R_parseTagged(R_XMLParser& parser, R_XMLRecipient& recipient, const char* const (&tags)[N],
                   const char* text) {
  return R_parseTagged(parser, recipient, tags, N, text);
}
template <int N>
bool R_parseFileTagged(R_XMLParser& parser, R_XMLRecipient& recipient, const char* const (&tags)[N],
                       const char* filename) {
  return R_parseFileTagged(parser, recipient, tags, N, filename);
}

// <tag>text</tag> and <tag>number</tag>.
void R_writeTextElement(R_XMLTextOutput& output, const char* tag, const char* text);
void R_writeNumberElement(R_XMLTextOutput& output, const char* tag, const R_Number& number);
// <tag> with no attribute, for an element whose content follows.
void R_openElement(R_XMLTextOutput& output, const char* tag);

#endif
