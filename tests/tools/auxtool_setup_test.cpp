// Runs the built `auxtool setup` on setup files and compares its whole
// output and exit code.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/support/test_files.h"

namespace {

std::string auxtoolSetup(const std::string& arguments, int* exit_code) {
  return runCommand(std::string(AUX_BIN_DIR) + "/auxtool setup " + arguments + " 2>/dev/null", exit_code);
}

}  // namespace

TEST(AuxtoolSetupTest, ListsEveryKeyWithItsOriginAndWarnsOfNamesThatAreNoKey) {
  int exit_code = -1;
  std::string output = auxtoolSetup(testData("page/setup.txt"), &exit_code);
  EXPECT_EQ(0, exit_code);
  EXPECT_EQ(readFile(testData("page/setup_expected.txt")), output);
}

TEST(AuxtoolSetupTest, AnEmptyFileGivesEveryDefaultAndAMissingOneExitsWith1) {
  TempDir dir;
  writeFile(dir.file("empty.txt"), "");
  int exit_code = -1;
  std::string output = auxtoolSetup(dir.file("empty.txt"), &exit_code);
  EXPECT_EQ(0, exit_code);
  EXPECT_EQ(109, std::count(output.begin(), output.end(), '\n'));
  EXPECT_NE(std::string::npos, output.find("\n3 int graph-optimal-width = 512 (default)\n"));
  EXPECT_EQ(std::string::npos, output.find("(file)"));
  EXPECT_EQ("", auxtoolSetup(dir.file("missing.txt"), &exit_code));
  EXPECT_EQ(1, exit_code);
  auxtoolSetup("a b", &exit_code);
  EXPECT_EQ(2, exit_code);
}
