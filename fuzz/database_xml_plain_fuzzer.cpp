// The plain road of database files against the general road. The input as
// a file is read by R_A_SimpleDB, which takes the plain road when it can;
// as a text through loadText, which never does. Both must hold the same
// records, saved to the same bytes in both forms. Where the plain road took
// the file, neither road may have reported anything.
//
// A text cannot carry NUL and the empty text is a fault where the empty file
// is not, so such inputs are read but not compared. Messages are not
// compared otherwise: only a file's carry line numbers.
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "exporter/mysecurity.h"
#include "fuzz/fuzz_support.h"
#include "proband/r_a_simpledb.h"
#include "proband/r_a_simpledbplainreader.h"
#include "proband/r_a_simpledbrecord.h"

namespace {

bool takesPlainRoad(const R_File& file, const char* path) {
  std::vector<R_A_SimpleDBRecord*> records;
  R_A_SimpleDBPlainReader reader(&file);
  bool taken = reader.read(path, &records);
  for (R_A_SimpleDBRecord* item : records) delete item;
  return taken;
}

std::string savedAs(const R_A_SimpleDB& database, const char* name, bool binary) {
  const char* path = scratchPath(name);
  FUZZ_CHECK(database.saveAs(path, binary));
  return readWholeFile(path);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const R_File& file = sampleKnowledge();
  const char* path = writeScratchFile("input.xml", data, size);
  bool plain = takesPlainRoad(file, path);
  MySecurity security;
  CheckingReporter file_reporter;
  R_A_SimpleDB by_file(&security, &file, path, false, &file_reporter);
  if (size == 0 || memchr(data, 0, size)) {
    FUZZ_CHECK(!plain);
    return 0;
  }
  CheckingReporter text_reporter;
  R_A_SimpleDB by_text(&security, &file, scratchPath("never-written.xml"), false, &text_reporter);
  by_text.loadText(inputText(data, size).c_str());
  FUZZ_CHECK(by_file.getN() == by_text.getN());
  FUZZ_CHECK(savedAs(by_file, "file.xml", false) == savedAs(by_text, "text.xml", false));
  FUZZ_CHECK(savedAs(by_file, "file.bin", true) == savedAs(by_text, "text.bin", true));
  if (plain) FUZZ_CHECK(file_reporter.getCount() == 0 && text_reporter.getCount() == 0);
  return 0;
}
