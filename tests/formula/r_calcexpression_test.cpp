#include "formula/r_calcexpression.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "tests/formula/calcvalue_text.h"

namespace {

// Evaluates `text` with @A bound to 7, @B to an undefined value and @C to 0,
// without context; "error" for a failed evaluation, else the value's text.
std::string evaluate(const char* text) {
  R_CalcValue a = scalar(7);
  R_CalcValue b = scalar(U);
  R_CalcValue c = scalar(0);
  R_CalcExpression expression(text);
  expression.setVariable(0, &a);
  expression.setVariable(1, &b);
  expression.setVariable(2, &c);
  if (!expression.evaluate()) return "error";
  return valueText(expression.getResult());
}

std::string evaluateWith(const char* text, const R_CalcValue& a, const R_CalcValue& b) {
  R_CalcExpression expression(text);
  expression.setVariable(0, &a);
  expression.setVariable(1, &b);
  if (!expression.evaluate()) return "error";
  return valueText(expression.getResult());
}

struct Row {
  const char* text;
  const char* expected;
};

}  // namespace

TEST(CalcExpressionTest, ComputesByTheGrammarOfTheTranslatedForm) {
  const Row rows[] = {
      {"1", "1"},
      {"1.5+2", "3.5"},
      {"2+3*4", "14"},
      {"(2+3)*4", "20"},
      {"10-2-3", "5"},
      {"8/4/2", "1"},
      // '^' binds like '*' and to the left.
      {"2*3^2", "36"},
      {"2^3^2", "64"},
      // Prefix operators bind tighter than '^'.
      {"-2^2", "4"},
      {"--3", "3"},
      {"2*-3", "-6"},
      // Comparisons chain from the left.
      {"3>2>1", "0"},
      {"1<2", "1"},
      {"2<=2", "1"},
      {"2>=3", "0"},
      {"1<>2", "1"},
      {"1=1", "1"},
      {"2>1", "1"},
      // '&' and '|' share a level: 1|1&0 is (1|1)&0.
      {"1|1&0", "0"},
      {"0&0|1", "1"},
      {"1=>0", "0"},
      {"0=>0", "1"},
      {"1=1=>0", "0"},
      {"1+1=2&2<3", "1"},
      // A number has no exponent sign: 1E-5 is 1 - 5.
      {"1E-5", "-4"},
      {"1E2", "100"},
      {"1.2.3", "1.2"},
      // Trailing text is not looked at.
      {"@A2", "7"},
      {"1 +2", "1"},
      {"PI(2)", "3.14159"},
      {"2)", "2"},
      // Variables, functions, undefined values.
      {"@A*2-@C", "14"},
      {"1/0", "undefined"},
      {"(1/0)+1", "undefined"},
      {"(1/0)=(1/0)", "undefined"},
      {"@B*0", "undefined"},
      {"@C|@B", "undefined"},
      {"LN(0-1)", "undefined"},
      {"LN(1)", "0"},
      {"ln(1)", "0"},
      {"EXP(0)+COS(0)+SIN(0)", "2"},
      {"ABS(0-3)", "3"},
      {"LOG(100)", "2"},
      {"PSD(50)", "0"},
      {"SDP(0)", "50"},
      {"SDP(1/0)", "undefined"},
      {"?@B", "0"},
      {"?@A", "1"},
      {"?(1/0)", "0"},
      {"!@B", "undefined"},
      {"!0", "1"},
      {"!5", "0"},
      {"!@C", "1"},
      {"-@B", "undefined"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(row.expected, evaluate(row.text));
  }
}

TEST(CalcExpressionTest, SyntaxFaultsFailTheEvaluation) {
  const Row rows[] = {
      {"", "error"},       {"()", "error"},     {"1+", "error"},     {")1(", "error"},
      {"+1", "error"},     {"(1", "error"},     {"1*", "error"},     {"-", "error"},
      {"!", "error"},      {"?", "error"},      {"FOO(1)", "error"}, {"PIE", "error"},
      {"SIN", "error"},    {"SIN 1", "error"},  {"SIN(1", "error"},  {"SIN()", "error"},
      {"@D", "error"},     {"@Z", "error"},     {"@", "error"},      {"@[", "error"},
      {"@a", "error"},     {"@@", "error"},     {"$", "error"},      {"$X", "error"},
      {"$m", "error"},     {".5", "error"},     {"\xC8", "error"},   {"1+\xC8", "error"},
      {"=1", "error"},     {"1=>", "error"},    {"1<", "error"},     {"1&(", "error"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(row.expected, evaluate(row.text));
  }
  R_CalcExpression null_text(nullptr);
  EXPECT_FALSE(null_text.evaluate());
}

TEST(CalcExpressionTest, DeepNestingFailsCleanlyInsteadOfExhaustingTheStack) {
  EXPECT_EQ("error", evaluate(std::string(100000, '(').c_str()));
  EXPECT_EQ("error", evaluate((std::string(100000, '-') + "1").c_str()));
  EXPECT_EQ("error", evaluate((std::string(100000, '(') + "1" + std::string(100000, ')')).c_str()));
  std::string function_chain;
  for (int i = 0; i < 50000; ++i) function_chain += "ABS(";
  EXPECT_EQ("error", evaluate(function_chain.c_str()));
  // Ordinary depths work.
  EXPECT_EQ("1", evaluate((std::string(100, '(') + "1" + std::string(100, ')')).c_str()));
  EXPECT_EQ("1", evaluate((std::string(100, '-') + "1").c_str()));
}

TEST(CalcExpressionTest, PiIsTheDoubleNearestToPi) {
  R_CalcExpression expression("PI");
  ASSERT_TRUE(expression.evaluate());
  ASSERT_TRUE(expression.getResult().isScalar());
  double pi = expression.getResult().getScalar().getValue();
  uint64_t bits;
  memcpy(&bits, &pi, sizeof bits);
  EXPECT_EQ(0x400921FB54442D18u, bits);
}

TEST(CalcExpressionTest, ContextGivesSexAgeAndProbandOnlyWhenSet) {
  struct ContextRow {
    bool set;
    int sex;
    double age;
    const char* male;
    const char* female;
    const char* age_text;
    const char* proband;
  };
  const ContextRow rows[] = {
      {false, 0, 5.5, "0", "0", "undefined", "0"},
      {true, 0, 5.5, "1", "0", "5.5", "1"},
      {true, 1, 12.25, "0", "1", "12.25", "1"},
      {true, 2, U, "0", "0", "undefined", "1"},
  };
  for (const ContextRow& row : rows) {
    SCOPED_TRACE(std::to_string(row.set) + " " + std::to_string(row.sex));
    const char* texts[] = {"$M", "$F", "$A", "$I"};
    const char* expected[] = {row.male, row.female, row.age_text, row.proband};
    for (int i = 0; i < 4; ++i) {
      SCOPED_TRACE(texts[i]);
      R_CalcExpression expression(texts[i]);
      if (row.set) expression.setContext(row.sex, num(row.age));
      ASSERT_TRUE(expression.evaluate());
      EXPECT_EQ(expected[i], valueText(expression.getResult()));
    }
  }
}

TEST(CalcExpressionTest, EvaluatingTwiceGivesTheSameResult) {
  R_CalcValue a = scalar(4);
  R_CalcExpression expression("@A*@A+1");
  expression.setVariable(0, &a);
  ASSERT_TRUE(expression.evaluate());
  ASSERT_TRUE(expression.evaluate());
  EXPECT_EQ("17", valueText(expression.getResult()));
}

TEST(CalcExpressionTest, SlotValuesAreCopiedAndNotChanged) {
  R_CalcValue a = series({{1, 10, 1}, {2, 20, 2}});
  R_CalcValue b = scalar(1);
  EXPECT_EQ("{1 9 1|2 19 2}", evaluateWith("@A-@B", a, b));
  EXPECT_EQ("{1 -9 1|2 -19 2}", evaluateWith("@B-@A", a, b));
  EXPECT_EQ("{1 10 1|2 20 2}", valueText(a));
}

TEST(CalcExpressionTest, SeriesOfOneProbandMeetInExpressions) {
  R_CalcValue height = series({{1, 100, 1}, {2, U, 2}, {3, 110, 3}});
  R_CalcValue weight = series({{1, 15, 1}, {2, 16, 2}, {3, 0, 3}});
  EXPECT_EQ("{1 200 1|2 ? 2|3 220 3}", evaluateWith("@A*2", height, weight));
  EXPECT_EQ("{1 85 1|2 ? 2|3 110 3}", evaluateWith("@A-@B", height, weight));
  // Weight 0 at visit 2 makes the product 0 although the height is missing.
  R_CalcValue zero_weight = series({{1, 15, 1}, {2, 0, 2}, {3, 0, 3}});
  EXPECT_EQ("{1 1500 1|2 0 2|3 0 3}", evaluateWith("@A*@B", height, zero_weight));
  // Two points at different visits make a scalar; at the same visit a point.
  R_CalcValue first = series({{1, 100, 1}, {2, U, 2}});
  R_CalcValue second = series({{1, U, 1}, {2, 110, 2}});
  EXPECT_EQ("10", evaluateWith("@B-@A", first, second));
  EXPECT_EQ("{1 0 1|2 ? 2}", evaluateWith("@A-@A", first, second));
}

TEST(CalcExpressionTest, UnboundSlotsBetweenBoundOnesFail) {
  R_CalcValue value = scalar(1);
  R_CalcExpression expression("@A+@C");
  expression.setVariable(0, &value);
  expression.setVariable(1, &value);
  EXPECT_FALSE(expression.evaluate());
}
