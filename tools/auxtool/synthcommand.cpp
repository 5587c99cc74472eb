#include "tools/auxtool/synthcommand.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "knowledge/r_file.h"
#include "proband/r_a_opensecurity.h"
#include "proband/r_a_simpledb.h"
#include "tools/auxtool/exitcodes.h"
#include "tools/auxtool/fileloading.h"
#include "tools/auxtool/printreporter.h"
#include "tools/auxtool/probandsynthesizer.h"

const char* const kSynthUsage =
    "usage: auxtool synth KNOWLEDGE N OUT [--seed S] [--to xml|bin]\n"
    "  Writes a database of N synthetic probands for the knowledge file, in XML\n"
    "  (default) or binary form. The same seed (default 1) gives the same file.\n"
    "  N is at most 1000000; the database is made in memory, about 2 KB a proband.\n";

namespace {

struct SynthOptions {
  const char* knowledge = nullptr;
  long count = -1;
  const char* out = nullptr;
  unsigned long long seed = 1;
  bool binary = false;
};

// The database is built whole in memory before it is written, about 2 KB a
// proband with the sample knowledge file: a million take about 2 GB.
const long kMostProbands = 1000000;

bool parseCount(const char* text, long* count) {
  char* end = nullptr;
  long value = strtol(text, &end, 10);
  if (!*text || *end || value < 0 || value > kMostProbands) return false;
  *count = value;
  return true;
}

bool parseOptions(int argc, const char* const* argv, SynthOptions* options) {
  int positional = 0;
  for (int i = 0; i < argc; ++i) {
    if (strcmp(argv[i], "--seed") == 0) {
      if (++i >= argc) return false;
      char* end = nullptr;
      options->seed = strtoull(argv[i], &end, 10);
      if (!*argv[i] || *end) return false;
    } else if (strcmp(argv[i], "--to") == 0) {
      if (++i >= argc || (strcmp(argv[i], "xml") != 0 && strcmp(argv[i], "bin") != 0)) return false;
      options->binary = strcmp(argv[i], "bin") == 0;
    } else if (positional == 0) {
      options->knowledge = argv[i];
      ++positional;
    } else if (positional == 1) {
      if (!parseCount(argv[i], &options->count)) {
        fprintf(stderr, "auxtool synth: N is a count from 0 to %ld (about 2 KB of memory each), not \"%s\"\n",
                kMostProbands, argv[i]);
        return false;
      }
      ++positional;
    } else if (positional == 2) {
      options->out = argv[i];
      ++positional;
    } else {
      return false;
    }
  }
  return positional == 3;
}

}  // namespace

int runSynthCommand(int argc, const char* const* argv) {
  SynthOptions options;
  if (!parseOptions(argc, argv, &options)) {
    fputs(kSynthUsage, stderr);
    return kExitUsageError;
  }
  PrintReporter reporter(stderr);
  R_File file;
  if (!loadKnowledgeFile(file, options.knowledge, reporter)) return kExitRefused;
  R_A_OpenSecurity security;
  // An empty path opens nothing: the database starts empty and is written
  // to OUT at the end.
  R_A_SimpleDB database(&security, &file, "", options.binary, &reporter);
  ProbandSynthesizer synthesizer(file, options.seed);
  for (long i = 0; i < options.count; ++i) {
    if (!synthesizer.addTo(database)) {
      fprintf(stderr, "Can not add proband %ld\n", i);
      return kExitRefused;
    }
  }
  if (!database.saveAs(options.out, options.binary)) {
    fprintf(stderr, "Can not write %s\n", options.out);
    return kExitRefused;
  }
  return kExitSuccess;
}
