#include "tools/auxtool/setupcommand.h"

#include <cstdio>

#include "page/r_a_setupfile.h"
#include "page/r_a_setupreader.h"
#include "tools/auxtool/exitcodes.h"

const char* const kSetupUsage =
    "usage: auxtool setup FILE\n"
    "  Prints every setup key, one a line, as `code kind name = value (file|default)`,\n"
    "  then a warning for each name in the file that is no key, with its line.\n"
    "  Exit 0 when the file was read, 1 when it cannot be opened, 2 on wrong usage.\n";

namespace {

// The integer defaults that the readers of these keys use; keys missing
// here are read by the front end alone and have no default in the engine.
// The text keys' defaults belong to their readers and are not listed.
struct IntDefault {
  int code;
  int value;
};
const IntDefault kIntDefaults[] = {
    {R_A_Setup::intGraphInSd, 1},
    {R_A_Setup::intGraphOptimalWidth, 512},
    {R_A_Setup::intGraphTargetWidth, 16},
    {R_A_Setup::intGraphXIndent, 10},
    {R_A_Setup::intGraphAxisTick, 8},
    {R_A_Setup::intGraphBitmapTextDouble, 0},
    {R_A_Setup::intGraphCellHeight, 2},
    {R_A_Setup::intGraphCellWidth, 3},
    {R_A_Setup::intGraphYIndent, 6},
    {R_A_Setup::intGraphSmallMarkWidth, 5},
    {R_A_Setup::intGraphMarkWidth, 8},
    {R_A_Setup::intAuxogramSpacerHeight, 3},
    {R_A_Setup::intAuxogramSpacerWidth, 6},
    {R_A_Setup::intTableInvertedColumnCount, 6},
    {R_A_Setup::intProbandsPerPage, 50},
    {R_A_Setup::intGraphArrowWidth, 10},
    {R_A_Setup::intVectorBigFontHeight, 16},
};

// A value on one line: control bytes and the backslash written as escapes.
void printEscaped(const char* text) {
  for (; *text != 0; text++) {
    unsigned char c = static_cast<unsigned char>(*text);
    if (c == '\\') fputs("\\\\", stdout);
    else if (c == '\n') fputs("\\n", stdout);
    else if (c == '\t') fputs("\\t", stdout);
    else if (c == '\r') fputs("\\r", stdout);
    else if (c < 32) printf("\\x%02X", c);
    else putchar(c);
  }
}

void printIntKey(const R_A_SetupFile& setup, int code) {
  printf("%d int %s = ", code, R_A_Setup::getIntName(code));
  if (setup.isIntSet(code)) {
    printf("%d (file)\n", setup.getInt(code, 0));
    return;
  }
  for (const IntDefault& known : kIntDefaults) {
    if (known.code == code) printf("%d", known.value);
  }
  puts(" (default)");
}

void printStrKey(const R_A_SetupFile& setup, int code) {
  printf("%d str %s = ", code, R_A_Setup::getStrName(code));
  printEscaped(setup.getStr(code, ""));
  puts(setup.isStrSet(code) ? " (file)" : " (default)");
}

void printUnknownNames(const char* path) {
  R_A_SetupReader reader(path);
  while (reader.next()) {
    const char* name = reader.getName();
    if (R_A_Setup::findInt(name) >= 0 || R_A_Setup::findStr(name) >= 0) continue;
    printf("warning: line %d: \"", reader.getLineNumber());
    printEscaped(name);
    puts("\" is no setup key");
  }
}

}  // namespace

int runSetupCommand(int argc, const char* const* argv) {
  if (argc != 1) {
    fputs(kSetupUsage, stderr);
    return kExitUsageError;
  }
  if (!R_A_SetupReader(argv[0]).isOpen()) {
    fprintf(stderr, "Setup file %s cannot be opened\n", argv[0]);
    return kExitRefused;
  }
  R_A_SetupFile setup(argv[0]);
  for (int code = 0; code < R_A_Setup::_intCodeCount; code++) printIntKey(setup, code);
  for (int code = 0; code < R_A_Setup::_strCodeCount; code++) printStrKey(setup, code);
  printUnknownNames(argv[0]);
  return kExitSuccess;
}
