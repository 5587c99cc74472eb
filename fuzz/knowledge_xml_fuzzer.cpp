// The knowledge file in its XML form: both passes of R_File::loadXML over
// the input as a file; a file that loads is written in both forms, read
// back, and every variable is computed for a made proband.
#include <cstdint>

#include "fuzz/fuzz_support.h"
#include "fuzz/knowledge_checks.h"
#include "knowledge/r_file.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const char* path = writeScratchFile("input.xml", data, size);
  CheckingReporter reporter;
  R_File file;
  if (!file.loadXML(path, &reporter)) {
    FUZZ_CHECK(reporter.getCount() > 0);
    return 0;
  }
  checkKnowledgeRoundTrips(file);
  computeEveryVariable(file);
  return 0;
}
