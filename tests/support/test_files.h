// Small helpers for tests that read and write real files.
#ifndef TESTS_SUPPORT_TEST_FILES_H
#define TESTS_SUPPORT_TEST_FILES_H

#include <string>

// A fresh directory under the system's temporary directory, removed with
// its contents when the object goes.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::string& path() const { return dir; }
  // The path of `name` inside the directory.
  std::string file(const std::string& name) const { return dir + "/" + name; }

 private:
  std::string dir;
};

// Whole-file helpers; readFile answers "" for a missing file.
std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& bytes);
bool fileExists(const std::string& path);
// The path of a fixture under tests/data.
std::string testData(const std::string& name);

// Runs a shell command, capturing standard output; `exit_code` gets the
// program's exit status.
std::string runCommand(const std::string& command, int* exit_code);

#endif
