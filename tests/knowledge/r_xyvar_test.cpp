#include "knowledge/r_xyvar.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/knowledge/knowledge_test_support.h"
#include "tests/support/xml_fakes.h"

TEST(XYVarTest, LoadResolvesNamesWithoutRegardToCaseOrSurroundingBlanks) {
  // AGE 0, HEIGHT 1, FATHER_HT 2.
  NamedStatistics statistics({"AGE", "HEIGHT", "FATHER_HT"});
  const std::string end = "Error while processing X-Y variable definition.";
  const struct {
    const char* xml;
    int avar, xvar, yvar;
    std::vector<std::string> messages;  // empty: the load succeeds
  } rows[] = {
      {"<xvar>AGE</xvar><yvar>HEIGHT</yvar>", -1, 0, 1, {}},
      {"<yvar>\n  height \n</yvar><xvar>age</xvar>", -1, 0, 1, {}},
      {"<avar>Father_HT</avar>", 2, -1, -1, {}},
      // X and the anamnestic variable without Y load: not all three are given.
      {"<xvar>AGE</xvar><avar>FATHER_HT</avar>", 2, 0, -1, {}},
      {"<zvar>AGE</zvar>", -1, -1, -1, {}},
      {"<xvar>AGE</xvar><yvar>HEIGHT</yvar><avar>FATHER_HT</avar>", 2, 0, 1,
       {"Both anamnestic and followed reference index.", end}},
      {"<xvar>WEIGHT</xvar>", -1, -1, -1, {"data error closing block </xvar>: wrong x variable", end}},
      {"<yvar></yvar>", -1, -1, -1, {"data error closing block </yvar>: wrong y variable", end}},
      {"<avar>AG E</avar>", -1, -1, -1, {"data error closing block </avar>: wrong anamnestic variable", end}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.xml);
    CollectingReporter reporter;
    R_XYVar xyvar;
    EXPECT_EQ(row.messages.empty(), xyvar.loadXML(row.xml, statistics, &reporter));
    EXPECT_TRUE(xyvar == R_XYVar(row.avar, row.xvar, row.yvar));
    EXPECT_EQ(row.messages, reporter.lines());
  }
}

TEST(XYVarTest, DefinedByAFullPairOrAnAnamnesticVariableAndComparedByAllThree) {
  EXPECT_FALSE(R_XYVar().isDefined());
  EXPECT_FALSE(R_XYVar(-1, 0, -1).isDefined());
  EXPECT_FALSE(R_XYVar(-1, -1, 1).isDefined());
  EXPECT_TRUE(R_XYVar(-1, 0, 1).isDefined());
  EXPECT_TRUE(R_XYVar(2, 0, -1).isDefined());
  for (const R_XYVar& other : {R_XYVar(0, 0, 1), R_XYVar(-1, 1, 1), R_XYVar(-1, 0, 0)}) {
    EXPECT_FALSE(other == R_XYVar(-1, 0, 1));
    EXPECT_TRUE(other != R_XYVar(-1, 0, 1));
  }
}

TEST(XYVarTest, SaveXMLWritesTheNamesInTheOrderAvarXvarYvar) {
  NamedStatistics statistics({"AGE", "HEIGHT", "FATHER_HT"});
  auto xmlOf = [&](const R_XYVar& xyvar) {
    return xmlWrittenBy([&](R_XMLTextOutput& out) { xyvar.saveXML(out, statistics); });
  };
  EXPECT_EQ("<xvar>AGE</xvar><yvar>HEIGHT</yvar>", xmlOf(R_XYVar(-1, 0, 1)));
  EXPECT_EQ("<avar>FATHER_HT</avar><xvar>AGE</xvar>", xmlOf(R_XYVar(2, 0, -1)));
  // An index beyond the variables names nothing and is left out.
  EXPECT_EQ("<yvar>HEIGHT</yvar>", xmlOf(R_XYVar(3, 7, 1)));
}
