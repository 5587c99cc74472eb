#include "tests/tools/auxserve_run.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

ServerRun::~ServerRun() {
  if (pid > 0) stop(SIGKILL);
}

bool ServerRun::start(const std::vector<std::string>& arguments, const std::string& token) {
  // env takes the token out of the inherited environment, or puts ours in.
  std::vector<std::string> words = {"env", "-u", "AUXSERVE_TOKEN"};
  if (!token.empty()) words.push_back("AUXSERVE_TOKEN=" + token);
  words.push_back(std::string(AUX_BIN_DIR) + "/auxserve");
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(&word[0]);
  argv.push_back(nullptr);
  const std::string out = dir.file("out"), err = dir.file("err");
  pid = fork();
  if (pid == 0) {
    dup2(open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 1);
    dup2(open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 2);
    execv("/usr/bin/env", argv.data());
    _exit(127);
  }
  std::string text;
  for (int i = 0; i < 1000 && text.find('\n') == std::string::npos && !ended(); ++i) {
    usleep(20000);
    text = readFile(out);
  }
  first_line = text.substr(0, text.find('\n'));
  size_t colon = first_line.rfind(':');
  if (first_line.compare(0, 13, "listening on ") != 0 || colon == std::string::npos) return false;
  listening_port = atoi(first_line.c_str() + colon + 1);
  return listening_port > 0;
}

bool ServerRun::ended() {
  int status = 0;
  if (pid <= 0 || waitpid(pid, &status, WNOHANG) != pid) return pid <= 0;
  exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  pid = -1;
  return true;
}

int ServerRun::stop(int signal) {
  if (pid > 0 && signal != 0) kill(pid, signal);
  for (int i = 0; i < 1000 && !ended(); ++i) usleep(20000);
  if (pid > 0) {
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
    pid = -1;
    exit_code = -1;
  }
  return exit_code;
}
