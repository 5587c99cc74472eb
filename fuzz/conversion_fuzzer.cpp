// What `auxtool convert` promises, on mutated files: a knowledge file (first
// input byte other than 'd') or a database on the sample knowledge file
// (first byte 'd'), the rest being the file, that loads whole and without a
// message is written in both forms through the checked write, each read back
// with the engine's loaders. A form refused for content it cannot hold is
// fine; a file that was written and then does not read back as it was read
// is a finding, and so is a failed write on the scratch disk.
#include <cstdint>
#include <cstdio>
#include <memory>

#include "fuzz/fuzz_support.h"
#include "knowledge/r_file.h"
#include "proband/r_a_simpledb.h"
#include "tools/auxtool/fileloading.h"
#include "tools/auxtool/readback.h"

namespace {

void checkConversion(const ReadBack& result) {
  if (result.outcome == ReadBack::same || result.outcome == ReadBack::refused) return;
  fprintf(stderr, "conversion: %s\n", result.reason.c_str());
  FUZZ_CHECK(result.outcome != ReadBack::differs);
  FUZZ_CHECK(result.outcome != ReadBack::writeFailed);
}

void convertKnowledge(const char* path) {
  CheckingReporter reporter;
  R_File file;
  if (!loadKnowledgeFile(file, path, reporter) || reporter.getCount() > 0) return;
  for (bool to_binary : {false, true}) checkConversion(writeKnowledgeChecked(file, scratchPath("out"), to_binary));
}

void convertDatabase(const char* path) {
  CheckingReporter reporter;
  const R_File& file = sampleKnowledge();
  std::unique_ptr<R_A_SimpleDB> database(openDatabase(file, path, reporter));
  if (!database || reporter.getCount() > 0) return;
  for (bool to_binary : {false, true})
    checkConversion(writeDatabaseChecked(*database, file, scratchPath("out"), to_binary));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  const char* path = writeScratchFile("input", data + 1, size - 1);
  if (data[0] == 'd')
    convertDatabase(path);
  else
    convertKnowledge(path);
  return 0;
}
