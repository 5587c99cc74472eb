#include "tools/auxtool/checkcommand.h"

#include <cstdio>
#include <memory>

#include "knowledge/r_file.h"
#include "proband/r_a_simpledb.h"
#include "tools/auxtool/exitcodes.h"
#include "tools/auxtool/fileloading.h"
#include "tools/auxtool/printreporter.h"

const char* const kCheckUsage =
    "usage: auxtool check KNOWLEDGE [DATABASE]\n"
    "  Loads the knowledge file and, if given, the database (each in the form\n"
    "  its first byte tells), prints every message of the loaders and a summary.\n"
    "  Exit 0 when everything loaded, 1 when something was refused, 2 on wrong usage.\n";

int runCheckCommand(int argc, const char* const* argv) {
  if (argc < 1 || argc > 2) {
    fputs(kCheckUsage, stderr);
    return kExitUsageError;
  }
  PrintReporter reporter(stdout);
  R_File file;
  if (!loadKnowledgeFile(file, argv[0], reporter)) return kExitRefused;
  printf("knowledge file %s: %d variables, %d references, %d texts\n", argv[0], file.getVarCount(),
         file.getRefCount(), file.getTextCount());
  if (argc == 1) return kExitSuccess;
  std::unique_ptr<R_A_SimpleDB> database(openDatabase(file, argv[1], reporter));
  if (!database) return kExitRefused;
  printf("database %s: %d probands\n", argv[1], database->getN());
  return reporter.getCount() == 0 ? kExitSuccess : kExitRefused;
}
