// A knowledge file on disk for the suites that load whole files: the
// fixture minimal.xml, or small files written from lines.
#ifndef TESTS_KNOWLEDGE_KNOWLEDGE_FILE_FIXTURE_H
#define TESTS_KNOWLEDGE_KNOWLEDGE_FILE_FIXTURE_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "knowledge/r_file.h"
#include "tests/support/test_files.h"
#include "tests/support/xml_fakes.h"

// The lines of a small valid file up to its variables: line 1 opens
// `quorl`, line 2 is `info`, line 3 `graphlines`, line 4 the age variable.
inline std::vector<std::string> smallFileHead() {
  return {
      "<quorl>",
      "<info><filename>f.xml</filename><copyright>c</copyright></info>",
      "<graphlines><sdslines><list><item value=\"0\">M</item></list></sdslines>"
      "<percentilelines><list><item value=\"50\">P</item></list></percentilelines></graphlines>",
      "<var><id>AGE</id><properties type=\"age\" scope=\"followed\" data=\"real\"/><name>Age</name></var>",
  };
}

// Each line followed by a line feed.
inline std::string joinLines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

class KnowledgeFileTest : public ::testing::Test {
 protected:
  std::string minimalPath() const { return testData("knowledge/minimal.xml"); }

  // Writes `text` as the file `name` in the temporary directory.
  std::string write(const std::string& name, const std::string& text) {
    std::string path = dir.file(name);
    writeFile(path, text);
    return path;
  }

  // Loads the XML file at `path` into `file`; answers the reported lines.
  std::vector<std::string> loadXML(R_File& file, const std::string& path) {
    CollectingReporter reporter;
    bool ok = file.loadXML(path.c_str(), &reporter);
    EXPECT_EQ(ok, file.isOK());
    return reporter.lines();
  }

  TempDir dir;
};

#endif
