// The translator against a file of many variables: each name of a formula is
// looked up, so long formulas over twenty thousand variables translate in
// time that grows with the formulas alone.
#include "formula/r_equationtranslator.h"

#include <gtest/gtest.h>

#include <string>

#include "knowledge/r_filestatistics.h"
#include "tests/support/resource_meter.h"

namespace {

const int kVariables = 20000;
const int kReferences = 3000;
const int kFormulas = 100;
// Generous: the lookups take milliseconds; comparing every reference with
// every variable took over 20 s without the sanitizers.
const double kSecondsBound = 10;

// A distinct identifier of letters for every number: "AAAA", "AAAB", ...
std::string letterName(int number) {
  std::string name(4, 'A');
  for (int i = 3; i >= 0; --i, number /= 26) name[static_cast<size_t>(i)] = static_cast<char>('A' + number % 26);
  return name;
}

}  // namespace

TEST(EquationTranslatorLimitsTest, LongFormulasOverManyVariablesTranslateInBoundedTime) {
  R_FileStatistics statistics;
  for (int i = 0; i < kVariables; ++i) ASSERT_TRUE(statistics.addVar(letterName(i).c_str()));
  // The last variable, named again and again, then the first with a chain
  // written in lower case.
  std::string formula = letterName(kVariables - 1);
  std::string expected = "@A";
  for (int i = 1; i < kReferences; ++i) {
    formula += "+" + letterName(kVariables - 1);
    expected += "+@A";
  }
  formula += "-aaaa:prev";
  expected += "-@B";
  ResourceMeter meter;
  for (int i = 0; i < kFormulas; ++i) {
    R_EquationTranslator translator;
    ASSERT_TRUE(translator.translate(formula.c_str(), statistics));
    ASSERT_EQ(expected, translator.getEquation(0));
    ASSERT_STREQ("PREV", translator.getDefinition(1));
  }
  EXPECT_LT(meter.seconds(), kSecondsBound);
}

TEST(EquationTranslatorLimitsTest, ANameFitsAsTheWholeTokenOrBeforeAnyOfItsColons) {
  R_FileStatistics statistics;
  ASSERT_TRUE(statistics.addVar("AB"));
  const struct {
    const char* formula;
    bool translates;
  } rows[] = {{"ab", true}, {"AB:", true}, {"ab:PREV", true}, {"ABC", false}, {"A", false}, {"ABC:PREV", false}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.formula);
    R_EquationTranslator translator;
    EXPECT_EQ(row.translates, translator.translate(row.formula, statistics));
  }
}
