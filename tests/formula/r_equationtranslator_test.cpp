#include "formula/r_equationtranslator.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/formula/formula_statistics.h"

namespace {

struct TranslationRow {
  const char* source;
  const char* translated;
  // The slots afterwards, each "NAME/CHAIN", joined by ", ".
  const char* slots;
};

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
  const TranslationRow rows[] = {
      {"height:prev - 2 * WEIGHT", "@A-2*@B", "HEIGHT/PREV, WEIGHT/"},
      {"AGE_TODAY GT 2.5 AND MALE", "$A>2.5&$M", ""},
      {"NOT (HEIGHT:ABOVE[100] # 3)", "!(@A<>3)", "HEIGHT/ABOVE[100]"},
      {"always", "1", ""},
      {"height + HEIGHT", "@A+@A", "HEIGHT/"}, {"HEIGHT: * HEIGHT", "@A*@A", "HEIGHT/"},
      {"HEIGHT + HEIGHT:PREV", "@A+@B", "HEIGHT/, HEIGHT/PREV"}, {"HEIGHT:prev / height:PREV", "@A/@A", "HEIGHT/PREV"},
      {"WEIGHT:AGE_ABOVE[2.5]:LAST_DEFINED[2]:AVG", "@A", "WEIGHT/AGE_ABOVE[2.5] LAST_DEFINED[2] AVG"},
      {"HEIGHT:x_window[-1.5e2]", "@A", "HEIGHT/X_WINDOW[-1.5E2]"}, {"HEIGHT=>WEIGHT", "@A=>@B", "HEIGHT/, WEIGHT/"},
      {"height lteq 3 or weight gteq 4 and not female", "@A<=3|@B>=4&!$F", "HEIGHT/, WEIGHT/"},
      {"HEIGHT LT 1 = IS_PROBAND", "@A<1=$I", "HEIGHT/"},
      {"pi * exp(1) + sdp(psd(0.5)) - abs(ln(log(sin(cos(2)))))",
       "PI*EXP(1)+SDP(PSD(0.5))-ABS(LN(LOG(SIN(COS(2)))))", ""},
      {"1e5 + 2.5E-3", "1E5+2.5E-3", ""}, {"3 ^ 2 ? 1 | 0", "3^2?1|0", ""}, {"HEIGHT 2", "@A2", "HEIGHT/"},
      {")1(", ")1(", ""}, {"  HEIGHT\t*\r\n2  ", "@A*2", "HEIGHT/"},
      {"MALE:PREV = male", "@A=$M", "MALE/PREV"}, {"AGE:AGE + age", "@A+@B", "AGE/AGE, AGE/"},
      {"WEIGHT:SD:P", "@A", "WEIGHT/SD P"},
  };
  FormulaStatistics statistics;
  for (const TranslationRow& row : rows) {
    SCOPED_TRACE(row.source);
    R_EquationTranslator translator;
    ASSERT_TRUE(translator.translate(row.source, statistics));
    ASSERT_EQ(1, translator.getEquationCount());
    EXPECT_STREQ(row.translated, translator.getEquation(0));
    EXPECT_EQ(row.slots, slotsOf(translator));
  }
}

TEST(EquationTranslatorTest, RefusesNearMissesAndStoresNothing) {
  const char* sources[] = {
      nullptr, "", "   \t ",
      "HEIGHT:FOO", "HEIGHT:AVG:FOO",  // unknown methods, also later in the chain
      "HEIGHT:PREVIOUS",               // a keyword must be the whole leading run
      "HEIGHT:ABOVE[1", "HEIGHT:ABOVE[x]", "HEIGHT:ABOVE[1]]",
      "$M",                            // the stored form is no source text
      ".5", "2,5",                     // numbers start with a digit and have no comma
      "LENGTH", "HEIG", "HEIGHTS", "HEIGHT_X", "HEIGHTS:PREV", // a known name is the whole token or ends at a colon
      "(HEIGHT", "HEIGHT; 1", "'1'",
      "HEIGHT * \xC8",                // bytes above 127 are no token characters
  };
  FormulaStatistics statistics;
  for (const char* source : sources) {
    SCOPED_TRACE(source ? source : "null");
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
