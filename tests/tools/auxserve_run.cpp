#include "tests/tools/auxserve_run.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>

namespace {

// Reads what is there from `fd` into `text`: 1 when bytes came, 0 when
// nothing came within `ms`, -1 at the end of the stream.
int readSome(int fd, std::string& text, int ms) {
  struct pollfd waiting = {fd, POLLIN, 0};
  if (poll(&waiting, 1, ms) <= 0) return 0;
  char buffer[4096];
  ssize_t n = read(fd, buffer, sizeof buffer);
  if (n <= 0) return -1;
  text.append(buffer, static_cast<size_t>(n));
  return 1;
}

}  // namespace

ServerRun::~ServerRun() {
  if (pid > 0) stop(SIGKILL);
  if (reader.joinable()) reader.join();
}

bool ServerRun::start(const std::vector<std::string>& arguments, const std::string& token) {
  int out[2], err[2];
  if (pipe(out) != 0 || pipe(err) != 0) return false;
  std::string program = std::string(AUX_BIN_DIR) + "/auxserve";
  // Everything the child needs is made before the fork.
  std::vector<std::string> environment;
  for (char** entry = environ; *entry; ++entry)
    if (strncmp(*entry, "AUXSERVE_TOKEN=", 15) != 0) environment.push_back(*entry);
  if (!token.empty()) environment.push_back("AUXSERVE_TOKEN=" + token);
  std::vector<char*> envp;
  for (std::string& entry : environment) envp.push_back(&entry[0]);
  envp.push_back(nullptr);
  std::vector<char*> argv{const_cast<char*>(program.c_str())};
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  pid = fork();
  if (pid == 0) {
    dup2(out[1], 1);
    dup2(err[1], 2);
    close(out[0]);
    close(err[0]);
    execve(program.c_str(), argv.data(), envp.data());
    _exit(127);
  }
  close(out[1]);
  close(err[1]);
  int err_fd = err[0];
  reader = std::thread([this, err_fd] {
    std::string chunk;
    for (;;) {
      chunk.clear();
      int got = readSome(err_fd, chunk, 200);
      if (got == 0) continue;
      if (got < 0) break;
      std::lock_guard<std::mutex> guard(lock);
      error_text += chunk;
    }
    close(err_fd);
  });
  std::string text;
  auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (text.find('\n') == std::string::npos && std::chrono::steady_clock::now() < deadline)
    if (readSome(out[0], text, 200) < 0) break;
  close(out[0]);
  first_line = text.substr(0, text.find('\n'));
  size_t colon = first_line.rfind(':');
  if (first_line.compare(0, 13, "listening on ") != 0 || colon == std::string::npos) return false;
  listening_port = atoi(first_line.c_str() + colon + 1);
  return listening_port > 0;
}

int ServerRun::reap(int seconds) {
  if (pid <= 0) return -1;
  for (int i = 0; i < seconds * 50; ++i) {
    int status = 0;
    if (waitpid(pid, &status, WNOHANG) == pid) {
      pid = -1;
      if (reader.joinable()) reader.join();
      return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
    usleep(20000);
  }
  kill(pid, SIGKILL);
  waitpid(pid, nullptr, 0);
  pid = -1;
  if (reader.joinable()) reader.join();
  return -1;
}

int ServerRun::stop(int signal) {
  if (pid > 0) kill(pid, signal);
  return reap(20);
}

int ServerRun::waitExit() { return reap(20); }

std::string ServerRun::errors() {
  std::lock_guard<std::mutex> guard(lock);
  return error_text;
}
