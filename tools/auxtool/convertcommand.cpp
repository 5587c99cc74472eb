#include "tools/auxtool/convertcommand.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "exporter/mysecurity.h"
#include "knowledge/r_file.h"
#include "proband/r_a_simpledb.h"
#include "tools/auxtool/exitcodes.h"
#include "tools/auxtool/fileloading.h"
#include "tools/auxtool/printreporter.h"

const char* const kConvertUsage =
    "usage: auxtool convert knowledge IN OUT --to xml|bin\n"
    "       auxtool convert database KNOWLEDGE IN OUT --to xml|bin\n"
    "  Reads IN in whichever form it has and writes OUT in the asked form.\n"
    "  A failed read writes nothing and exits 1 with the loader's messages.\n";

namespace {

// Splits off "--to FORM"; false when it is missing, repeated or unknown.
bool takeTargetForm(std::vector<const char*>& args, bool* binary) {
  int found = -1;
  for (size_t i = 0; i < args.size(); ++i) {
    if (strcmp(args[i], "--to") != 0) continue;
    if (found >= 0 || i + 1 >= args.size()) return false;
    found = static_cast<int>(i);
  }
  if (found < 0) return false;
  const char* form = args[found + 1];
  if (strcmp(form, "xml") != 0 && strcmp(form, "bin") != 0) return false;
  *binary = strcmp(form, "bin") == 0;
  args.erase(args.begin() + found, args.begin() + found + 2);
  return true;
}

int writeFailure(const char* path) {
  fprintf(stderr, "Can not write %s\n", path);
  return kExitRefused;
}

int convertKnowledge(const char* in, const char* out, bool binary) {
  PrintReporter reporter(stderr);
  R_File file;
  if (!loadKnowledgeFile(file, in, reporter)) return kExitRefused;
  bool written = binary ? file.saveBinary(out) : file.saveXML(out);
  return written ? kExitSuccess : writeFailure(out);
}

int convertDatabase(const char* knowledge, const char* in, const char* out, bool binary) {
  PrintReporter reporter(stderr);
  R_File file;
  if (!loadKnowledgeFile(file, knowledge, reporter)) return kExitRefused;
  MySecurity security;
  std::unique_ptr<R_A_SimpleDB> database(openDatabase(file, security, in, reporter));
  if (!database || reporter.getCount() > 0) return kExitRefused;
  return database->saveAs(out, binary) ? kExitSuccess : writeFailure(out);
}

}  // namespace

int runConvertCommand(int argc, const char* const* argv) {
  std::vector<const char*> args(argv, argv + argc);
  bool binary = false;
  if (!takeTargetForm(args, &binary) || args.empty()) {
    fputs(kConvertUsage, stderr);
    return kExitUsageError;
  }
  if (strcmp(args[0], "knowledge") == 0 && args.size() == 3) return convertKnowledge(args[1], args[2], binary);
  if (strcmp(args[0], "database") == 0 && args.size() == 4)
    return convertDatabase(args[1], args[2], args[3], binary);
  fputs(kConvertUsage, stderr);
  return kExitUsageError;
}
