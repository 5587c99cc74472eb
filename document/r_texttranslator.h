// Checks the mark-up of one paragraph and turns it into the stored form, in
// one go in the constructor. The mark-up: <b>...</b> bold, <i>...</i>
// italics (never nested, never overlapping), <link target="id" /> a link
// to another text, <external target="url" /> an outside link, <value
// var="NAME" /> a variable's value at output time. Comments and directives
// (<!...>, <?...>) vanish; every other '<' starts a tag, so there is no way
// to write a plain '<'. The stored form replaces them by \b \c \i \j and
// \L...\ \E...\ \V...\ ; a backslash of the source is read as '/', so a
// source cannot forge a stored code. Whitespace of the result is normalised.
//
// Each fault is reported as "error <message> processing element <name>" (or
// "</name>" for an end tag) and the pass goes on, so one text can report
// several. Not copyable.
#ifndef DOCUMENT_R_TEXTTRANSLATOR_H
#define DOCUMENT_R_TEXTTRANSLATOR_H

#include <cstddef>
#include <vector>

#include "xml/r_xmlparameters.h"

class R_FileStatistics;
class R_String;
class R_XMLErrorReporter;

class R_TextTranslator {
 public:
  // Translates `text`; variable names are checked against `statistics`.
  // Messages go to `reporter`, which may be null. Requires: text != null.
  R_TextTranslator(const char* text, const R_FileStatistics& statistics, R_XMLErrorReporter* reporter);
  R_TextTranslator(const R_TextTranslator&) = delete;
  R_TextTranslator& operator=(const R_TextTranslator&) = delete;

  // No fault was found.
  bool isOK() const { return ok; }
  // Copies the stored form into `result` when isOK(); else leaves it alone.
  void getResult(R_String& result) const;

 private:
  void translate(const char* text);
  void processTag();
  void beginTag(const char* tag);
  void endTag(const char* tag);
  void standaloneTag(const char* tag);
  // Emits \<code><name>\ for a standalone element.
  void emitNamed(char code, const char* name);
  void finish();
  void emit(char c);
  void fail(const char* message, const char* name, bool end = false);

  const R_FileStatistics& statistics;
  R_XMLErrorReporter* reporter;  // borrowed, may be null
  R_XMLParameters parameters;    // the open elements of the mark-up
  std::vector<char> result;      // the stored form, source length + 32 bytes
  std::vector<char> tag;         // the tag being read
  std::vector<char> element;     // the name of the tag in hand
  size_t length;                 // of the source
  size_t written;                // bytes emitted, also those beyond `result`
  bool ok;
  bool bold;
  bool italics;
};

#endif
