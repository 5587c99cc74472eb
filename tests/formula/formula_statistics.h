// The variable names that the formula suites translate against.
#ifndef TESTS_FORMULA_FORMULA_STATISTICS_H
#define TESTS_FORMULA_FORMULA_STATISTICS_H

#include <gtest/gtest.h>

#include "knowledge/r_filestatistics.h"

// HEIGHT is index 0, WEIGHT 1, MALE 2 (hidden by the keyword), PI 3 (hidden
// by the function) and AGE 4.
class FormulaStatistics : public R_FileStatistics {
 public:
  FormulaStatistics() {
    const char* names[] = {"HEIGHT", "weight", "MALE", "PI", "AGE"};
    for (const char* name : names) EXPECT_TRUE(addVar(name)) << name;
  }
};

#endif
