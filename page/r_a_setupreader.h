// Reads the settings of a setup file one after the other. A setting is a
// line `name = value`; the name is a run of ASCII letters, digits, '_', '-'
// and '.', or any text between '{' and '}'. A line whose first non-blank
// byte is ';' or '#', a line with nothing on it and a line without '=' are
// passed over. Blank means a byte from 1 to 32.
//
// A value whose first non-blank byte is '{' runs over the following lines
// up to the first '}' that is not escaped; every line of it that does not
// hold that end adds its text and a newline. Otherwise the value is the rest
// of the line, where '}' means nothing. In both, a backslash gives the byte
// after it as it is, and each line of a value loses the blanks at both ends,
// except a blank given by a backslash.
//
// Limits, so that no file can make the reader grow: a line holds at most
// maxLine bytes and the rest of a longer line is read as the next line; a
// value keeps its first maxValue bytes and drops the rest of itself; a
// setting whose name is longer than maxName bytes is read and passed over.
// A byte 0 ends the text of its line. A value left open at the end of the
// file is lost, and reading ends there. Not copyable.
#ifndef PAGE_R_A_SETUPREADER_H
#define PAGE_R_A_SETUPREADER_H

#include <cstdio>

class R_A_SetupReader {
 public:
  static const int maxLine = 8191;
  static const int maxName = 65;
  static const int maxValue = 8192;

  // Opens the file as text. An empty or null path, or a file that does not
  // open, gives a reader with no settings.
  explicit R_A_SetupReader(const char* path);
  ~R_A_SetupReader();
  R_A_SetupReader(const R_A_SetupReader&) = delete;
  R_A_SetupReader& operator=(const R_A_SetupReader&) = delete;

  // Whether the file could be opened.
  bool isOpen() const { return file != nullptr; }

  // Moves to the next setting; false when there is none left, and from then
  // on. Name and value are "" before the first setting and after the last.
  bool next();
  const char* getName() const { return name; }
  const char* getValue() const { return value; }
  // The value read as an integer text (atol); 0 for a text without digits.
  int getValueAsInt() const;
  // The number of the line, from 1, on which the present setting's name
  // stands; a longer line read in parts counts once.
  int getLineNumber() const { return settingLine; }

 private:
  enum LineKind { lineSkipped, lineSetting, lineEndOfFile };

  bool readLine();
  LineKind readSetting();
  bool readName(const char** cursor);
  // Reads the value starting at `text`; false when a value that runs over
  // lines was left open at the end of the file.
  bool readValue(const char* text);
  // Decodes one line of a value onto the value, trimmed; answers whether
  // the line held the end of a value that runs over lines.
  bool appendLine(const char* text, bool runsOverLines);
  void put(char c) {
    if (valueLength < maxValue) value[valueLength++] = c;
  }
  void clearSetting();

  FILE* file;                 // owned; null when not open
  bool ended;                 // the end of the file or a lost value was reached
  int lineNumber;             // of the line in `line`
  bool lineComplete;          // the last line read ended with its newline
  int settingLine;
  int nameLength;
  int valueLength;
  char line[maxLine + 1];
  char name[maxName + 1];
  char value[maxValue + 1];
};

#endif
