// Each name of a formula is looked up, so long formulas over twenty thousand
// variables translate in time that grows with the formulas alone (comparing
// every reference with every variable took over 20 s).
#include "formula/r_equationtranslator.h"

#include <gtest/gtest.h>

#include <string>

#include "knowledge/r_filestatistics.h"
#include "tests/support/resource_meter.h"

TEST(EquationTranslatorLimitsTest, LongFormulasOverManyVariablesTranslateInBoundedTime) {
  auto name = [](int number) {  // "AAAA", "AAAB", ...
    std::string text(4, 'A');
    for (int i = 3; i >= 0; --i, number /= 26) text[static_cast<size_t>(i)] = static_cast<char>('A' + number % 26);
    return text;
  };
  R_FileStatistics statistics;
  for (int i = 0; i < 20000; ++i) ASSERT_TRUE(statistics.addVar(name(i).c_str()));
  // The last variable 3000 times, then the first with a lower-case chain.
  std::string formula = name(19999), expected = "@A";
  for (int i = 1; i < 3000; ++i) {
    formula += "+" + name(19999);
    expected += "+@A";
  }
  ResourceMeter meter;
  for (int i = 0; i < 100; ++i) {
    R_EquationTranslator translator;
    ASSERT_TRUE(translator.translate((formula + "-aaaa:prev").c_str(), statistics));
    ASSERT_EQ(expected + "-@B", translator.getEquation(0));
    ASSERT_STREQ("PREV", translator.getDefinition(1));
  }
  EXPECT_LT(meter.seconds(), 10.0);
}
