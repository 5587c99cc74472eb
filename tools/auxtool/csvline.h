// One line of CSV output, built field by field. Texts that hold the
// separator, a double quote or a line break are quoted, with inner quotes
// doubled; numbers print with "%.9g"; an undefined number is an empty field.
#ifndef TOOLS_AUXTOOL_CSVLINE_H
#define TOOLS_AUXTOOL_CSVLINE_H

#include <string>

class R_Number;

class CsvLine {
 public:
  explicit CsvLine(char separator_char) : separator(separator_char), fields(0) {}

  void addText(const char* text);
  void addNumber(const R_Number& number);
  void addInteger(int value);
  void addEmpty();
  // The line with its line feed; the line starts empty again.
  std::string take();

 private:
  void startField();

  char separator;
  int fields;
  std::string line;
};

#endif
