// Lines of CSV output, built field by field into one buffer. Texts that
// hold the separator, a double quote or a line break are quoted, with inner
// quotes doubled; numbers print with "%.9g"; an undefined number, and one
// that is not finite, is an empty field.
#ifndef TOOLS_AUXTOOL_CSVLINE_H
#define TOOLS_AUXTOOL_CSVLINE_H

#include <cstdio>

#include "core/r_textbuffer.h"

class R_Number;

class CsvLine {
 public:
  explicit CsvLine(char separator_char) : separator(separator_char), fields(0) {}

  void addText(const char* text);
  void addNumber(const R_Number& number);
  void addInteger(int value);
  void addEmpty();
  // Ends the line with its line feed; the next field starts a new line.
  void endLine();
  // The finished lines and the one being built.
  size_t size() const { return text.size(); }
  // Writes everything built so far to `file` and starts empty; false when
  // the write failed.
  bool flush(FILE* file);

 private:
  void startField();

  char separator;
  int fields;  // of the line being built
  R_TextBuffer text;
};

#endif
