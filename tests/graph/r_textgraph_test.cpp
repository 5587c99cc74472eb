#include "graph/r_textgraph.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "graph/r_graphblockdata.h"
#include "graph/r_graphplot.h"
#include "tests/graph/graph_fixture.h"
#include "tests/knowledge/knowledge_test_support.h"

namespace {

typedef std::vector<std::string> Lines;

// The messages of loading `content` as the only element of a text, a graph.
Lines loadMessages(const std::string& content) {
  NamedStatistics statistics({"AGE", "HEIGHT", "WEIGHT"});
  CollectingReporter reporter;
  R_SuperText text;
  bool ok = text.loadXML(("<id>T</id><graph>" + content + "</graph>").c_str(), statistics, &reporter);
  EXPECT_EQ(ok, reporter.lines().empty());
  return reporter.lines();
}

const std::string kRef = "<refdata sex=\"male\"/>";

// A block of HEIGHT with `attributes` after var and `content` inside.
std::string block(const std::string& attributes, const std::string& content) {
  return "<caption>C</caption><block var=\"HEIGHT\"" + attributes + ">" + content + "</block>";
}

// A block of priority 1 with reference data and `content`.
std::string plain(const std::string& content) { return block(" priority=\"1\"", kRef + content); }

TEST(TextGraphTest, DamagedDefinitionsAreRefusedWithTheirMessagesInnermostFirst) {
  const std::string range = "<targetrange><targetpoint name=\"a\" method=\"1\"/><targetpoint name=\"b\" method=\"2\"/>";
  const std::string plot = "<plot method=\"HEIGHT\"/>";
  const std::string interval = "priority not in allowed interval (0,1000)";
  // Each row's lines come before those of the block (if marked), the graph
  // and the text.
  const struct {
    const char* what;
    std::string content;
    Lines messages;
    bool in_block;
  } rows[] = {
      {"a good graph", block(" priority=\"1\"", kRef) + block(" priority=\"1000\"", kRef + plot), {}, false},
      {"analysed sd without refdata", block(" priority=\"3\" analysed=\"sd\"", plot), {}, false},
      {"no blocks", "<caption>C</caption>", {"no blocks defined"}, false},
      {"no caption", "<block var=\"HEIGHT\" priority=\"1\">" + kRef + "</block>", {"no caption defined"}, false},
      {"a blank caption", "<caption> </caption>" + plain(""),
       {"data error closing block </caption>: graph caption undefined"}, false},
      {"priority 0", block(" priority=\"0\"", kRef), {"data error closing block </block>: " + interval}, false},
      {"priority 1001", block(" priority=\"1001\"", kRef), {"data error closing block </block>: " + interval}, false},
      {"a priority not a number", block(" priority=\"high\"", kRef),
       {"data error closing block </block>: " + interval}, false},
      {"no priority", block("", kRef), {"data error closing block </block>: priority undefined"}, false},
      {"the variable with index 0", "<caption>C</caption><block var=\"age\" priority=\"1\">" + kRef + "</block>",
       {"data error closing block </block>: wrong block variable"}, false},
      {"an unknown variable", "<caption>C</caption><block var=\"NOPE\" priority=\"1\">" + kRef + "</block>",
       {"data error closing block </block>: wrong block variable"}, false},
      {"no refdata", block(" priority=\"1\"", plot), {"reference data must be defined in plot"}, true},
      {"an empty block", block(" priority=\"1\" analysed=\"sd\"", ""), {"no input data"}, true},
      {"two refdata", plain(kRef), {"<refdata../>: only one instance of reference data allowed"}, true},
      {"a plot without method", plain("<plot connect=\"yes\"/>"), {"<plot../>: plot definition error"}, true},
      {"a wrong arrow", plain("<plot method=\"HEIGHT\" arrow=\"NOPE\"/>"), {"<plot../>: plot definition error"}, true},
      {"two target points", plain("<targetpoint name=\"a\" method=\"1\"/><targetpoint name=\"b\" method=\"2\"/>"),
       {"<targetpoint../>: only one target point allowed"}, true},
      {"a target point without name", plain("<targetpoint method=\"1\"/>"), {"<targetpoint../>: target point error"},
       true},
      {"three points in a range", plain(range + "<targetpoint name=\"c\" method=\"3\"/></targetrange>"),
       {"<targetpoint../>: only two points in target range allowed"}, true},
      {"a wrong range point", plain("<targetrange><targetpoint name=\"a\" method=\"NOPE\"/></targetrange>"),
       {"<targetpoint../>: target range error"}, true},
      {"two conditions", plain("<condition if=\"1\"/><condition if=\"2\"/>"),
       {"<condition../>: duplicate condition"}, true},
      {"a condition without if", plain("<condition/>"), {"<condition../>: no method defined in condition"}, true},
      {"a wrong condition", plain("<condition if=\"NOPE\"/>"), {"<condition../>: wrong condition format"}, true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    Lines expected = row.messages;
    if (row.in_block) {
      // Faults of the block's own elements arrive as standalone tags.
      if (expected[0][0] == '<') expected[0] = "data error processing standalone tag " + expected[0];
      expected.push_back("data error closing block </block>: block load error");
    }
    if (!expected.empty()) {
      expected.push_back("data error closing block </graph>: text block data error");
      expected.push_back("Error while processing text.");
    }
    EXPECT_EQ(expected, loadMessages(row.content));
  }
}

TEST(TextGraphTest, PlotAttributesSetTheirFlags) {
  const struct {
    const char* attributes;
    int flags;
  } rows[] = {
      {"", R_GraphPlot::flagPrimary | R_GraphPlot::flagMarks},  // no lines, marks drawn
      {"type=\"primary\"", R_GraphPlot::flagPrimary | R_GraphPlot::flagMarks},
      {"type=\"secundary\"", R_GraphPlot::flagPrimary | R_GraphPlot::flagMarks},
      {"type=\"secondary\"", R_GraphPlot::flagMarks},
      {"marks=\"no\" connect=\"yes\"", R_GraphPlot::flagPrimary | R_GraphPlot::flagConnected},
      {"marks=\"No\" connect=\"YES\"", R_GraphPlot::flagPrimary | R_GraphPlot::flagMarks},
      {"size=\"small\" arrow=\"WEIGHT\"",
       R_GraphPlot::flagPrimary | R_GraphPlot::flagMarks | R_GraphPlot::flagSmall | R_GraphPlot::flagArrow},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.attributes);
    NamedStatistics statistics({"AGE", "HEIGHT", "WEIGHT"});
    R_SuperText text;
    std::string xml = plain(std::string("<plot method=\"HEIGHT\" ") + row.attributes + "/>");
    ASSERT_TRUE(text.loadXML(("<id>T</id><graph>" + xml + "</graph>").c_str(), statistics, nullptr));
    const R_TextGraph& graph = static_cast<const R_TextGraph&>(text.getElement(0));
    EXPECT_EQ(row.flags, graph.getBlock(0).getPlot(0).getFlags());
  }
}

// One block of HEIGHT (index 1), priority 7: the girls' reference, shown;
// a primary plot of the heights, joined; the target point "T" at 1.
const char* const kSmallGraph =
    "<caption>G</caption><block var=\"HEIGHT\" priority=\"7\"><refdata sex=\"female\" show=\"yes\"/>"
    "<plot method=\"HEIGHT\" connect=\"yes\"/><targetpoint name=\"T\" method=\"1\"/></block>";
const char* const kSmallHex =
    "01 01 00 47"                                    // caption "G"
    " 02 01 00 00 00"                                // one block
    " 02 01 00 00 00 02 00 00 00 00 02 07 00 00 00"  // var 1, analysed 0, priority 7
    " 02 01 00 00 00"                                // one plot
    " 06 00"                                         // no condition
    " 02 0E 00 00 00 03 00 03 00 03 00"              // refdata: female 2 + show 4 + defined 8; no numbers
    " 01 01 01 00 54"                                // target point "T"
    " 06 01 02 00 00 00 00 02 01 00 00 00 01 01 00 31"  // "1": no references, one text
    " 00 00"                                         // no target range
    " 02 23 00 00 00"                                // joined 1 + primary 2 + marks 32
    " 06 01 02 01 00 00 00 02 01 00 00 00 02 01 00 00 00 01 00 00 01 02 00 40 41";  // HEIGHT, no chain, "@A"

TEST(TextGraphTest, TheBinaryFormIsPinned) {
  NamedStatistics statistics({"AGE", "HEIGHT"});
  R_TextGraph graph;
  graph.loadText(kSmallGraph, statistics, nullptr);
  ASSERT_TRUE(graph.isOK());
  expectPinnedForm(kSmallHex, savedBytes(graph), [](R_InputStream& stream, bool* ok) {
    R_TextGraph again;
    again.load(stream, ok);
    EXPECT_EQ(*ok, again.isOK());
    return *ok ? savedBytes(again) : Bytes();
  });
}

TEST(TextGraphTest, DamagedBinaryFormsFail) {
  std::string head = "01 01 00 47 02 01 00 00 00 ";
  const std::string rest = " 02 00 00 00 00 06 00 02 00 00 00 00 03 00 03 00 03 00 00 00 00";
  const struct {
    const char* what;
    std::string hex;
    bool ok;
  } rows[] = {
      {"a block without plots", head + "02 01 00 00 00 02 01 00 00 00 02 01 00 00 00" + rest, true},
      {"no blocks", "01 01 00 47 02 00 00 00 00", false},
      {"variable 0", head + "02 00 00 00 00 02 00 00 00 00 02 01 00 00 00" + rest, false},
      {"analysed 2", head + "02 01 00 00 00 02 02 00 00 00 02 01 00 00 00" + rest, false},
      {"priority 0", head + "02 01 00 00 00 02 00 00 00 00 02 00 00 00 00" + rest, false},
      {"priority 1001", head + "02 01 00 00 00 02 00 00 00 00 02 E9 03 00 00" + rest, false},
      {"a negative plot count", head + "02 01 00 00 00 02 00 00 00 00 02 01 00 00 00 02 FF FF FF FF" +
       rest.substr(15), false},
      {"a plot without method", head + "02 01 00 00 00 02 00 00 00 00 02 01 00 00 00 02 01 00 00 00" +
       rest.substr(15) + " 02 02 00 00 00 06 00", false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    R_TextGraph graph;
    EXPECT_EQ(row.ok, loadFrom(bytesOf(row.hex), &graph));
    EXPECT_EQ(row.ok, graph.isOK());
  }
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

TEST_F(GraphTest, TheFileKeepsItsGraphsThroughBothForms) {
  TempDir dir;
  ASSERT_TRUE(file->saveXML(dir.file("a.xml").c_str()));
  ASSERT_TRUE(file->saveBinary(dir.file("a.bin").c_str()));
  R_File from_xml;
  ASSERT_TRUE(from_xml.loadXML(dir.file("a.xml").c_str(), nullptr));
  ASSERT_TRUE(from_xml.saveXML(dir.file("b.xml").c_str()));
  EXPECT_EQ(readFile(dir.file("a.xml")), readFile(dir.file("b.xml")));
  EXPECT_NE(std::string::npos, readFile(dir.file("a.xml")).find("<targetrange>"));
  R_File from_binary;
  ASSERT_TRUE(from_binary.loadBinary(dir.file("a.bin").c_str()));
  ASSERT_TRUE(from_binary.saveBinary(dir.file("b.bin").c_str()));
  ASSERT_TRUE(from_binary.saveXML(dir.file("c.xml").c_str()));
  R_File again;
  ASSERT_TRUE(again.loadBinary(dir.file("b.bin").c_str()));
  ASSERT_TRUE(again.saveBinary(dir.file("c.bin").c_str()));
  EXPECT_EQ(readFile(dir.file("b.bin")), readFile(dir.file("c.bin")));
  // Kept on purpose: after a binary load every block has reference data, so
  // the block analysed "sd" without `refdata` gains one, and nothing else
  // changes.
  std::string xml = readFile(dir.file("a.xml"));
  const std::string sd_block = "<block var=\"TARGET_HT\" analysed=\"sd\" priority=\"2\">\n";
  size_t at = xml.find(sd_block);
  ASSERT_NE(std::string::npos, at);
  xml.insert(at + sd_block.size(), "    <refdata show=\"no\" />\n");
  EXPECT_EQ(xml, readFile(dir.file("c.xml")));
}

TEST(TextGraphTest, ADamagedGraphInAFileNamesItsLines) {
  TempDir dir;
  std::string text = readFile(testData("graph/graphs.xml"));
  size_t at = text.find("priority=\"30\"");
  ASSERT_NE(std::string::npos, at);
  text.replace(at, 13, "priority=\"0\"");
  writeFile(dir.file("bad.xml"), text);
  R_File bad;
  CollectingReporter reporter;
  EXPECT_FALSE(bad.loadXML(dir.file("bad.xml").c_str(), &reporter));
  // The text's own lines come from parses over strings and carry no line;
  // the file's parser names the line of the text's end tag.
  long text_end = static_cast<long>(text.find("</text>", at));
  int line = static_cast<int>(std::count(text.begin(), text.begin() + text_end, '\n')) + 1;
  std::string last = "(" + std::to_string(std::count(text.begin(), text.end(), '\n') + 1) + ") ";
  Lines expected = {"data error closing block </block>: priority not in allowed interval (0,1000)",
                    "data error closing block </graph>: text block data error", "Error while processing text.",
                    "(" + std::to_string(line) + ") data error closing block </text>: error loading text",
                    last + "Data not loaded", last + "Error while processing file."};
  EXPECT_EQ(expected, reporter.lines());
}

// The graph seeds of the knowledge file fuzz targets: the good one loads,
// each damaged one is refused with the lines of its fault, then those of
// the graph, the text (at the line of its end tag) and the file (at the
// last line).
TEST(TextGraphTest, DamagedGraphSeedsAreRefusedWithTheirMessages) {
  const std::string graph = "data error closing block </graph>: text block data error";
  const std::string block = "data error closing block </block>: block load error";
  const struct {
    const char* name;
    Lines fault;
  } rows[] = {
      {"good", {}},
      {"damaged-priority", {"data error closing block </block>: priority not in allowed interval (0,1000)", graph}},
      {"damaged-range",
       {"data error processing standalone tag <targetpoint../>: only two points in target range allowed", block,
        graph}},
      {"damaged-refdata", {"reference data must be defined in plot", block, graph}},
      {"damaged-caption", {"no caption defined", graph}},
      {"damaged-plot", {"data error processing standalone tag <plot../>: plot definition error", block, graph}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const std::string path = testData(std::string("../../fuzz/seeds/knowledge_xml/graph-") + row.name + ".xml");
    const std::string text = readFile(path);
    ASSERT_FALSE(text.empty());
    R_File file;
    CollectingReporter reporter;
    EXPECT_EQ(row.fault.empty(), file.loadXML(path.c_str(), &reporter));
    Lines expected = row.fault;
    if (!expected.empty()) {
      const auto line_of = [&text](size_t at) {
        return "(" + std::to_string(std::count(text.begin(), text.begin() + static_cast<long>(at), '\n') + 1) + ") ";
      };
      const std::string last = line_of(text.size());
      expected.push_back("Error while processing text.");
      expected.push_back(line_of(text.find("</text>")) + "data error closing block </text>: error loading text");
      expected.push_back(last + "Data not loaded");
      expected.push_back(last + "Error while processing file.");
    }
    EXPECT_EQ(expected, reporter.lines());
  }
}

}  // namespace
