// The graph suites' fixtures: knowledge files under tests/data/graph loaded
// once per suite, their texts' elements, and traces of painting written out
// by hand in files there.
#ifndef TESTS_GRAPH_GRAPH_FIXTURE_H
#define TESTS_GRAPH_GRAPH_FIXTURE_H

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <cstdio>

#include "document/r_supertext.h"
#include "graph/r_graphcalculator.h"
#include "graph/r_graphcontainer.h"
#include "graph/r_graphreference.h"
#include "graph/r_textgraph.h"
#include "knowledge/r_file.h"
#include "proband/r_proband.h"
#include "tests/support/test_files.h"
#include "tests/support/xml_fakes.h"

typedef std::vector<std::string> Lines;

// The knowledge file tests/data/graph/`name`, loaded without a message.
inline R_File* loadKnowledge(const std::string& name) {
  R_File* file = new R_File();
  CollectingReporter reporter;
  EXPECT_TRUE(file->loadXML(testData("graph/" + name).c_str(), &reporter)) << ::testing::PrintToString(reporter.lines());
  return file;
}

// The first element of text `id` in `file`, sound and of `type`.
template <class T>
const T& element(const R_File& file, const std::string& id, int type) {
  int index = file.findText(id.c_str());
  EXPECT_GE(index, 0) << id;
  const R_Text& found = file.getText(index)->getElement(0);
  EXPECT_EQ(type, found.getType());
  EXPECT_TRUE(found.isOK());
  return static_cast<const T&>(found);
}

// Lines as one text, each ended by a line feed, so that a failure shows the
// lines that differ.
inline std::string joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

// The sections of tests/data/graph/`file`, in order: each from a line
// "== name" to the next, its lines without comment lines (#) and blank ones.
inline std::vector<std::pair<std::string, Lines>> sections(const std::string& file) {
  std::istringstream in(readFile(testData("graph/" + file)));
  std::vector<std::pair<std::string, Lines>> found;
  for (std::string line; std::getline(in, line);) {
    if (line.rfind("== ", 0) == 0) found.push_back({line.substr(3), {}});
    else if (!found.empty() && !line.empty() && line[0] != '#') found.back().second.push_back(line);
  }
  EXPECT_FALSE(found.empty()) << file;
  return found;
}

// The lines of section `name` of tests/data/graph/`file`, joined.
inline std::string traceSection(const std::string& file, const std::string& name) {
  for (const auto& section : sections(file))
    if (section.first == name) return joined(section.second);
  ADD_FAILURE() << "no section " << name;
  return "";
}

// A number as %g, "?" when undefined.
inline std::string numberText(const R_Number& number) {
  if (!number.isDefined()) return "?";
  char buffer[64];
  snprintf(buffer, sizeof buffer, "%g", number.getValue());
  return buffer;
}

// The stages before the layout of `graph`, or of its one block `only`, for
// the proband `who` at the age of 3.
struct GraphStages {
  GraphStages(const R_File& file, std::unique_ptr<R_Proband> who_in, const R_TextGraph& graph, int only = -1)
      : who(std::move(who_in)), container(graph.getBlockCount()) {
    for (int b = 0; b < graph.getBlockCount(); ++b)
      if (only < 0 || b == only) container.add(&graph.getBlock(b));
    EXPECT_TRUE(container.prepare());
    calculator.reset(new R_GraphCalculator(file, *who, R_Number(3.0), container));
    reference.reset(new R_GraphReference(container, *calculator, file, *who));
  }
  std::unique_ptr<R_Proband> who;
  R_GraphContainer container;
  std::unique_ptr<R_GraphCalculator> calculator;
  std::unique_ptr<R_GraphReference> reference;
};

// The knowledge file graphs.xml with its graphs, and the probands boy.xml
// and girl.xml beside it.
class GraphTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { file = loadKnowledge("graphs.xml"); }
  static void TearDownTestSuite() { delete file; }

  std::unique_ptr<R_Proband> proband(const std::string& name) {
    std::unique_ptr<R_Proband> loaded(new R_Proband(file));
    EXPECT_TRUE(loaded->loadXML(readFile(testData("graph/" + name + ".xml")).c_str())) << name;
    return loaded;
  }
  const R_TextGraph& graph(const std::string& id) { return element<R_TextGraph>(*file, id, R_Text::typeGraph); }

  static inline R_File* file = nullptr;
};

#endif
