// The knowledge file in its binary form: R_File::loadBinary over the input
// as a file; a file that loads must write and read back to the same bytes,
// and every variable is computed for a made proband.
#include <cstdint>

#include "fuzz/fuzz_support.h"
#include "fuzz/knowledge_checks.h"
#include "knowledge/r_file.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const char* path = writeScratchFile("input.bin", data, size);
  R_File file;
  if (!file.loadBinary(path)) return 0;
  checkKnowledgeRoundTrips(file);
  computeEveryVariable(file);
  return 0;
}
