#include "knowledge/r_xyvar.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/knowledge/knowledge_test_support.h"
#include "tests/support/xml_fakes.h"

namespace {

struct LoadRow {
  const char* xml;
  bool loads;
  int avar, xvar, yvar;
  std::vector<std::string> messages;
};

}  // namespace

TEST(XYVarTest, LoadResolvesNamesWithoutRegardToCaseOrSurroundingBlanks) {
  // AGE 0, HEIGHT 1, FATHER_HT 2.
  NamedStatistics statistics({"AGE", "HEIGHT", "FATHER_HT"});
  const LoadRow rows[] = {
      {"<xvar>AGE</xvar><yvar>HEIGHT</yvar>", true, -1, 0, 1, {}},
      {"<yvar>\n  height \n</yvar><xvar>age</xvar>", true, -1, 0, 1, {}},
      {"<avar>Father_HT</avar>", true, 2, -1, -1, {}},
      // X and the anamnestic variable without Y load: not all three are given.
      {"<xvar>AGE</xvar><avar>FATHER_HT</avar>", true, 2, 0, -1, {}},
      {"<xvar>AGE</xvar><yvar>HEIGHT</yvar><avar>FATHER_HT</avar>", false, 2, 0, 1,
       {"Both anamnestic and followed reference index.", "Error while processing X-Y variable definition."}},
      {"<xvar>WEIGHT</xvar>", false, -1, -1, -1,
       {"data error closing block </xvar>: wrong x variable", "Error while processing X-Y variable definition."}},
      {"<yvar></yvar>", false, -1, -1, -1,
       {"data error closing block </yvar>: wrong y variable", "Error while processing X-Y variable definition."}},
      {"<avar>AG E</avar>", false, -1, -1, -1,
       {"data error closing block </avar>: wrong anamnestic variable",
        "Error while processing X-Y variable definition."}},
      {"<zvar>AGE</zvar>", true, -1, -1, -1, {}},
  };
  for (const LoadRow& row : rows) {
    SCOPED_TRACE(row.xml);
    CollectingReporter reporter;
    R_XYVar xyvar;
    EXPECT_EQ(row.loads, xyvar.loadXML(row.xml, statistics, &reporter));
    EXPECT_EQ(row.avar, xyvar.getAVar());
    EXPECT_EQ(row.xvar, xyvar.getXVar());
    EXPECT_EQ(row.yvar, xyvar.getYVar());
    EXPECT_EQ(row.messages, reporter.lines());
  }
}

TEST(XYVarTest, DefinedByAFullPairOrAnAnamnesticVariable) {
  EXPECT_FALSE(R_XYVar().isDefined());
  EXPECT_FALSE(R_XYVar(-1, 0, -1).isDefined());
  EXPECT_FALSE(R_XYVar(-1, -1, 1).isDefined());
  EXPECT_TRUE(R_XYVar(-1, 0, 1).isDefined());
  EXPECT_TRUE(R_XYVar(2, -1, -1).isDefined());
  EXPECT_TRUE(R_XYVar(2, 0, -1).isDefined());
}

TEST(XYVarTest, CopiesAndComparesByTheThreeIndices) {
  R_XYVar pair(-1, 0, 1);
  R_XYVar copy(pair);
  EXPECT_TRUE(copy == pair);
  R_XYVar other;
  EXPECT_TRUE(other != pair);
  other = pair;
  EXPECT_TRUE(other == pair);
  EXPECT_FALSE(R_XYVar(-1, 1, 0) == pair);
  EXPECT_FALSE(R_XYVar(0, 0, 1) == pair);
}

TEST(XYVarTest, SaveXMLWritesTheNamesInTheOrderAvarXvarYvar) {
  NamedStatistics statistics({"AGE", "HEIGHT", "FATHER_HT"});
  EXPECT_EQ("<xvar>AGE</xvar><yvar>HEIGHT</yvar>",
            xmlWrittenBy([&](R_XMLTextOutput& out) { R_XYVar(-1, 0, 1).saveXML(out, statistics); }));
  EXPECT_EQ("<avar>FATHER_HT</avar><xvar>AGE</xvar>",
            xmlWrittenBy([&](R_XMLTextOutput& out) { R_XYVar(2, 0, -1).saveXML(out, statistics); }));
  // An index beyond the variables names nothing and is left out.
  EXPECT_EQ("<yvar>HEIGHT</yvar>",
            xmlWrittenBy([&](R_XMLTextOutput& out) { R_XYVar(3, 7, 1).saveXML(out, statistics); }));
}

// avar -1, xvar 0, yvar 1: tag 18 and three integers in the order a, x, y.
const char* const kXYVarBytes = "12 02 FF FF FF FF 02 00 00 00 00 02 01 00 00 00";

TEST(XYVarTest, BinaryFormIsPinnedByItsBytes) {
  EXPECT_EQ(kXYVarBytes, hexOf(savedBytes(R_XYVar(-1, 0, 1))));
}

TEST(XYVarTest, BinaryFormLoadsAndSavesTheSameBytes) {
  Bytes bytes = bytesOf(kXYVarBytes);
  R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = true;
  R_XYVar xyvar;
  xyvar.load(stream, &ok);
  ASSERT_TRUE(ok);
  EXPECT_TRUE(xyvar == R_XYVar(-1, 0, 1));
  EXPECT_EQ(kXYVarBytes, hexOf(savedBytes(xyvar)));
}

TEST(XYVarTest, BinaryFormCutAtAnyLengthFails) {
  expectEveryTruncationFails(bytesOf(kXYVarBytes), [](R_InputStream& stream, bool* ok) {
    R_XYVar xyvar;
    xyvar.load(stream, ok);
  });
}
