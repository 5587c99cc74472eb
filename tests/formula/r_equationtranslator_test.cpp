#include "formula/r_equationtranslator.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/formula/formula_statistics.h"
#include "tests/knowledge/case_file.h"

namespace {

std::string slotsOf(const R_EquationTranslator& translator) {
  std::string text;
  for (int i = 0; i < translator.getVariableCount(); ++i) {
    if (i > 0) text += ", ";
    text += std::string(translator.getVariable(i)) + "/" + translator.getDefinition(i);
  }
  return text;
}

}  // namespace

TEST(EquationTranslatorTest, TranslatesSourceTextsIntoTheStoredForm) {
  FormulaStatistics statistics;
  std::vector<TextCase> rows = readCases("formula/translations.txt");
  rows.push_back(TextCase{"  HEIGHT\t*\r\n2  ", "", {"@A*2", "HEIGHT/"}});
  for (const TextCase& row : rows) {
    SCOPED_TRACE(row.label);
    R_EquationTranslator translator;
    ASSERT_EQ(!row.out.empty(), translator.translate(row.label.c_str(), statistics));
    ASSERT_EQ(row.out.empty() ? 0 : 1, translator.getEquationCount());
    if (row.out.empty()) continue;
    EXPECT_EQ(row.out, std::vector<std::string>({translator.getEquation(0), slotsOf(translator)}));
  }
}

// Bytes above 127 are no token characters.
TEST(EquationTranslatorTest, RefusesEmptyTextsAndBytesAbove127AndStoresNothing) {
  FormulaStatistics statistics;
  for (const char* source : {static_cast<const char*>(nullptr), "", "   \t ", "HEIGHT * \xC8"}) {
    R_EquationTranslator translator;
    EXPECT_FALSE(translator.translate(source, statistics));
    EXPECT_EQ(0, translator.getEquationCount());
  }
}

// The reference of a refused equation stays entered: the equation is
// refused as a whole, so the slot does no harm.
TEST(EquationTranslatorTest, ExpressionsOfOneTranslatorShareTheReferenceTableAlsoWithRefusedOnes) {
  FormulaStatistics statistics;
  R_EquationTranslator translator;
  ASSERT_TRUE(translator.translate("HEIGHT GT 100", statistics));
  EXPECT_FALSE(translator.translate("HEIGHT:FOO + 1", statistics));
  ASSERT_TRUE(translator.translate("WEIGHT / height:", statistics));
  ASSERT_EQ(2, translator.getEquationCount());
  EXPECT_STREQ("@A>100", translator.getEquation(0));
  EXPECT_STREQ("@C/@A", translator.getEquation(1));
  EXPECT_EQ("HEIGHT/, HEIGHT/FOO, WEIGHT/", slotsOf(translator));
}

TEST(EquationTranslatorTest, ATwentySeventhDistinctReferenceFailsButAReusedOneDoesNot) {
  FormulaStatistics statistics;
  R_EquationTranslator translator;
  for (int k = 1; k <= 26; ++k) {
    std::string source = "HEIGHT:ABOVE[" + std::to_string(k) + "]";
    SCOPED_TRACE(source);
    ASSERT_TRUE(translator.translate(source.c_str(), statistics));
    EXPECT_EQ(std::string("@") + static_cast<char>('A' + k - 1), translator.getEquation(k - 1));
  }
  EXPECT_FALSE(translator.translate("HEIGHT:ABOVE[27]", statistics));
  EXPECT_FALSE(translator.translate("WEIGHT", statistics));
  EXPECT_EQ(26, translator.getVariableCount());
  ASSERT_TRUE(translator.translate("height:above[26] + HEIGHT:ABOVE[5]", statistics));
  EXPECT_STREQ("@Z+@E", translator.getEquation(26));
}
