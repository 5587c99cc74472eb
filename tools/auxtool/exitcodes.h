// The exit codes of auxtool's commands.
#ifndef TOOLS_AUXTOOL_EXITCODES_H
#define TOOLS_AUXTOOL_EXITCODES_H

enum AuxtoolExitCode {
  kExitSuccess = 0,
  kExitRefused = 1,     // a file was missing or refused, or a formula did not translate
  kExitUsageError = 2,  // wrong arguments
};

#endif
