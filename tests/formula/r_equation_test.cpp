#include "formula/r_equation.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/r_bufferinputstream.h"
#include "tests/support/stored_bytes.h"
#include "tests/formula/formula_statistics.h"
#include "tests/support/xml_fakes.h"
#include "xml/r_xmltextoutputbuffer.h"

namespace {

const char kNoPairs[] = "No valid condition/method pairs found.";
const char kNotProcessed[] = "Error while processing equation (wrong format or none defined).";

// The stored form as one text: "var index/chain, ...; text | text | ...".
std::string storedForm(const R_Equation& equation) {
  std::string text;
  for (int k = 0; k < equation.getVarCount(); ++k) {
    if (k > 0) text += ", ";
    text += std::to_string(equation.getVariable(k)) + "/" + equation.getDefinition(k).get();
  }
  text += ";";
  for (int k = 0; k < equation.getMethodCount(); ++k) {
    text += k > 0 ? " | " : " ";
    text += equation.getMethod(k).get();
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

std::string expressionText(const R_Equation& equation, int index,
                           const R_FileStatistics& statistics, bool* sound) {
  R_String text("left over");
  *sound = equation.getExpressionText(index, text, statistics);
  return text.get();
}

void expectEmpty(const R_Equation& equation) {
  EXPECT_FALSE(equation.isValid());
  EXPECT_EQ(0, equation.getVarCount());
  EXPECT_EQ(0, equation.getMethodCount());
}

// One reference (HEIGHT, no chain) and one stored text.
Bytes oneReferenceAround(const std::string& text) {
  Bytes bytes = bytesOf("06 01 02 01 00 00 00 02 01 00 00 00 02 00 00 00 00 01 00 00 01");
  bytes.push_back(static_cast<unsigned char>(text.size()));
  bytes.push_back(0);
  return bytes + Bytes(text.begin(), text.end());
}

R_Equation* loaded(const Bytes& bytes, bool* ok) {
  R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
  R_Equation* equation = new R_Equation;
  *ok = true;
  equation->load(stream, ok);
  return equation;
}

// "HEIGHT:PREV+1": HEIGHT is index 0, its chain PREV, the text @A+1.
const char kSmallEquation[] =
    "06 01 02 01 00 00 00 02 01 00 00 00 02 00 00 00 00 01 04 00 50 52 45 56 01 04 00 40 41 2B 31";

}  // namespace

TEST(EquationTest, LoadsConditionMethodPairsFromComputeElements) {
  FormulaStatistics statistics;
  CollectingReporter reporter;
  R_Equation equation;
  EXPECT_TRUE(
      equation.loadXML("\n  <compute if=\"MALE\">HEIGHT+1</compute>\n"
                       "  <compute>\n    WEIGHT\n  </compute>\n",
                       statistics, &reporter));
  EXPECT_TRUE(equation.isValid());
  EXPECT_EQ("0/, 1/; $M | @A+1 | 1 | @B", storedForm(equation));
  EXPECT_TRUE(reporter.lines().empty());
}

TEST(EquationTest, WritesEachPairAsComputeWithTheConditionInIf) {
  FormulaStatistics statistics;
  R_Equation equation;
  ASSERT_TRUE(equation.loadXML("<compute if=\"MALE\">HEIGHT+1</compute><compute>WEIGHT</compute>",
                               statistics, nullptr));
  EXPECT_EQ("<compute if=\"MALE\">HEIGHT:+1</compute><compute if=\"1\">WEIGHT:</compute>",
            savedXML(equation, statistics));
}

TEST(EquationTest, WrittenPairsLoadBackToTheSameStoredForm) {
  FormulaStatistics statistics;
  R_Equation equation;
  ASSERT_TRUE(
      equation.loadXML("<compute if=\"height:prev - 2 * WEIGHT = 3\">"
                       "WEIGHT:AGE_ABOVE[2.5]:LAST_DEFINED[2]:AVG / height</compute>"
                       "<compute if=\"not female | is_proband\">age_today * 2</compute>"
                       "<compute>HEIGHT:PREV</compute>",
                       statistics, nullptr));
  EXPECT_EQ(
      "0/PREV, 1/, 1/AGE_ABOVE[2.5] LAST_DEFINED[2] AVG, 0/; "
      "@A-2*@B=3 | @C/@D | !$F|$I | $A*2 | 1 | @A",
      storedForm(equation));
  std::string xml = savedXML(equation, statistics);
  EXPECT_EQ(
      "<compute if=\"HEIGHT:PREV-2*WEIGHT:=3\">"
      "WEIGHT:AGE_ABOVE[2.5]:LAST_DEFINED[2]:AVG/HEIGHT:</compute>"
      "<compute if=\"!FEMALE|IS_PROBAND\">AGE_TODAY*2</compute>"
      "<compute if=\"1\">HEIGHT:PREV</compute>",
      xml);
  R_Equation again;
  ASSERT_TRUE(again.loadXML(xml.c_str(), statistics, nullptr));
  EXPECT_EQ(storedForm(equation), storedForm(again));
}

TEST(EquationTest, ReportsFaultyComputeElementsAndFailsAsAWhole) {
  struct Row {
    const char* xml;
    std::vector<std::string> lines;
  };
  const Row rows[] = {
      {"<compute if=\"\">HEIGHT</compute>",
       {"data error closing block </compute>: error in condition", kNoPairs, kNotProcessed}},
      {"<compute if=\"HEIGHT:FOO\">1</compute>",
       {"data error closing block </compute>: error in condition", kNoPairs, kNotProcessed}},
      {"<compute if=\"(\">)</compute>",
       {"data error closing block </compute>: error in condition", kNoPairs, kNotProcessed}},
      {"<compute>HEIGHT:FOO</compute>",
       {"data error closing block </compute>: error in method", kNoPairs, kNotProcessed}},
      {"<compute if=\"MALE\">   </compute>",
       {"data error closing block </compute>: error in method", kNoPairs, kNotProcessed}},
      {"<compute if=\"MALE\"></compute>",
       {"data error closing block </compute>: unrecognized code in equation", kNoPairs,
        kNotProcessed}},
      {"<compute if=\"MALE\"/>",
       {"data error processing standalone tag <compute../>: unrecognized code in equation",
        kNoPairs, kNotProcessed}},
      {"<compute>1</compute><compute>HEIGHT:FOO</compute><compute>2</compute>",
       {"data error closing block </compute>: error in method", kNoPairs, kNotProcessed}},
      {"<other>1</other>", {kNoPairs, kNotProcessed}},
      {"", {"no input data", kNoPairs, kNotProcessed}},
      {"<compute>1", {"unfinished structure (missing end tags)", kNoPairs, kNotProcessed}},
  };
  FormulaStatistics statistics;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.xml);
    CollectingReporter reporter;
    R_Equation equation;
    EXPECT_FALSE(equation.loadXML(row.xml, statistics, &reporter));
    expectEmpty(equation);
    EXPECT_EQ(row.lines, reporter.lines());
  }
}

TEST(EquationTest, LoadsASingleExpressionWithoutMessages) {
  FormulaStatistics statistics;
  R_Equation equation;
  EXPECT_TRUE(equation.loadExpression("1+1", statistics));
  EXPECT_EQ("; 1+1", storedForm(equation));
  R_Equation faulty;
  EXPECT_FALSE(faulty.loadExpression("HEIGHT:FOO", statistics));
  expectEmpty(faulty);
  R_Equation none;
  EXPECT_FALSE(none.loadExpression(nullptr, statistics));
  expectEmpty(none);
}

TEST(EquationTest, ExpressionTextsReadBackAsTheSameExpression) {
  struct Row {
    const char* source;
    const char* text;
  };
  const Row rows[] = {
      {"height:prev - 2 * WEIGHT", "HEIGHT:PREV-2*WEIGHT:"},
      {"AGE_TODAY GT 2.5 AND MALE", "AGE_TODAY GT 2.5 AND MALE"},
      {"NOT (HEIGHT:ABOVE[100] # 3)", "!(HEIGHT:ABOVE[100] # 3)"},
      {"height LT weight =>(weight GT height) @ height < 2", "HEIGHT: LT WEIGHT: = GT (WEIGHT: GT HEIGHT:) AND HEIGHT: LT 2"},
      {"HEIGHT MALE", "HEIGHT: MALE"},
      {"height weight", "HEIGHT: WEIGHT:"},
      {"WEIGHT:AGE_ABOVE[2.5]:LAST_DEFINED[2]:AVG", "WEIGHT:AGE_ABOVE[2.5]:LAST_DEFINED[2]:AVG"},
      {"ALWAYS", "1"},
      {"female or is_proband", "FEMALE|IS_PROBAND"},
      {"HEIGHT LTEQ 3 @ WEIGHT GTEQ 1e2", "HEIGHT: LTEQ 3 AND WEIGHT: GTEQ 1E2"},
      {"sdp(weight:sd) * pi", "SDP(WEIGHT:SD)*PI"},
      {"MALE: + PI: + male:prev", "MALE:+PI:+MALE:PREV"},
  };
  FormulaStatistics statistics;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.source);
    R_Equation equation;
    ASSERT_TRUE(equation.loadExpression(row.source, statistics));
    bool sound = false;
    std::string text = expressionText(equation, 0, statistics, &sound);
    EXPECT_TRUE(sound);
    EXPECT_EQ(row.text, text);
    R_Equation again;
    ASSERT_TRUE(again.loadExpression(text.c_str(), statistics));
    EXPECT_EQ(storedForm(equation), storedForm(again));
  }
}

TEST(EquationTest, StoredTextsThatCannotBeSpelledGiveNoText) {
  const char* texts[] = {"@B", "@a", "@", "1+@", "$X", "$", "$m", "1$", ""};
  FormulaStatistics statistics;
  for (const char* text : texts) {
    SCOPED_TRACE(text);
    bool ok = false;
    R_Equation* equation = loaded(oneReferenceAround(text), &ok);
    ASSERT_TRUE(ok);
    bool sound = true;
    EXPECT_EQ("", expressionText(*equation, 0, statistics, &sound));
    EXPECT_FALSE(sound);
    delete equation;
  }
}

TEST(EquationTest, AReferenceToAVariableTheStatisticsLacksGivesNoText) {
  Bytes bytes = oneReferenceAround("@A$M");
  bytes[13] = 5;  // variable index 5, one past the five variables
  FormulaStatistics statistics;
  bool ok = false;
  R_Equation* equation = loaded(bytes, &ok);
  ASSERT_TRUE(ok);
  bool sound = true;
  EXPECT_EQ("", expressionText(*equation, 0, statistics, &sound));
  EXPECT_FALSE(sound);
  delete equation;
}

TEST(EquationTest, TextsReachingTheLimitAreNotSound) {
  FormulaStatistics statistics;
  R_Equation equation;
  ASSERT_TRUE(equation.loadExpression("HEIGHT", statistics));
  R_String text;
  EXPECT_FALSE(equation.getExpressionText(0, text, statistics, 7));
  EXPECT_TRUE(text.isEmpty());
  EXPECT_TRUE(equation.getExpressionText(0, text, statistics, 8));
  EXPECT_STREQ("HEIGHT:", text.get());
}

TEST(EquationTest, GetTextOfAnEmptyEquationIsEmpty) {
  FormulaStatistics statistics;
  R_Equation equation;
  R_String text("left over");
  EXPECT_FALSE(equation.getText(text, statistics));
  EXPECT_TRUE(text.isEmpty());
  ASSERT_TRUE(equation.loadExpression("weight:n", statistics));
  EXPECT_TRUE(equation.getText(text, statistics));
  EXPECT_STREQ("WEIGHT:N", text.get());
}

TEST(EquationTest, BinaryFormOfASmallEquationIsPinned) {
  FormulaStatistics statistics;
  R_Equation equation;
  ASSERT_TRUE(equation.loadExpression("HEIGHT:PREV+1", statistics));
  EXPECT_EQ(kSmallEquation, hexOf(savedBytes(equation)));
  EXPECT_EQ(kSmallEquation, hexOf(reloadAndSave<R_Equation>(bytesOf(kSmallEquation))));
  EXPECT_EQ("06 00", hexOf(savedBytes(R_Equation())));
}

TEST(EquationTest, PairsSurviveSaveLoadSave) {
  FormulaStatistics statistics;
  R_Equation equation;
  ASSERT_TRUE(
      equation.loadXML("<compute if=\"HEIGHT:PREV GT 3\">WEIGHT:AVG</compute>"
                       "<compute>HEIGHT</compute>",
                       statistics, nullptr));
  Bytes bytes = savedBytes(equation);
  EXPECT_EQ(hexOf(bytes), hexOf(reloadAndSave<R_Equation>(bytes)));
  bool ok = false;
  R_Equation* again = loaded(bytes, &ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(storedForm(equation), storedForm(*again));
  delete again;
}

TEST(EquationTest, TruncationAtEveryLengthFailsCleanly) {
  forEachTruncation<R_Equation>(bytesOf(kSmallEquation),
                                [](const R_Equation& equation, bool ok, R_InputStream&) {
                                  EXPECT_FALSE(ok);
                                  expectEmpty(equation);
                                });
}

TEST(EquationTest, AStoredInvalidEquationLoadsAsInvalidWithoutFailing) {
  bool ok = false;
  R_Equation* equation = loaded(bytesOf("06 00"), &ok);
  EXPECT_TRUE(ok);
  expectEmpty(*equation);
  delete equation;
}

TEST(EquationTest, AnOddMethodCountSurvivesLoading) {
  bool ok = false;
  R_Equation* equation = loaded(
      bytesOf("06 01 02 00 00 00 00 02 03 00 00 00 01 01 00 31 01 01 00 32 01 01 00 33"), &ok);
  EXPECT_TRUE(ok);
  EXPECT_TRUE(equation->isValid());
  EXPECT_EQ("; 1 | 2 | 3", storedForm(*equation));
  FormulaStatistics statistics;
  EXPECT_EQ("<compute if=\"1\">2</compute>", savedXML(*equation, statistics));
  delete equation;
}

TEST(EquationTest, DamagedCountsAndMarksFailTheLoad) {
  const char* forms[] = {
      "06 01 02 00 00 00 00 02 00 00 00 00",              // no expression
      "06 01 02 00 00 00 00 02 FF FF FF 7F 01 01 00 31",  // huge method count
      "06 01 02 FF FF FF 7F 02 01 00 00 00 01 01 00 31",  // huge reference count
      "06 01 02 1B 00 00 00 02 01 00 00 00",              // 27 references
      "06 01 02 FF FF FF FF 02 01 00 00 00 01 01 00 31",  // negative count
      "06 01 02 00 00 00 00 02 FE FF FF FF 01 01 00 31",  // negative count
      "06 02 02 00 00 00 00 02 01 00 00 00 01 01 00 31",  // valid mark 2
      "06 01 01 00 00 00 00 02 01 00 00 00 01 01 00 31",  // wrong inner type
      "07 00",                                            // wrong type
  };
  for (const char* form : forms) {
    SCOPED_TRACE(form);
    bool ok = true;
    R_Equation* equation = loaded(bytesOf(form), &ok);
    EXPECT_FALSE(ok);
    expectEmpty(*equation);
    delete equation;
  }
}

TEST(EquationTest, LoadDoesNothingWhenOkIsAlreadyFalse) {
  Bytes bytes = bytesOf(kSmallEquation);
  R_BufferInputStream stream(bytes.data(), static_cast<int>(bytes.size()));
  bool ok = false;
  R_Equation equation;
  equation.load(stream, &ok);
  EXPECT_FALSE(ok);
  expectEmpty(equation);
  EXPECT_EQ(6, stream.readByte());
}
