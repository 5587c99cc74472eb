// The graph suites' fixture: the knowledge file tests/data/graph/graphs.xml
// with its graphs, and the probands boy.xml and girl.xml beside it.
#ifndef TESTS_GRAPH_GRAPH_FIXTURE_H
#define TESTS_GRAPH_GRAPH_FIXTURE_H

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "document/r_supertext.h"
#include "graph/r_textgraph.h"
#include "knowledge/r_file.h"
#include "proband/r_proband.h"
#include "tests/support/test_files.h"
#include "tests/support/xml_fakes.h"

class GraphTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    file = new R_File();
    CollectingReporter reporter;
    bool loaded = file->loadXML(testData("graph/graphs.xml").c_str(), &reporter);
    EXPECT_TRUE(loaded) << ::testing::PrintToString(reporter.lines());
  }
  static void TearDownTestSuite() {
    delete file;
    file = nullptr;
  }

  std::unique_ptr<R_Proband> proband(const std::string& name) {
    std::unique_ptr<R_Proband> loaded(new R_Proband(file));
    EXPECT_TRUE(loaded->loadXML(readFile(testData("graph/" + name + ".xml")).c_str())) << name;
    return loaded;
  }

  // The graph that is the first element of text `id`.
  const R_TextGraph& graph(const std::string& id) {
    int index = file->findText(id.c_str());
    EXPECT_GE(index, 0) << id;
    const R_Text& element = file->getText(index)->getElement(0);
    EXPECT_EQ(R_Text::typeGraph, element.getType());
    EXPECT_TRUE(element.isOK());
    return static_cast<const R_TextGraph&>(element);
  }

  static inline R_File* file = nullptr;
};

#endif
