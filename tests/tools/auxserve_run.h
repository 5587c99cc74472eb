// Runs the built auxserve program for the tests: starts it with arguments
// and an optional access token, waits for its "listening on" line, reads
// its log while it runs, and stops it by a signal. Every wait is bounded.
#ifndef TESTS_TOOLS_AUXSERVE_RUN_H
#define TESTS_TOOLS_AUXSERVE_RUN_H

#include <mutex>
#include <string>
#include <thread>
#include <vector>

class ServerRun {
 public:
  ServerRun() = default;
  ~ServerRun();
  ServerRun(const ServerRun&) = delete;
  ServerRun& operator=(const ServerRun&) = delete;

  // Starts the program; true once it said where it listens (then port()
  // holds the port). False when it ended first or said nothing in 20 s.
  bool start(const std::vector<std::string>& arguments, const std::string& token = "");
  int port() const { return listening_port; }
  const std::string& firstLine() const { return first_line; }

  // Sends `signal` and waits up to 20 s for the end; the exit code, 128 +
  // the signal for a program killed by one, -1 when it did not end (it is
  // then killed).
  int stop(int signal);
  // Waits up to 20 s for a program that ends by itself.
  int waitExit();
  // What the program wrote to standard error so far.
  std::string errors();

 private:
  int reap(int seconds);

  int pid = -1;
  int listening_port = -1;
  std::string first_line;
  std::thread reader;
  std::mutex lock;
  std::string error_text;
};

#endif
