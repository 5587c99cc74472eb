// Helpers shared by the fuzz targets: the input as a file or a text, a
// reporter that touches every message, comparison of whole files, and the
// fixed knowledge file and proband of the targets that need them.
#ifndef FUZZ_FUZZ_SUPPORT_H
#define FUZZ_FUZZ_SUPPORT_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "xml/r_xmlerrorreporter.h"

class R_File;
class R_Proband;

// Stops the run as a finding: a broken promise that no sanitizer would see.
#define FUZZ_CHECK(condition)                                                   \
  do {                                                                          \
    if (!(condition)) fuzzFailure(__FILE__, __LINE__, #condition);              \
  } while (0)
[[noreturn]] void fuzzFailure(const char* file, int line, const char* condition);

// A path of this process for the file `name` under /dev/shm (or the
// temporary directory where that is missing). The same name gives the same
// path in every run; the files are removed when the process ends.
const char* scratchPath(const char* name);
// Writes the bytes to scratchPath(name) and answers that path.
const char* writeScratchFile(const char* name, const uint8_t* data, size_t size);
// The whole file, "" for a missing one.
std::string readWholeFile(const char* path);

// The input as a text, cut at its first NUL byte.
std::string inputText(const uint8_t* data, size_t size);

// Reads every message to its end and checks the promise of the XML reader
// that no line is longer than 255 bytes.
class CheckingReporter : public R_XMLErrorReporter {
 public:
  void report(const char* text) override;
  int getCount() const { return count; }

 private:
  int count = 0;
};

// The sample knowledge file of the repository, loaded once per process; the
// run stops when it does not load.
const R_File& sampleKnowledge();
// A proband on any loaded knowledge file: a girl with a date of birth, two
// anamnestic values and four visits, each followed variable filled with a
// value from its interval where the variable has one. The caller owns it.
R_Proband* makeProband(const R_File& file);

#endif
