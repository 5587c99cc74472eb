// Cases of a table kept as data under tests/data/: an input and the lines
// expected from it. A case opens with a "case" line and its label; "in"
// lines append their text to the input, "nl" lines their text and a line
// feed; "out" lines are the expected lines in order. Lines starting with
// '#' and blank lines are comments.
#ifndef TESTS_KNOWLEDGE_CASE_FILE_H
#define TESTS_KNOWLEDGE_CASE_FILE_H

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "tests/support/test_files.h"

struct TextCase {
  std::string label, input;
  std::vector<std::string> out;
};

// The cases of tests/data/`name`; a file without cases fails the test.
inline std::vector<TextCase> readCases(const std::string& name) {
  std::istringstream text(readFile(testData(name)));
  std::vector<TextCase> cases;
  std::string line;
  while (std::getline(text, line)) {
    std::string key = line.substr(0, line.find(' ')), rest = line.size() > key.size() ? line.substr(key.size() + 1) : "";
    if (key == "case") cases.push_back(TextCase{rest, "", {}});
    if (cases.empty() || key == "case") continue;
    if (key == "in") cases.back().input += rest;
    if (key == "nl") cases.back().input += rest + "\n";
    if (key == "out") cases.back().out.push_back(rest);
  }
  EXPECT_FALSE(cases.empty()) << name;
  return cases;
}

#endif
