#include "tools/auxtool/csvcommand.h"

#include <cstdio>
#include <cstring>
#include <memory>

#include "knowledge/r_file.h"
#include "output/r_a_exportcsv.h"
#include "proband/r_a_simpledb.h"
#include "tools/auxtool/exitcodes.h"
#include "tools/auxtool/fileloading.h"
#include "tools/auxtool/printreporter.h"

const char* const kCsvUsage =
    "usage: auxtool csv KNOWLEDGE DATABASE OUT [--search TEXT]\n"
    "  Writes the probands of DATABASE (with --search, those whose name or comment\n"
    "  contains TEXT, ASCII case ignored) to OUT, one line a visit.\n"
    "  Exit 0 when OUT was written, 1 when a file was missing or refused, 2 on wrong usage.\n";

namespace {

struct CsvOptions {
  const char* knowledge = nullptr;
  const char* database = nullptr;
  const char* out = nullptr;
  const char* search = nullptr;  // null selects every record
};

bool parseOptions(int argc, const char* const* argv, CsvOptions* options) {
  const char** positional[] = {&options->knowledge, &options->database, &options->out};
  int count = 0;
  for (int i = 0; i < argc; i++) {
    if (strcmp(argv[i], "--search") == 0) {
      if (i + 1 >= argc || options->search) return false;
      options->search = argv[++i];
    } else if (count < 3) {
      *positional[count++] = argv[i];
    } else {
      return false;
    }
  }
  return count == 3;
}

}  // namespace

int runCsvCommand(int argc, const char* const* argv) {
  CsvOptions options;
  if (!parseOptions(argc, argv, &options)) {
    fputs(kCsvUsage, stderr);
    return kExitUsageError;
  }
  PrintReporter reporter(stderr);
  R_File file;
  if (!loadKnowledgeFile(file, options.knowledge, reporter)) return kExitRefused;
  std::unique_ptr<R_A_SimpleDB> database(openDatabase(file, options.database, reporter));
  if (!database || reporter.getCount() > 0) return kExitRefused;
  database->select(options.search);
  R_A_ExportCSV csv(options.out);
  if (!csv.write(*database, file) || !csv.isOK()) {
    fprintf(stderr, "File %s cannot be written\n", options.out);
    return kExitRefused;
  }
  return kExitSuccess;
}
