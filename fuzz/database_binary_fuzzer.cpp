// The proband database in its binary form, bound to the sample knowledge
// file: R_A_SimpleDB over the input as a file, then every record through
// the exporter's writer, formulas, blobs and the binary round trip.
#include <cstdint>

#include "exporter/mysecurity.h"
#include "fuzz/database_checks.h"
#include "fuzz/fuzz_support.h"
#include "proband/r_a_simpledb.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const R_File& file = sampleKnowledge();
  const char* path = writeScratchFile("input.bin", data, size);
  MySecurity security;
  R_A_SimpleDB database(&security, &file, path, true, nullptr);
  exerciseRecords(database);
  checkDatabaseRoundTrips(database);
  return 0;
}
