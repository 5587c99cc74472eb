// The streaming reader of the system's XML dialect. It is not a conforming
// XML parser; the dialect is:
// - a tag runs from one '<' to the next '>'. A '<' inside a tag is an error,
//   and the first '>' ends the tag also inside quotes or a comment;
// - tags beginning "<!" or "<?" are skipped whole, uninterpreted; bytes pass
//   through as they are (no encoding is applied), and there are no entity
//   references and no CDATA: "&lt;" stays those four characters;
// - element names are case-sensitive, start at the first ASCII letter after
//   '<' or "</" and run over letters, digits, '_', '-' and '.';
// - text between tags is seen only inside a captured element, where the
//   whole inner text arrives unchanged, nested tags and comments included.
// The recipient's tag table (see R_XMLRecipient) chooses the events. Faults
// of structure stop the parse at once; a refusal from the recipient is
// reported and the parse goes on to the end, then answers false. Messages go
// to the reporter as "(line) text" from line 2 on; a parse over a string
// never shows a line number.
//
// Kept on purpose: the name of the last capture is remembered after it
// ended, and only names are compared. So an element nested in a capture
// with the captured element's name ends the capture at its own end tag, and
// a later end tag of that name outside any capture delivers the capture's
// code once more with the empty text. Tag tables must avoid both layouts.
//
// Borrows the reporter (may be null: messages then vanish). Not copyable.
#ifndef XML_R_XMLPARSER_H
#define XML_R_XMLPARSER_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "xml/r_xmlparameters.h"

class R_XMLBuffer;
class R_XMLErrorReporter;
class R_XMLRecipient;

class R_XMLParser {
 public:
  // The capture size every parser of the system is built with. An inner
  // text that does not fit, together with its end tag, arrives empty.
  static constexpr int captureSize = 16384;
  // The longest tag accepted, both angle brackets included.
  static constexpr int longestTag = 8192;
  // Longer messages are cut to this many bytes.
  static constexpr int longestMessage = 255;

  // Requires: capacity > 0.
  R_XMLParser(int capacity, R_XMLErrorReporter* reporter);
  ~R_XMLParser();
  R_XMLParser(const R_XMLParser&) = delete;
  R_XMLParser& operator=(const R_XMLParser&) = delete;

  // Parses the file at `file` for `recipient`, whose tag table is set.
  // Answers true if nothing failed. A missing file fails with "no input
  // data"; an existing empty file succeeds without events.
  // Requires: file != null, recipient != null.
  bool parseFile(const char* file, R_XMLRecipient* recipient);
  // The same over a text that the caller keeps alive during the parse.
  // Requires: recipient != null.
  bool parseString(const char* text, R_XMLRecipient* recipient);

  // Sends one line to the reporter, prefixed "(%d) " with the line of the
  // last byte read when that line is 2 or more. The line stays after a
  // parse, so a summary reported afterwards names the last line read.
  void report(const char* message);
  // Formats `format` with two texts and reports the result.
  void reportFormatted(const char* format, const char* first, const char* second);

 private:
  template <class Input>
  void readAll(Input& input, R_XMLRecipient& recipient);
  void start(const R_XMLRecipient& recipient);
  bool processTag(const char* tag, R_XMLParameters::TagKind kind, R_XMLRecipient& recipient);
  void beginTag(const char* tag, R_XMLRecipient& recipient);
  bool endTag(const char* tag, R_XMLRecipient& recipient);
  void standaloneTag(const char* tag, R_XMLRecipient& recipient);
  int lookup(const R_XMLRecipient& recipient, char prefix);
  void deliverCapture(R_XMLRecipient& recipient);
  void deliver(R_XMLRecipient& recipient, int code, const char* text, const char* format);
  void fail(const char* message);

  R_XMLErrorReporter* reporter;  // borrowed, may be null
  R_XMLParameters parameters;
  R_XMLBuffer* buffer;           // owned capture buffer
  char* block_name;              // owned; the last captured element, null before any
  char element[longestTag + 1];  // the name in the latest tag
  int block_code;                // the code the running capture is delivered with
  bool failed;
  int line;                      // line of the input before the byte in hand
  size_t longest_entry;          // length of the longest tag table entry of this parse
  uint64_t entry_lengths;        // bit n set: an entry of this parse is n bytes long (n < 64)
  std::vector<size_t> table_lengths;  // of each entry of this parse; -1 for one never set
};

#endif
