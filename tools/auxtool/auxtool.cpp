// auxtool: check, convert and calculate from the command line, on the
// engine's own loaders, writers and evaluator.
#include <csignal>
#include <cstdio>
#include <cstring>

#include "tools/auxtool/calccommand.h"
#include "tools/auxtool/checkcommand.h"
#include "tools/auxtool/convertcommand.h"
#include "tools/auxtool/csvcommand.h"
#include "tools/auxtool/exitcodes.h"
#include "tools/auxtool/importcommand.h"
#include "tools/auxtool/reportcommand.h"
#include "tools/auxtool/setupcommand.h"
#include "tools/auxtool/synthcommand.h"

namespace {

struct Command {
  const char* name;
  int (*run)(int argc, const char* const* argv);
  const char* const* usage;
};

const Command kCommands[] = {
    {"check", runCheckCommand, &kCheckUsage},
    {"convert", runConvertCommand, &kConvertUsage},
    {"calc", runCalcCommand, &kCalcUsage},
    {"synth", runSynthCommand, &kSynthUsage},
    {"setup", runSetupCommand, &kSetupUsage},
    {"report", runReportCommand, &kReportUsage},
    {"csv", runCsvCommand, &kCsvUsage},
    {"import", runImportCommand, &kImportUsage},
};

void printUsage(FILE* output) {
  fputs("usage: auxtool COMMAND ARGUMENTS...\n       auxtool COMMAND --help\n\n", output);
  for (const Command& command : kCommands) fprintf(output, "%s\n", *command.usage);
}

bool isHelp(const char* argument) { return strcmp(argument, "--help") == 0 || strcmp(argument, "-h") == 0; }

}  // namespace

int main(int argc, char** argv) {
  // Past a file size limit a write should fail and be reported, with the old
  // file left in place, rather than end the program in the middle.
  signal(SIGXFSZ, SIG_IGN);
  if (argc < 2) {
    printUsage(stderr);
    return kExitUsageError;
  }
  if (isHelp(argv[1])) {
    printUsage(stdout);
    return kExitSuccess;
  }
  for (const Command& command : kCommands) {
    if (strcmp(argv[1], command.name) != 0) continue;
    for (int i = 2; i < argc; ++i) {
      if (isHelp(argv[i])) {
        fputs(*command.usage, stdout);
        return kExitSuccess;
      }
    }
    int code = command.run(argc - 2, argv + 2);
    fflush(stdout);
    return code;
  }
  fprintf(stderr, "auxtool: unknown command %s\n\n", argv[1]);
  printUsage(stderr);
  return kExitUsageError;
}
