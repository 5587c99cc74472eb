#include "formula/r_namedequation.h"

#include <gtest/gtest.h>

#include "tests/formula/formula_statistics.h"
#include "tests/support/stored_bytes.h"
#include "xml/r_xmlparameters.h"
#include "xml/r_xmltextoutputbuffer.h"

namespace {

// Hands the attributes of one `targetpoint` tag to the target, as a graph
// block does while the tag is open.
bool loadTarget(R_NamedEquation& target, const char* tag) {
  R_XMLParameters parameters;
  char element[64];
  parameters.beginElement(tag, element);
  return target.loadXML(parameters, FormulaStatistics());
}

// Name "goal", then the equation HEIGHT:PREV+1.
const char kGoal[] =
    "01 01 04 00 67 6F 61 6C "
    "06 01 02 01 00 00 00 02 01 00 00 00 02 00 00 00 00 01 04 00 50 52 45 56 01 04 00 40 41 2B 31";

}  // namespace

TEST(NamedEquationTest, NameAndMethodComeFromAndGoToAttributesAndTheBinaryFormIsPinned) {
  R_NamedEquation target;
  EXPECT_TRUE(loadTarget(target, "<targetpoint name=\"goal\" method=\"height:prev + 1\"/>"));
  EXPECT_STREQ("goal", target.getName().get());
  ASSERT_EQ(1, target.getMethodCount());
  EXPECT_STREQ("@A+1", target.getMethod(0).get());
  EXPECT_STREQ("PREV", target.getDefinition(0).get());
  FormulaStatistics statistics;
  char buffer[256];
  R_XMLTextOutputBuffer output(buffer, sizeof buffer);
  output.openTag("targetpoint");
  target.saveXML(output, statistics);
  output.endEmptyTag();
  EXPECT_STREQ("<targetpoint name=\"goal\" method=\"HEIGHT:PREV+1\" />", buffer);
  R_NamedEquation again;
  ASSERT_TRUE(loadTarget(again, buffer));
  expectStoredForm(again, kGoal);
  expectStoredForm(R_NamedEquation(), "00");
  expectEveryCutFails<R_NamedEquation>(kGoal, [](const R_NamedEquation& t) { return !t.isDefined(); });
}

TEST(NamedEquationTest, IsUndefinedWithoutNameOrWithoutAWorkingMethod) {
  const struct { const char* xml; bool valid; } rows[] = {
      {"<targetpoint method=\"HEIGHT\"/>", true},      {"<targetpoint name=\"\" method=\"HEIGHT\"/>", true},
      {"<targetpoint name=\"goal\"/>", false},         {"<targetpoint name=\"goal\" method=\"HEIGHT:FOO\"/>", false},
      {"<targetpoint name=\"goal\" method=\"\"/>", false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.xml);
    R_NamedEquation target;
    EXPECT_FALSE(loadTarget(target, row.xml));
    EXPECT_FALSE(target.isDefined());
    EXPECT_EQ(row.valid, target.isValid());
  }
}

TEST(NamedEquationTest, AnyMarkOtherThanOneIsAnAbsentTargetButOneMustHoldExactlyOneExpression) {
  const struct { const char* form; bool ok; int next; } rows[] = {
      {"00 06", true, 6}, {"02 06", true, 6}, {"FF 06", true, 6},
      {"01 01 01 00 67 06 01 02 00 00 00 00 02 02 00 00 00 01 01 00 31 01 01 00 32", false, -1},
      {"01 01 01 00 67 06 00", false, -1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.form);
    R_NamedEquation target;
    int next = 0;
    EXPECT_EQ(row.ok, loadFrom(bytesOf(row.form), &target, &next));
    EXPECT_EQ(row.next, next);
    EXPECT_TRUE(!row.ok || !target.isDefined());
  }
}
