// The proband database in its XML form, bound to the sample knowledge file:
// R_A_SimpleDB over the input as a file, then every record through the
// exporter's writer, formulas, blobs and the binary round trip. The same
// input is also read as a record file of its own.
#include <cstdint>

#include "exporter/mysecurity.h"
#include "fuzz/database_checks.h"
#include "fuzz/fuzz_support.h"
#include "proband/r_a_simpledb.h"
#include "proband/r_a_simpledbrecord.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const R_File& file = sampleKnowledge();
  const char* path = writeScratchFile("input.xml", data, size);
  MySecurity security;
  CheckingReporter reporter;
  R_A_SimpleDB database(&security, &file, path, false, &reporter);
  exerciseRecords(database);
  checkDatabaseRoundTrips(database);

  R_A_SimpleDBRecord record(&file);
  record.loadFile(path, &reporter);
  return 0;
}
