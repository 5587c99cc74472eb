#include "tools/auxtool/convertcommand.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "knowledge/r_file.h"
#include "proband/r_a_simpledb.h"
#include "tools/auxtool/exitcodes.h"
#include "tools/auxtool/fileloading.h"
#include "tools/auxtool/printreporter.h"
#include "tools/auxtool/readback.h"

const char* const kConvertUsage =
    "usage: auxtool convert knowledge IN OUT --to xml|bin\n"
    "       auxtool convert database KNOWLEDGE IN OUT --to xml|bin\n"
    "  Reads IN in whichever form it has and writes OUT in the asked form, under a\n"
    "  temporary name; reads that back and puts it in place only when it holds what\n"
    "  IN held (numbers in XML to six significant digits; it says how many it\n"
    "  rounded). A failed or partial read, or content that the asked form cannot\n"
    "  hold, writes nothing and exits 1 naming the object. OUT may be IN.\n";

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

// Says what the conversion did; the exit code.
int tell(const ReadBack& result, const char* out) {
  switch (result.outcome) {
    case ReadBack::same:
      if (result.rounded > 0) printf("%s: numbers rounded to six significant digits: %d\n", out, result.rounded);
      return kExitSuccess;
    case ReadBack::writeFailed:
      fprintf(stderr, "Can not write %s\n", out);
      return kExitRefused;
    case ReadBack::refused:
    case ReadBack::differs:
      break;
  }
  fprintf(stderr, "%sNothing written to %s\n", result.reason.c_str(), out);
  return kExitRefused;
}

int convertKnowledge(const char* in, const char* out, bool binary) {
  PrintReporter reporter(stderr);
  R_File file;
  if (!loadKnowledgeFile(file, in, reporter)) return kExitRefused;
  return tell(writeKnowledgeChecked(file, out, binary), out);
}

int convertDatabase(const char* knowledge, const char* in, const char* out, bool binary) {
  PrintReporter reporter(stderr);
  R_File file;
  if (!loadKnowledgeFile(file, knowledge, reporter)) return kExitRefused;
  std::unique_ptr<R_A_SimpleDB> database(openDatabase(file, in, reporter));
  if (!database || reporter.getCount() > 0) return kExitRefused;
  return tell(writeDatabaseChecked(*database, file, out, binary), out);
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
