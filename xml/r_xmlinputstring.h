// The bytes of a borrowed, NUL-terminated text; the text must outlive the
// input. The terminator is the end: it is never delivered as a byte, so a
// text cannot carry NUL. Lines are not counted (always 0), so messages about
// a text never show a line number.
#ifndef XML_R_XMLINPUTSTRING_H
#define XML_R_XMLINPUTSTRING_H

#include <cstddef>

#include "xml/r_xmlinput.h"

class R_XMLInputString final : public R_XMLInput {
 public:
  // A null text reads as the empty text.
  explicit R_XMLInputString(const char* text);

  bool canRead() override { return string[position] != 0; }
  // At the terminator answers 0 and stays there.
  int getChar() override {
    unsigned char c = static_cast<unsigned char>(string[position]);
    if (c) ++position;
    return c;
  }
  int getLine() const override { return 0; }

  // The bytes not yet taken, up to the terminator; see R_XMLInputFile.
  const unsigned char* runBegin() const { return reinterpret_cast<const unsigned char*>(string) + position; }
  const unsigned char* runEnd() const { return reinterpret_cast<const unsigned char*>(string) + length; }
  // Requires: runBegin() <= to <= runEnd().
  void takeRun(const unsigned char* to) { position = static_cast<size_t>(to - runBegin()) + position; }

 private:
  const char* string;
  size_t position;
  size_t length;  // of the text, up to its terminator
};

#endif
