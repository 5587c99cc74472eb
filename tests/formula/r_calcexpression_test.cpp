#include "formula/r_calcexpression.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/formula/calcvalue_text.h"
#include "tests/knowledge/case_file.h"

namespace {

// Evaluates `text` with @A bound to `a` (7 by default), @B to `b` (an
// undefined value by default) and @C to 0, without context; "error" for a
// failed evaluation, else the value's text.
std::string evaluate(const char* text, const R_CalcValue& a = scalar(7), const R_CalcValue& b = scalar(U)) {
  R_CalcValue c = scalar(0);
  R_CalcExpression expression(text);
  expression.setVariable(0, &a);
  expression.setVariable(1, &b);
  expression.setVariable(2, &c);
  if (!expression.evaluate()) return "error";
  return valueText(expression.getResult());
}

}  // namespace

TEST(CalcExpressionTest, ComputesByTheGrammarOfTheTranslatedForm) {
  for (const TextCase& row : readCases("formula/expressions.txt")) {
    SCOPED_TRACE(row.label);
    EXPECT_EQ(row.out, std::vector<std::string>{evaluate(row.label.c_str())});
  }
}

TEST(CalcExpressionTest, SyntaxFaultsFailTheEvaluation) {
  for (const char* text : {"", "\xC8"}) EXPECT_EQ("error", evaluate(text)) << text;
  EXPECT_FALSE(R_CalcExpression(nullptr).evaluate());
}

TEST(CalcExpressionTest, DeepNestingFailsCleanlyInsteadOfExhaustingTheStack) {
  std::string function_chain;
  for (int i = 0; i < 50000; ++i) function_chain += "ABS(";
  const std::string deep(100000, '(');
  EXPECT_EQ("error", evaluate(deep.c_str()));
  EXPECT_EQ("error", evaluate((std::string(100000, '-') + "1").c_str()));
  EXPECT_EQ("error", evaluate((deep + "1" + std::string(100000, ')')).c_str()));
  EXPECT_EQ("error", evaluate(function_chain.c_str()));
  // Ordinary depths work.
  EXPECT_EQ("1", evaluate((std::string(100, '(') + "1" + std::string(100, ')')).c_str()));
}

TEST(CalcExpressionTest, ContextGivesSexAgeAndProbandOnlyWhenSet) {
  // $M $F $I as the digits of one number, then $A.
  const struct { bool set; int sex; double age; const char* expected; } rows[] = {
      {false, 0, 5.5, "0 undefined"}, {true, 0, 5.5, "101 5.5"}, {true, 1, 12.25, "11 12.25"},
      {true, 2, U, "1 undefined"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.expected);
    R_CalcExpression flags("$M*100+$F*10+$I"), age("$A");
    if (row.set) {
      flags.setContext(row.sex, num(row.age));
      age.setContext(row.sex, num(row.age));
    }
    ASSERT_TRUE(flags.evaluate() && age.evaluate());
    EXPECT_EQ(row.expected, valueText(flags.getResult()) + " " + valueText(age.getResult()));
  }
}

TEST(CalcExpressionTest, SlotValuesAreCopiedAndNotChangedAndASecondEvaluationGivesTheSame) {
  R_CalcValue a = series({{1, 10, 1}, {2, 20, 2}});
  R_CalcExpression expression("@B-@A");
  R_CalcValue b = scalar(1);
  expression.setVariable(0, &a);
  expression.setVariable(1, &b);
  for (int round = 0; round < 2; ++round) {
    ASSERT_TRUE(expression.evaluate());
    EXPECT_EQ("{1 -9 1|2 -19 2}", valueText(expression.getResult()));
  }
  EXPECT_EQ("{1 10 1|2 20 2}", valueText(a));
  EXPECT_EQ("{1 9 1|2 19 2}", evaluate("@A-@B", a, b));
}
