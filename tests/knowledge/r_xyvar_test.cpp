#include "knowledge/r_xyvar.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/knowledge/knowledge_test_support.h"
#include "tests/support/xml_fakes.h"

// The XML form names the variables in the order avar, xvar, yvar.
TEST(XYVarTest, LoadResolvesNamesWithoutRegardToCaseOrSurroundingBlanksAndSaveWritesThemInFixedOrder) {
  NamedStatistics statistics({"AGE", "HEIGHT", "FATHER_HT"});  // 0, 1, 2
  auto xmlOf = [&](const R_XYVar& xyvar) {
    return xmlWrittenBy([&](R_XMLTextOutput& out) { xyvar.saveXML(out, statistics); });
  };
  const std::string end = "Error while processing X-Y variable definition.";
  const std::string xy = "<xvar>AGE</xvar><yvar>HEIGHT</yvar>";
  const struct {
    std::string xml;
    int avar, xvar, yvar;
    std::vector<std::string> messages;  // empty: the load succeeds and writes `written`
    std::string written;
  } rows[] = {
      {xy, -1, 0, 1, {}, xy},
      {"<yvar>\n  height \n</yvar><xvar>age</xvar>", -1, 0, 1, {}, xy},
      {"<avar>Father_HT</avar>", 2, -1, -1, {}, "<avar>FATHER_HT</avar>"},
      // X and the anamnestic variable without Y load: not all three are given.
      {"<xvar>AGE</xvar><avar>FATHER_HT</avar>", 2, 0, -1, {}, "<avar>FATHER_HT</avar><xvar>AGE</xvar>"},
      {xy + "<avar>FATHER_HT</avar>", 2, 0, 1, {"Both anamnestic and followed reference index.", end}, ""},
      {"<xvar>WEIGHT</xvar>", -1, -1, -1, {"data error closing block </xvar>: wrong x variable", end}, ""},
      {"<avar>AG E</avar>", -1, -1, -1, {"data error closing block </avar>: wrong anamnestic variable", end}, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.xml);
    CollectingReporter reporter;
    R_XYVar xyvar;
    EXPECT_EQ(row.messages.empty(), xyvar.loadXML(row.xml.c_str(), statistics, &reporter));
    EXPECT_TRUE(xyvar == R_XYVar(row.avar, row.xvar, row.yvar));
    EXPECT_EQ(row.messages, reporter.lines());
    if (row.messages.empty()) {
      EXPECT_EQ(row.written, xmlOf(xyvar));
    }
  }
  EXPECT_EQ("<yvar>HEIGHT</yvar>", xmlOf(R_XYVar(3, 7, 1))) << "an index beyond the variables names nothing";
}
