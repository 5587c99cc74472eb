// Equations computed over small probands built for each case, against the
// calculated variables of tests/data/formula/equations.xml.
#include "formula/r_calcequation.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "formula/r_calcvalueproband.h"
#include "formula/r_equation.h"
#include "knowledge/r_file.h"
#include "knowledge/r_variable.h"
#include "proband/r_proband.h"
#include "tests/formula/calcvalue_text.h"
#include "tests/support/test_files.h"

namespace {

const int kMale = 0, kUnknown = 2;

class CalcEquationTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    file = new R_File;
    ASSERT_TRUE(file->loadXML(testData("formula/equations.xml").c_str(), nullptr));
  }
  static void TearDownTestSuite() {
    delete file;
    file = nullptr;
  }

  // A boy with three visits at ages 1, 2 and 3; the weight of the second is
  // missing.
  static std::unique_ptr<R_Proband> boy(double father_height) {
    std::unique_ptr<R_Proband> proband(new R_Proband(file));
    proband->setSex(kMale);
    proband->setAnamnesticValue("FATHER_HT", num(father_height));
    const double heights[] = {80, 90, 100}, weights[] = {10, U, 16};
    for (int i = 0; i < 3; ++i) {
      int visit = proband->addVisit(R_Number(i + 1.0), R_Date());
      proband->setFollowedValue(visit, "HEIGHT", R_Number(heights[i]));
      proband->setFollowedValue(visit, "WEIGHT", num(weights[i]));
    }
    return proband;
  }

  // Evaluates a source formula; "failed" when evaluate answers false.
  static std::string evaluate(const char* formula, const R_Proband* proband, double age_today = U) {
    R_Equation equation;
    if (!equation.loadExpression(formula, file->getStatistics())) return "no translation";
    R_CalcEquation calc(equation);
    if (!calc.evaluate(*file, proband, num(age_today), -1, 0)) return "failed";
    return valueText(calc.getResult());
  }

  static R_File* file;
};

R_File* CalcEquationTest::file = nullptr;

}  // namespace

TEST_F(CalcEquationTest, TheFirstTrueConditionWinsAndUndefinedConditionsAreNotTrue) {
  struct Row {
    double father;
    const char* expected;
  } rows[] = {{195, "1"}, {180, "2"}, {160, "3"}, {U, "3"}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.father);
    EXPECT_EQ(row.expected, evaluate("CLASS", boy(row.father).get()));
  }
}

TEST_F(CalcEquationTest, NestedCalculatedVariablesAreComputedAfresh) {
  EXPECT_EQ("20", evaluate("NESTED", boy(180).get()));
  EXPECT_EQ("11", evaluate("DEEPER", boy(195).get()));
  EXPECT_EQ("31", evaluate("DEEPER", boy(U).get()));
}

TEST_F(CalcEquationTest, SelfReferenceAndCyclesStopAtTheDepthLimit) {
  EXPECT_EQ("failed", evaluate("SELF", boy(180).get()));
  EXPECT_EQ("failed", evaluate("LOOP_A + 1", boy(180).get()));
  EXPECT_EQ("failed", evaluate("CLASS + SELF", boy(180).get()));
}

TEST_F(CalcEquationTest, ConditionsOverMissingValuesFallThroughToTheNextPair) {
  std::unique_ptr<R_Proband> tall = boy(180);
  EXPECT_EQ("0", evaluate("TALL", tall.get()));
  tall->setFollowedValue(2, "HEIGHT", R_Number(101));
  EXPECT_EQ("1", evaluate("TALL", tall.get()));
  R_Proband empty(file);
  empty.setSex(kMale);
  EXPECT_EQ("0", evaluate("TALL", &empty));
}

TEST_F(CalcEquationTest, CalculatedFollowedVariablesAsSeriesAndPerVisit) {
  std::unique_ptr<R_Proband> proband = boy(180);
  EXPECT_EQ("{1 15.625 1|2 ? 2|3 16 3}", evaluate("BMI", proband.get()));
  EXPECT_EQ("{1 160 1|2 180 2|3 200 3}", evaluate("DOUBLE_HT", proband.get()));
  // GAIN uses NOW and PREV, so it is computed once per visit, and the first
  // visit has no previous one.
  EXPECT_EQ("{1 ? 1|2 10 2|3 10 3}", evaluate("GAIN", proband.get()));
  EXPECT_EQ("10", evaluate("GAIN:AVG", proband.get()));
}

TEST_F(CalcEquationTest, AnAnamnesticVariableWhoseEquationGivesASeriesIsUndefined) {
  EXPECT_EQ("undefined", evaluate("SERIES_A", boy(180).get()));
}

TEST_F(CalcEquationTest, AFollowedVariableWithoutAPairFailsTheEvaluation) {
  EXPECT_EQ("failed", evaluate("NOXY", boy(180).get()));
  EXPECT_EQ("failed", evaluate("1 + NOXY", boy(180).get()));
}

TEST_F(CalcEquationTest, AProbandOfUnknownSexReadsNothingAndHasNoContextInMethods) {
  std::unique_ptr<R_Proband> unknown = boy(180);
  unknown->setSex(kUnknown);
  EXPECT_EQ("undefined", evaluate("CLASS", unknown.get()));
  EXPECT_EQ("undefined", evaluate("AGE_TODAY", unknown.get(), 7));
  EXPECT_EQ("0", evaluate("IS_PROBAND", unknown.get(), 7));
  EXPECT_EQ("7", evaluate("AGE_TODAY", boy(180).get(), 7));
  EXPECT_EQ("1", evaluate("IS_PROBAND", boy(180).get(), 7));
}

TEST_F(CalcEquationTest, AnExpressionWithoutReferencesNeedsNoProband) {
  EXPECT_EQ("2", evaluate("1+1", nullptr));
  EXPECT_EQ("failed", evaluate(")1(", nullptr));
}

TEST_F(CalcEquationTest, TheProbandContextLoadsSeriesWithAgesAsX) {
  std::unique_ptr<R_Proband> proband = boy(180);
  R_CalcValue value;
  int height = file->getStatistics().getVarIndex("HEIGHT");
  EXPECT_TRUE(R_CalcValueProband::load(value, *file, *proband, R_Number(), height, 0));
  EXPECT_EQ("{1 80 1|2 90 2|3 100 3}", valueText(value));
  R_Proband no_visits(file);
  no_visits.setSex(kMale);
  EXPECT_TRUE(R_CalcValueProband::load(value, *file, no_visits, R_Number(), height, 0));
  EXPECT_EQ("undefined", valueText(value));
  EXPECT_FALSE(R_CalcValueProband::load(value, *file, *proband, R_Number(), height, 11));
}
