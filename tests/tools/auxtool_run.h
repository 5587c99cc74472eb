// Runs the built auxtool program for the tests that compare its whole
// output and exit code.
#ifndef TESTS_TOOLS_AUXTOOL_RUN_H
#define TESTS_TOOLS_AUXTOOL_RUN_H

#include <string>

#include "tests/support/test_files.h"

struct ToolRun {
  std::string output;
  int exit_code;
};

// Standard output only, or both streams with `with_errors`.
inline ToolRun auxtool(const std::string& arguments, bool with_errors = false) {
  ToolRun run;
  std::string command = std::string(AUX_BIN_DIR) + "/auxtool " + arguments + (with_errors ? " 2>&1" : " 2>/dev/null");
  run.output = runCommand(command, &run.exit_code);
  return run;
}

#endif
