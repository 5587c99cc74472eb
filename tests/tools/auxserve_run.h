// Runs the built auxserve program for the tests: starts it with arguments
// and an optional access token, waits for its "listening on" line and stops
// it by a signal. Its output goes to files of its own folder, so standard
// error is there whole once the program has ended. Every wait is bounded.
#ifndef TESTS_TOOLS_AUXSERVE_RUN_H
#define TESTS_TOOLS_AUXSERVE_RUN_H

#include <string>
#include <vector>

#include "tests/support/test_files.h"

class ServerRun {
 public:
  ServerRun() = default;
  ~ServerRun();
  ServerRun(const ServerRun&) = delete;
  ServerRun& operator=(const ServerRun&) = delete;

  // True once the program said where it listens (port() then holds the
  // port); false when it ended first or said nothing in 20 s.
  bool start(const std::vector<std::string>& arguments, const std::string& token = "");
  int port() const { return listening_port; }
  const std::string& firstLine() const { return first_line; }

  // Sends `signal` (none for 0) and waits up to 20 s for the end: the exit
  // code, 128 + the signal that ended it, or -1 when it had to be killed.
  int stop(int signal);
  int waitExit() { return stop(0); }
  // What the program wrote to standard error: whole after stop().
  std::string errors() const { return readFile(dir.file("err")); }

 private:
  bool ended();

  TempDir dir;
  int pid = -1;
  int exit_code = -1;
  int listening_port = -1;
  std::string first_line;
};

#endif
