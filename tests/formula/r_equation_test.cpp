#include "formula/r_equation.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/formula/formula_statistics.h"
#include "tests/knowledge/case_file.h"
#include "tests/support/stored_bytes.h"
#include "tests/support/xml_fakes.h"
#include "xml/r_xmltextoutputbuffer.h"

namespace {

// The stored form as one text: "var index/chain, ...; text | text | ...".
std::string storedForm(const R_Equation& equation) {
  std::string text;
  for (int k = 0; k < equation.getVarCount(); ++k) {
    text += (k > 0 ? ", " : "") + std::to_string(equation.getVariable(k)) + "/" + equation.getDefinition(k).get();
  }
  text += ";";
  for (int k = 0; k < equation.getMethodCount(); ++k) {
    text += (k > 0 ? " | " : " ") + std::string(equation.getMethod(k).get());
  }
  return text;
}

std::string savedXML(const R_Equation& equation, const R_FileStatistics& statistics) {
  char buffer[4096];
  R_XMLTextOutputBuffer output(buffer, sizeof buffer);
  equation.saveXML(output, statistics);
  EXPECT_TRUE(output.isOK());
  return buffer;
}

bool isEmpty(const R_Equation& equation) {
  return !equation.isValid() && equation.getVarCount() == 0 && equation.getMethodCount() == 0;
}

// "HEIGHT:PREV+1": HEIGHT is index 0, its chain PREV, the text @A+1.
const char kSmallEquation[] =
    "06 01 02 01 00 00 00 02 01 00 00 00 02 00 00 00 00 01 04 00 50 52 45 56 01 04 00 40 41 2B 31";

}  // namespace

TEST(EquationTest, ComputeElementsLoadAsPairsAndWriteBackToTheSameStoredForm) {
  FormulaStatistics statistics;
  CollectingReporter reporter;
  R_Equation equation;
  ASSERT_TRUE(equation.loadXML(
      "\n  <compute if=\"height:prev - 2 * WEIGHT = 3\">WEIGHT:AGE_ABOVE[2.5]:LAST_DEFINED[2]:AVG / height</compute>\n"
      "  <compute if=\"not female | is_proband\">\n    age_today * 2\n  </compute>\n"
      "  <compute>HEIGHT:PREV</compute>\n",
      statistics, &reporter));
  EXPECT_TRUE(reporter.lines().empty());
  EXPECT_EQ("0/PREV, 1/, 1/AGE_ABOVE[2.5] LAST_DEFINED[2] AVG, 0/; @A-2*@B=3 | @C/@D | !$F|$I | $A*2 | 1 | @A",
            storedForm(equation));
  std::string xml = savedXML(equation, statistics);
  EXPECT_EQ(
      "<compute if=\"HEIGHT:PREV-2*WEIGHT:=3\">WEIGHT:AGE_ABOVE[2.5]:LAST_DEFINED[2]:AVG/HEIGHT:</compute>"
      "<compute if=\"!FEMALE|IS_PROBAND\">AGE_TODAY*2</compute><compute if=\"1\">HEIGHT:PREV</compute>",
      xml);
  R_Equation again;
  ASSERT_TRUE(again.loadXML(xml.c_str(), statistics, nullptr));
  EXPECT_EQ(storedForm(equation), storedForm(again));
  Bytes bytes = savedBytes(equation);
  EXPECT_EQ(bytes, reloadAndSave<R_Equation>(bytes));
}

TEST(EquationTest, ReportsFaultyComputeElementsAndFailsAsAWhole) {
  FormulaStatistics statistics;
  for (TextCase row : readCases("formula/equation_messages.txt")) {
    SCOPED_TRACE(row.input);
    CollectingReporter reporter;
    R_Equation equation;
    EXPECT_FALSE(equation.loadXML(row.input.c_str(), statistics, &reporter));
    EXPECT_TRUE(isEmpty(equation));
    row.out.push_back("No valid condition/method pairs found.");
    row.out.push_back("Error while processing equation (wrong format or none defined).");
    EXPECT_EQ(row.out, reporter.lines());
  }
}

TEST(EquationTest, ExpressionTextsReadBackAsTheSameExpression) {
  FormulaStatistics statistics;
  for (const TextCase& row : readCases("formula/equation_texts.txt")) {
    SCOPED_TRACE(row.label);
    R_Equation equation, again;
    ASSERT_TRUE(equation.loadExpression(row.label.c_str(), statistics));
    R_String text;
    EXPECT_TRUE(equation.getExpressionText(0, text, statistics));
    EXPECT_EQ(row.out, std::vector<std::string>{text.get()});
    ASSERT_TRUE(again.loadExpression(text.get(), statistics));
    EXPECT_EQ(storedForm(equation), storedForm(again));
  }
}

TEST(EquationTest, StoredTextsThatCannotBeSpelledGiveNoText) {
  // One reference (HEIGHT, index 0 unless told otherwise, no chain) and one
  // stored text; the statistics know five variables.
  const struct { std::string text; int index; } rows[] = {
      {"@B", 0}, {"@a", 0}, {"@", 0}, {"1+@", 0}, {"$X", 0}, {"$", 0}, {"$m", 0}, {"1$", 0}, {"", 0}, {"@A$M", 5},
  };
  FormulaStatistics statistics;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text + " index " + std::to_string(row.index));
    Bytes bytes = bytesOf("06 01 02 01 00 00 00 02 01 00 00 00 02") + Bytes{static_cast<unsigned char>(row.index)} +
                  bytesOf("00 00 00 01 00 00 01") + Bytes{static_cast<unsigned char>(row.text.size()), 0} +
                  Bytes(row.text.begin(), row.text.end());
    R_Equation equation;
    ASSERT_TRUE(loadFrom(bytes, &equation));
    R_String text("left over");
    EXPECT_FALSE(equation.getExpressionText(0, text, statistics));
    EXPECT_TRUE(text.isEmpty());
  }
}

TEST(EquationTest, LoadExpressionTakesOneExpressionAndTextsReachingTheLimitAreNotSound) {
  FormulaStatistics statistics;
  R_Equation equation, faulty, none;
  R_String text("left over");
  EXPECT_FALSE(equation.getText(text, statistics));
  EXPECT_TRUE(text.isEmpty());
  EXPECT_FALSE(faulty.loadExpression("HEIGHT:FOO", statistics));
  EXPECT_TRUE(isEmpty(faulty));
  EXPECT_FALSE(none.loadExpression(nullptr, statistics));
  ASSERT_TRUE(equation.loadExpression("weight:n+1", statistics));
  EXPECT_EQ("1/N; @A+1", storedForm(equation));
  EXPECT_TRUE(equation.getText(text, statistics));
  EXPECT_STREQ("WEIGHT:N+1", text.get());
  EXPECT_FALSE(equation.getExpressionText(0, text, statistics, 10));
  EXPECT_TRUE(text.isEmpty());
  EXPECT_TRUE(equation.getExpressionText(0, text, statistics, 11));
}

TEST(EquationTest, BinaryFormOfASmallEquationIsPinned) {
  FormulaStatistics statistics;
  R_Equation equation;
  ASSERT_TRUE(equation.loadExpression("HEIGHT:PREV+1", statistics));
  expectStoredForm(equation, kSmallEquation);
  expectStoredForm(R_Equation(), "06 00");
  expectEveryCutFails<R_Equation>(kSmallEquation, isEmpty);
  int next = 0;
  EXPECT_FALSE(loadFrom(bytesOf(kSmallEquation), &equation, &next, false));
  EXPECT_EQ(6, next) << "a load after a failure must not read";
}

TEST(EquationTest, DamagedCountsAndMarksFailTheLoad) {
  const char* forms[] = {
      "06 01 02 00 00 00 00 02 00 00 00 00",              // no expression
      "06 01 02 FF FF FF 7F 02 01 00 00 00 01 01 00 31",  // huge reference count
      "06 01 02 1B 00 00 00 02 01 00 00 00",              // 27 references
      "06 02 02 00 00 00 00 02 01 00 00 00 01 01 00 31",  // valid mark 2
      "07 00",                                            // wrong type
  };
  for (const char* form : forms) {
    SCOPED_TRACE(form);
    R_Equation equation;
    EXPECT_FALSE(loadFrom(bytesOf(form), &equation));
    EXPECT_TRUE(isEmpty(equation));
  }
}
