#include "knowledge/r_granularity.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/knowledge/case_file.h"
#include "tests/knowledge/knowledge_test_support.h"
#include "tests/support/xml_fakes.h"

namespace {

std::vector<std::string> load(R_Granularity& variant, const char* xml) {
  CollectingReporter reporter;
  EXPECT_EQ(reporter.lines().empty(), variant.loadXML(xml, &reporter));
  return reporter.lines();
}

}  // namespace

// The XML form holds each defined axis, X first, attributes in fixed order.
TEST(GranularityTest, LoadAcceptsEitherAxisOrBothAndTheXMLFormHoldsEachDefinedAxis) {
  const struct { const char* xml; const char* written; } rows[] = {
      {"<xaxe from=\"0\" to=\"18\" step=\"1\" small=\"0.25\"/>",
       "<xaxe from=\"0\" to=\"18\" step=\"1\" small=\"0.25\" />"},
      {"<yaxe step=\"10\" to=\"200\" from=\"40\"/>", "<yaxe from=\"40\" to=\"200\" step=\"10\" />"},
      {"<yaxe from=\"-3\" to=\"3\" step=\"0,5\" small=\"0.1\"/><xaxe from=\"2\" to=\"4\" step=\"-1\"/>",
       "<xaxe from=\"2\" to=\"4\" step=\"-1\" /><yaxe from=\"-3\" to=\"3\" step=\"0.5\" small=\"0.1\" />"},
      {"<xaxe from=\"9\" to=\"10\" step=\"1\"/><xaxe from=\"0\" to=\"1\" step=\"1\"></xaxe>",
       "<xaxe from=\"0\" to=\"1\" step=\"1\" />"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.xml);
    R_Granularity g;
    EXPECT_EQ(std::vector<std::string>(), load(g, row.xml));
    const std::string written = xmlWrittenBy([&](R_XMLTextOutput& output) { g.saveXML(output); });
    EXPECT_EQ(row.written, written);
    bool x = written.find("<xaxe") != std::string::npos, y = written.find("<yaxe") != std::string::npos;
    EXPECT_EQ(x, g.isXDefined());
    EXPECT_EQ(y, g.isYDefined());
    EXPECT_EQ(x && y, g.isDefined());
  }
}

TEST(GranularityTest, LoadRefusesNearMissesWithTheirMessages) {
  for (const TextCase& row : readCases("knowledge/granularity_messages.txt")) {
    SCOPED_TRACE(row.input);
    R_Granularity variant;
    EXPECT_EQ(row.out, load(variant, row.input.c_str()));
  }
}

TEST(GranularityTest, CoversWhenTheRangeHoldsTheAskedRange) {
  R_Granularity variant;
  load(variant, "<xaxe from=\"0\" to=\"18\" step=\"1\"/>");
  EXPECT_TRUE(variant.coversX(0, 18));
  EXPECT_TRUE(variant.coversX(2, 5));
  EXPECT_FALSE(variant.coversX(-0.5, 5));
  EXPECT_FALSE(variant.coversX(2, 18.5));
  EXPECT_FALSE(variant.coversY(1, 1));  // no Y axis: no Y range is covered, however small
}
