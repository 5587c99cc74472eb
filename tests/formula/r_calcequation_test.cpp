// Equations computed over small probands built for each case, against the
// calculated variables of tests/data/formula/equations.xml.
#include "formula/r_calcequation.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "formula/r_calcvalueproband.h"
#include "formula/r_equation.h"
#include "knowledge/r_file.h"
#include "proband/r_proband.h"
#include "tests/formula/calcvalue_text.h"
#include "tests/knowledge/case_file.h"
#include "tests/support/test_files.h"

namespace {

const int kMale = 0, kUnknown = 2;

// The knowledge file of the equations, loaded once.
const R_File* file() {
  static R_File loaded;
  static const bool ok = loaded.loadXML(testData("formula/equations.xml").c_str(), nullptr);
  EXPECT_TRUE(ok);
  return &loaded;
}

// A boy with three visits at ages 1, 2 and 3; the weight of the second is
// missing.
std::unique_ptr<R_Proband> boy(double father_height) {
  std::unique_ptr<R_Proband> proband(new R_Proband(file()));
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
std::string evaluate(const char* formula, const R_Proband* proband, double age_today = U) {
  R_Equation equation;
  if (!equation.loadExpression(formula, file()->getStatistics())) return "no translation";
  R_CalcEquation calc(equation);
  if (!calc.evaluate(*file(), proband, num(age_today), -1, 0)) return "failed";
  return valueText(calc.getResult());
}

}  // namespace

TEST(CalcEquationTest, EquationsOverABoyWithThreeVisits) {
  for (const TextCase& row : readCases("formula/equation_results.txt")) {
    SCOPED_TRACE(row.label);
    size_t at = row.label.rfind(' ');
    std::string father = row.label.substr(at + 1);
    std::unique_ptr<R_Proband> proband = boy(father == "U" ? U : std::stod(father));
    EXPECT_EQ(row.out, std::vector<std::string>{evaluate(row.label.substr(0, at).c_str(), proband.get())});
  }
}

TEST(CalcEquationTest, ConditionsOverMissingValuesFallThroughToTheNextPair) {
  std::unique_ptr<R_Proband> tall = boy(180);
  EXPECT_EQ("0", evaluate("TALL", tall.get()));
  tall->setFollowedValue(2, "HEIGHT", R_Number(101));
  EXPECT_EQ("1", evaluate("TALL", tall.get()));
  R_Proband empty(file());
  empty.setSex(kMale);
  EXPECT_EQ("0", evaluate("TALL", &empty));
}

TEST(CalcEquationTest, AProbandOfUnknownSexReadsNothingAndHasNoContextInMethods) {
  std::unique_ptr<R_Proband> unknown = boy(180);
  unknown->setSex(kUnknown);
  EXPECT_EQ("undefined", evaluate("CLASS", unknown.get()));
  EXPECT_EQ("undefined", evaluate("AGE_TODAY", unknown.get(), 7));
  EXPECT_EQ("0", evaluate("IS_PROBAND", unknown.get(), 7));
  EXPECT_EQ("7", evaluate("AGE_TODAY", boy(180).get(), 7));
  EXPECT_EQ("1", evaluate("IS_PROBAND", boy(180).get(), 7));
  // An expression without references needs no proband.
  EXPECT_EQ("2", evaluate("1+1", nullptr));
  EXPECT_EQ("failed", evaluate(")1(", nullptr));
}

TEST(CalcEquationTest, TheProbandContextLoadsSeriesWithAgesAsX) {
  std::unique_ptr<R_Proband> proband = boy(180);
  R_CalcValue value;
  int height = file()->getStatistics().getVarIndex("HEIGHT");
  EXPECT_TRUE(R_CalcValueProband::load(value, *file(), *proband, R_Number(), height, 0));
  EXPECT_EQ("{1 80 1|2 90 2|3 100 3}", valueText(value));
  R_Proband no_visits(file());
  no_visits.setSex(kMale);
  EXPECT_TRUE(R_CalcValueProband::load(value, *file(), no_visits, R_Number(), height, 0));
  EXPECT_EQ("undefined", valueText(value));
  EXPECT_FALSE(R_CalcValueProband::load(value, *file(), *proband, R_Number(), height, 11));
}
