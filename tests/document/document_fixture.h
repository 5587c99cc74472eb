// The document suites' fixture: the knowledge file tests/data/document/report.xml with its texts, the probands
// boy.xml and girl.xml beside it, and traces of texts written for them through a RecordingOutput.
#ifndef TESTS_DOCUMENT_DOCUMENT_FIXTURE_H
#define TESTS_DOCUMENT_DOCUMENT_FIXTURE_H

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "core/r_number.h"
#include "document/r_supertext.h"
#include "knowledge/r_file.h"
#include "proband/r_proband.h"
#include "tests/support/recording_output.h"
#include "tests/support/test_files.h"
#include "tests/support/xml_fakes.h"

typedef std::vector<std::string> Lines;

class DocumentTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    file = new R_File();
    EXPECT_TRUE(file->loadXML(testData("document/report.xml").c_str(), nullptr));
  }
  static void TearDownTestSuite() { delete file; }

  // The proband tests/data/document/<name>.xml, for `knowledge` (default: the fixture's file).
  std::unique_ptr<R_Proband> proband(const std::string& name, const R_File* knowledge = nullptr) {
    std::unique_ptr<R_Proband> loaded(new R_Proband(knowledge ? knowledge : file));
    EXPECT_TRUE(loaded->loadXML(readFile(testData("document/" + name + ".xml")).c_str())) << name;
    return loaded;
  }

  // The calls that text `id` makes, written at depth 0 for the proband `who` aged 3 years today.
  Lines traceOf(const std::string& id, const std::string& who) {
    int index = file->findText(id.c_str());
    EXPECT_GE(index, 0) << id;
    if (index < 0) return {};
    output.clear();
    file->getText(index)->write(*file, *proband(who), R_Number(3.0), output, 0);
    return output.calls();
  }

  static inline R_File* file = nullptr;
  RecordingOutput output;
};

// The writeChar lines of `text` in font state `state`.
inline Lines chars(int state, const std::string& text) {
  Lines lines;
  for (char c : text) lines.push_back("writeChar " + std::to_string(state) + " '" + c + "'");
  return lines;
}

// The lines of all the parts, in order.
inline Lines join(std::initializer_list<Lines> parts) {
  Lines lines;
  for (const auto& part : parts) lines.insert(lines.end(), part.begin(), part.end());
  return lines;
}

// The lines of table row `r` in mode `m` with cells of `texts`; a null text is a separator cell.
inline Lines tableRow(int r, std::initializer_list<const char*> texts, int m = 1) {
  const std::string at = std::to_string(r) + " ", mode = " " + std::to_string(m);
  Lines lines = {"beginRow " + at + std::to_string(m)};
  int c = 0;
  for (const char* text : texts) {
    std::string rc = at + std::to_string(c++);
    const std::string cell = "Cell " + rc + mode;
    if (!text) lines.push_back("writeSeparatorCell " + rc + mode);
    else lines.insert(lines.end(), {"begin" + cell, "writeCell " + rc + " \"" + text + "\"", "end" + cell});
  }
  lines.push_back("endRow " + at + std::to_string(m));
  return lines;
}

#endif
