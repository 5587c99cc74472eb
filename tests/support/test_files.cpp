#include "tests/support/test_files.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

TempDir::TempDir() {
  const char* base = getenv("TMPDIR");
  std::string pattern = std::string(base && *base ? base : "/tmp") + "/auxtest-XXXXXX";
  char* made = mkdtemp(&pattern[0]);
  dir = made ? made : "/tmp";
}

TempDir::~TempDir() {
  std::string command = "rm -rf '" + dir + "'";
  if (dir != "/tmp" && system(command.c_str()) != 0) {
  }
}

std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream out;
  out << in.rdbuf();
  return out.str();
}

void writeFile(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

bool fileExists(const std::string& path) {
  struct stat st;
  return stat(path.c_str(), &st) == 0;
}

std::string testData(const std::string& name) { return std::string(AUX_TEST_DATA_DIR) + "/" + name; }

std::string runCommand(const std::string& command, int* exit_code) {
  std::string output;
  FILE* pipe = popen(command.c_str(), "r");
  if (!pipe) {
    *exit_code = -1;
    return output;
  }
  char buffer[4096];
  size_t n;
  while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0) output.append(buffer, n);
  int status = pclose(pipe);
  *exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return output;
}
