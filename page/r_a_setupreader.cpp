#include "page/r_a_setupreader.h"

#include <cstring>

#include "core/r_ascii.h"
#include "core/r_integer.h"

namespace {

bool isNameByte(char c) { return R_isAlnum(c) || c == '_' || c == '-' || c == '.'; }

const char* skipBlanks(const char* text) {
  while (R_isBlank(*text)) text++;
  return text;
}

}  // namespace

R_A_SetupReader::R_A_SetupReader(const char* path)
    : file(nullptr), ended(false), lineNumber(0), lineComplete(true), settingLine(0), nameLength(0),
      valueLength(0) {
  if (path != nullptr && *path != 0) file = fopen(path, "r");
  ended = file == nullptr;
  line[0] = 0;
  clearSetting();
}

R_A_SetupReader::~R_A_SetupReader() {
  if (file) fclose(file);
}

int R_A_SetupReader::getValueAsInt() const { return R_Integer(value).get(); }

bool R_A_SetupReader::next() {
  while (!ended && readLine()) {
    LineKind kind = readSetting();
    if (kind == lineSetting) return true;
    if (kind == lineEndOfFile) break;
  }
  ended = true;
  clearSetting();
  return false;
}

void R_A_SetupReader::clearSetting() {
  nameLength = valueLength = 0;
  name[0] = value[0] = 0;
}

// Reads up to maxLine bytes or the newline, which is not kept. False at the
// end of the file when nothing was left to read.
bool R_A_SetupReader::readLine() {
  if (lineComplete) lineNumber++;
  int length = 0;
  int c = 0;
  while (length < maxLine && (c = getc(file)) != EOF && c != '\n') line[length++] = static_cast<char>(c);
  line[length] = 0;
  lineComplete = c == '\n' || c == EOF;
  if (length == maxLine) {
    // A newline right behind a full line belongs to it, not to an empty one.
    c = getc(file);
    if (c == '\n') lineComplete = true;
    else if (c != EOF) ungetc(c, file);
  }
  return length > 0 || c == '\n';
}

R_A_SetupReader::LineKind R_A_SetupReader::readSetting() {
  const char* cursor = skipBlanks(line);
  if (*cursor == 0 || *cursor == ';' || *cursor == '#') return lineSkipped;
  if (!readName(&cursor)) return lineSkipped;
  const char* equals = strchr(cursor, '=');
  if (equals == nullptr) return lineSkipped;
  settingLine = lineNumber;
  bool nameFits = nameLength <= maxName;
  valueLength = 0;
  bool complete = readValue(equals + 1);
  value[valueLength] = 0;
  if (!complete) return lineEndOfFile;
  if (!nameFits) clearSetting();
  return nameFits ? lineSetting : lineSkipped;
}

// Copies the name at *cursor, as far as it fits, and moves the cursor behind
// it; nameLength gets its whole length. False for a '{' without '}'.
bool R_A_SetupReader::readName(const char** cursor) {
  const char* start = *cursor;
  const char* end;
  if (*start == '{') {
    start++;
    end = strchr(start, '}');
    if (end == nullptr) return false;
    *cursor = end + 1;
  } else {
    end = start;
    while (isNameByte(*end)) end++;
    *cursor = end;
  }
  nameLength = static_cast<int>(end - start);
  int kept = nameLength <= maxName ? nameLength : 0;
  memcpy(name, start, static_cast<size_t>(kept));
  name[kept] = 0;
  return true;
}

bool R_A_SetupReader::readValue(const char* text) {
  text = skipBlanks(text);
  if (*text != '{') {
    appendLine(text, false);
    return true;
  }
  text++;
  while (!appendLine(skipBlanks(text), true)) {
    put('\n');
    if (!readLine()) return false;
    text = line;
  }
  return true;
}

bool R_A_SetupReader::appendLine(const char* text, bool runsOverLines) {
  int kept = valueLength;  // the length without the blanks at the end
  bool closed = false;
  for (; *text != 0; text++) {
    char c = *text;
    if (c == '\\') {
      if (text[1] == 0) break;  // a backslash ending the line stands for nothing
      put(*++text);
      kept = valueLength;
      continue;
    }
    if (runsOverLines && c == '}') {
      closed = true;
      break;
    }
    put(c);
    if (!R_isBlank(c)) kept = valueLength;
  }
  valueLength = kept;
  return closed;
}
