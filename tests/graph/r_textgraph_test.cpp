#include "graph/r_textgraph.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "graph/r_graphblockdata.h"
#include "graph/r_graphplot.h"
#include "graph/r_textauxogram.h"
#include "tests/graph/graph_fixture.h"
#include "tests/knowledge/knowledge_test_support.h"

namespace {

// Graphs and auxograms alike, each case in definitions.txt.
TEST(TextGraphTest, DamagedDefinitionsAreRefusedWithTheirMessagesInnermostFirst) {
  for (const auto& row : sections("definitions.txt")) {
    SCOPED_TRACE(row.first);
    NamedStatistics statistics({"AGE", "HEIGHT", "WEIGHT", "HT_SDS"});
    CollectingReporter reporter;
    R_SuperText text;
    EXPECT_EQ(row.second.size() == 1, text.loadXML(("<id>T</id>" + row.second[0]).c_str(), statistics, &reporter));
    EXPECT_EQ(Lines(row.second.begin() + 1, row.second.end()), reporter.lines());
  }
}

TEST(TextGraphTest, PlotAttributesSetTheirFlags) {
  typedef R_GraphPlot P;
  const struct {
    const char* attributes;
    int flags;
  } rows[] = {
      {"", P::flagPrimary | P::flagMarks},  // no lines, marks drawn
      {"type=\"primary\"", P::flagPrimary | P::flagMarks},
      {"type=\"secundary\"", P::flagPrimary | P::flagMarks},
      {"type=\"secondary\"", P::flagMarks},
      {"marks=\"no\" connect=\"yes\"", P::flagPrimary | P::flagConnected},
      {"marks=\"No\" connect=\"YES\"", P::flagPrimary | P::flagMarks},
      {"size=\"small\" arrow=\"WEIGHT\"", P::flagPrimary | P::flagMarks | P::flagSmall | P::flagArrow},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.attributes);
    NamedStatistics statistics({"AGE", "HEIGHT", "WEIGHT"});
    R_SuperText text;
    ASSERT_TRUE(text.loadXML((std::string("<id>T</id><graph><caption>C</caption><block var=\"HEIGHT\" priority=\"1\">"
                                          "<refdata sex=\"male\"/><plot method=\"HEIGHT\" ") +
                              row.attributes + "/></block></graph>").c_str(), statistics, nullptr));
    EXPECT_EQ(row.flags, static_cast<const R_TextGraph&>(text.getElement(0)).getBlock(0).getPlot(0).getFlags());
  }
}

// Loads a fresh T from `stream`; answers what it saves then, or nothing
// when the load failed.
template <class T>
Bytes reloadedSound(R_InputStream& stream, bool* ok) {
  T again;
  again.load(stream, ok);
  EXPECT_EQ(*ok, again.isOK());
  return *ok ? savedBytes(again) : Bytes();
}

// The sections of binary_forms.txt about `kind`, an element T over the
// variables `names`.
template <class T>
void expectForms(const std::string& kind, std::initializer_list<const char*> names) {
  NamedStatistics statistics(names);
  for (const auto& row : sections("binary_forms.txt")) {
    if (row.first.rfind(kind, 0) != 0) continue;
    SCOPED_TRACE(row.first);
    const bool pinned = row.first == kind + " pinned";
    std::string hex;
    for (size_t i = pinned ? 1 : 0; i < row.second.size(); ++i) hex += row.second[i] + " ";
    T element;
    if (pinned) {
      element.loadText(row.second[0].c_str(), statistics, nullptr);
      ASSERT_TRUE(element.isOK());
      expectPinnedForm(hex, savedBytes(element), reloadedSound<T>);
    } else {
      const bool loads = row.first.find(" loads: ") != std::string::npos;
      EXPECT_EQ(loads, loadFrom(bytesOf(hex), &element));
      EXPECT_EQ(loads, element.isOK());
    }
  }
}

TEST(TextGraphTest, StoredFormsArePinnedAndDamagedOnesFail) {
  expectForms<R_TextGraph>("graph", {"AGE", "HEIGHT"});
  expectForms<R_TextAuxogram>("auxogram", {"AGE", "HT_SDS"});
}

TEST(TextGraphTest, TheXMLFormSpellsOutEveryAttributeInItsOrder) {
  NamedStatistics statistics({"AGE", "HEIGHT", "WEIGHT"});
  R_SuperText text;
  ASSERT_TRUE(text.loadXML(
      "<id>T</id><graph><block var=\"weight\" priority=\"3\" analysed=\"sd\"><targetrange><targetpoint name=\"hi\" "
      "method=\"2\"/></targetrange><plot method=\"weight\" type=\"secondary\" size=\"small\" arrow=\"height\"/>"
      "<condition if=\"height\"/></block><caption> A  graph </caption><block var=\"HEIGHT\" priority=\"1\">"
      "<refdata age=\"7,5\" x_from=\"2\" x_to=\"18\" show=\"no\"/></block></graph>",
      statistics, nullptr));
  const std::string xml =
      "<id>T</id><toc></toc><graph><caption>A graph</caption>"
      "<block var=\"WEIGHT\" analysed=\"sd\" priority=\"3\"><condition if=\"HEIGHT:\" />"
      "<plot method=\"WEIGHT:\" connect=\"no\" size=\"small\" marks=\"yes\" type=\"secondary\" arrow=\"HEIGHT:\" />"
      "<targetrange><targetpoint name=\"hi\" method=\"2\" /></targetrange></block>"
      "<block var=\"HEIGHT\" priority=\"1\"><refdata age=\"7.5\" show=\"no\" x_from=\"2\" x_to=\"18\" /></block>"
      "</graph>";
  EXPECT_EQ(xml, xmlWrittenBy([&](R_XMLTextOutput& out) { text.saveXML(out, statistics); }));
  R_SuperText again;
  ASSERT_TRUE(again.loadXML(xml.c_str(), statistics, nullptr));
  EXPECT_EQ(xml, xmlWrittenBy([&](R_XMLTextOutput& out) { again.saveXML(out, statistics); }));
}

// Kept on purpose: after a binary load every block has reference data, so
// the block analysed "sd" without `refdata` gains one, and nothing else
// changes.
TEST_F(GraphTest, TheFileKeepsItsGraphsThroughBothForms) {
  TempDir dir;
  ASSERT_TRUE(file->saveXML(dir.file("a.xml").c_str()) && file->saveBinary(dir.file("a.bin").c_str()));
  R_File from_xml, from_binary;
  ASSERT_TRUE(from_xml.loadXML(dir.file("a.xml").c_str(), nullptr) && from_xml.saveXML(dir.file("b.xml").c_str()));
  ASSERT_TRUE(from_binary.loadBinary(dir.file("a.bin").c_str()) && from_binary.saveXML(dir.file("c.xml").c_str()));
  std::string xml = readFile(dir.file("a.xml"));
  EXPECT_EQ(xml, readFile(dir.file("b.xml")));
  const std::string sd_block = "<block var=\"TARGET_HT\" analysed=\"sd\" priority=\"2\">\n";
  size_t at = xml.find(sd_block);
  ASSERT_NE(std::string::npos, at);
  xml.insert(at + sd_block.size(), "    <refdata show=\"no\" />\n");
  EXPECT_EQ(xml, readFile(dir.file("c.xml")));
}

}  // namespace
