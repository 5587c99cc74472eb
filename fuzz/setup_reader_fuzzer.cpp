// Setup files: any bytes read as a setup file. Every setting keeps the
// reader's limits, its line lies within the file and never goes back, and
// the setup made from the file holds for each key the value of the last
// setting that names it, and nothing for any other key.
#include <cstdint>
#include <cstring>
#include <string>

#include "fuzz/fuzz_support.h"
#include "page/r_a_setupfile.h"
#include "page/r_a_setupreader.h"

namespace {

struct Expected {
  bool intSet[R_A_Setup::_intCodeCount] = {};
  int ints[R_A_Setup::_intCodeCount] = {};
  bool strSet[R_A_Setup::_strCodeCount] = {};
  std::string strs[R_A_Setup::_strCodeCount];
};

void note(Expected& expected, const R_A_SetupReader& reader) {
  int code = R_A_Setup::findStr(reader.getName());
  if (code >= 0) {
    expected.strSet[code] = true;
    expected.strs[code] = reader.getValue();
    return;
  }
  code = R_A_Setup::findInt(reader.getName());
  if (code < 0) return;
  expected.intSet[code] = true;
  expected.ints[code] = reader.getValueAsInt();
}

void checkSetup(const Expected& expected, const char* path) {
  R_A_SetupFile setup(path);
  for (int code = 0; code < R_A_Setup::_intCodeCount; code++) {
    FUZZ_CHECK(setup.isIntSet(code) == expected.intSet[code]);
    FUZZ_CHECK(setup.getInt(code, -1) == (expected.intSet[code] ? expected.ints[code] : -1));
  }
  for (int code = 0; code < R_A_Setup::_strCodeCount; code++) {
    FUZZ_CHECK(setup.isStrSet(code) == expected.strSet[code]);
    if (expected.strSet[code]) FUZZ_CHECK(expected.strs[code] == setup.getStr(code, nullptr));
    else FUZZ_CHECK(setup.getStr(code, nullptr) == nullptr);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const char* path = writeScratchFile("setup.txt", data, size);
  int lines = 1;
  for (size_t i = 0; i < size; i++) lines += data[i] == '\n';
  Expected expected;
  R_A_SetupReader reader(path);
  FUZZ_CHECK(reader.isOpen());
  int last_line = 1;
  while (reader.next()) {
    FUZZ_CHECK(strlen(reader.getName()) <= static_cast<size_t>(R_A_SetupReader::maxName));
    FUZZ_CHECK(strlen(reader.getValue()) <= static_cast<size_t>(R_A_SetupReader::maxValue));
    FUZZ_CHECK(reader.getLineNumber() >= last_line && reader.getLineNumber() <= lines);
    last_line = reader.getLineNumber();
    note(expected, reader);
  }
  FUZZ_CHECK(!reader.next());
  checkSetup(expected, path);
  return 0;
}
