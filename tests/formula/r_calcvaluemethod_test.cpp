// Method chains applied to hand-made values. Expected values are worked out
// by hand; the reference numbers come from the lines of
// tests/data/formula/methods.xml (mean and SD interpolated between the ages
// 0, 2 and 4).
#include "formula/r_calcvaluemethod.h"

#include <gtest/gtest.h>

#include <string>

#include "knowledge/r_file.h"
#include "tests/formula/calcvalue_text.h"
#include "tests/support/test_files.h"

namespace {

const int kMale = 0, kFemale = 1, kUnknown = 2;

class CalcValueMethodChainTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    file = new R_File;
    ASSERT_TRUE(file->loadXML(testData("formula/methods.xml").c_str(), nullptr));
  }
  static void TearDownTestSuite() {
    delete file;
    file = nullptr;
  }

  // The value after the chain, as text.
  static std::string chain(R_CalcValue value, const char* definition, const char* variable = "HEIGHT",
                           int visit = -1, int sex = kMale) {
    int index = file->getStatistics().getVarIndex(variable);
    R_CalcValueMethod::applyChain(value, definition, index, *file, sex, R_Number(30.0), visit);
    return valueText(value);
  }

  // Visits at ages 1 to 4; the second has no value.
  static R_CalcValue gapped() {
    return series({{1, 70, 1}, {2, U, 2}, {3, 95, 3}, {4, 100, 4}});
  }

  static R_File* file;
};

R_File* CalcValueMethodChainTest::file = nullptr;

struct ChainRow {
  const char* definition;
  int visit;
  const char* expected;
};

}  // namespace

TEST_F(CalcValueMethodChainTest, ChainsOnASeriesWithAGap) {
  const ChainRow rows[] = {
      {"AGE_ABOVE[2] FIRST_DEFINED", -1, "{1 ? 1|2 ? 2|3 95 3|4 ? 4}"},
      {"FIRST_DEFINED AGE_ABOVE[2]", -1, "undefined"},
      {"ABOVE", -1, "undefined"},
      {"ABOVE[]", -1, "undefined"},
      {"FIRST_DEFINED", -1, "{1 70 1|2 ? 2|3 ? 3|4 ? 4}"},
      {"LAST_DEFINED[2]", -1, "{1 ? 1|2 ? 2|3 95 3|4 100 4}"},
      {"FIRST_DEFINED[0]", -1, "undefined"},
      {"FIRST_VISIT[2]", -1, "{1 70 1|2 ? 2|3 ? 3|4 ? 4}"},
      {"FIRST_VISIT[0]", -1, "undefined"},
      {"FIRST_VISIT[9] LAST_VISIT[9]", -1, "{1 70 1|2 ? 2|3 95 3|4 100 4}"},
      {"LAST_VISIT[2]", -1, "{1 ? 1|2 ? 2|3 95 3|4 100 4}"},
      {"ABOVE[90]", -1, "{1 ? 1|2 ? 2|3 95 3|4 100 4}"},
      {"ABOVEOR[95] BELOW[100]", -1, "{1 ? 1|2 ? 2|3 95 3|4 ? 4}"},
      {"BELOWOR[95] X_ABOVEOR[3]", -1, "{1 ? 1|2 ? 2|3 95 3|4 ? 4}"},
      {"X_BELOW[3] AGE_BELOWOR[1]", -1, "{1 70 1|2 ? 2|3 ? 3|4 ? 4}"},
      {"AGE_ABOVEOR[4] X_ABOVE[3]", -1, "{1 ? 1|2 ? 2|3 ? 3|4 100 4}"},
      {"X_BELOWOR[1]", -1, "{1 70 1|2 ? 2|3 ? 3|4 ? 4}"},
      {"N", -1, "3"},
      {"AVG", -1, "88.3333"},
      {"STDEV", -1, "16.0728"},
      {"SLOPE", -1, "10.3571"},
      {"LAST_DEFINED AVG", -1, "100"},
      {"LAST_DEFINED STDEV", -1, "undefined"},
      {"IS_POINT", -1, "0"},
      {"LAST_DEFINED IS_POINT", -1, "1"},
      {"IS_LAST_VISIT", -1, "1"},
      {"FIRST_VISIT[3] IS_LAST_VISIT", -1, "0"},
      {"DEFINED", -1, "{1 1 1|2 0 2|3 1 3|4 1 4}"},
      {"FIRST_DEFINED DEFINED", -1, "{1 1 1|2 ? 2|3 ? 3|4 ? 4}"},
      {"ABOVE[200] DEFINED", -1, "0"},
      {"AGE", -1, "{1 1 1|2 ? 2|3 3 3|4 4 4}"},
      {"X", -1, "{1 1 1|2 ? 2|3 3 3|4 4 4}"},
      {"MAX", -1, "{1 ? 1|2 ? 2|3 ? 3|4 100 4}"},
      {"MIN[2]", -1, "{1 70 1|2 ? 2|3 95 3|4 ? 4}"},
      {"MAX Y", -1, "100"},
      {"Y", -1, "{1 70 1|2 ? 2|3 95 3|4 100 4}"},
      {"NOSUCH", -1, "undefined"},
  };
  for (const ChainRow& row : rows) {
    SCOPED_TRACE(row.definition);
    EXPECT_EQ(row.expected, chain(gapped(), row.definition, "HEIGHT", row.visit));
  }
}

TEST_F(CalcValueMethodChainTest, VisitBoundMethodsAtTheEdgesOfTheVisits) {
  const ChainRow rows[] = {
      {"PREV", -1, "undefined"},
      {"PREV", 0, "undefined"},
      {"PREV", 1, "{1 70 1|2 ? 2|3 ? 3|4 ? 4}"},
      {"PREV", 2, "{1 70 1|2 ? 2|3 ? 3|4 ? 4}"},
      {"PREV", 3, "{1 ? 1|2 ? 2|3 95 3|4 ? 4}"},
      {"NEXT", -1, "undefined"},
      {"NEXT", 0, "{1 ? 1|2 ? 2|3 95 3|4 ? 4}"},
      {"NEXT", 3, "undefined"},
      {"NEXT", 4, "undefined"},
      {"NOW", -1, "undefined"},
      {"NOW", 1, "undefined"},
      {"NOW", 3, "{1 ? 1|2 ? 2|3 ? 3|4 100 4}"},
      {"NOW", 4, "undefined"},
      {"X_WINDOW[1]", 2, "{1 ? 1|2 ? 2|3 95 3|4 100 4}"},
      {"X_WINDOW[1]", 1, "undefined"},
      {"X_WINDOW", 2, "undefined"},
      {"AGE_WINDOW[1.5]", 0, "{1 70 1|2 ? 2|3 ? 3|4 ? 4}"},
      {"AGE_WINDOW[0]", 3, "{1 ? 1|2 ? 2|3 ? 3|4 100 4}"},
  };
  for (const ChainRow& row : rows) {
    SCOPED_TRACE(std::string(row.definition) + " at visit " + std::to_string(row.visit));
    EXPECT_EQ(row.expected, chain(gapped(), row.definition, "HEIGHT", row.visit));
  }
}

TEST_F(CalcValueMethodChainTest, FirstVisitKeepsPositionsWhetherOrNotTheyHoldAValue) {
  R_CalcValue late = series({{1, U, 1}, {2, 80, 2}});
  EXPECT_EQ("undefined", chain(late, "FIRST_VISIT[1]"));
  EXPECT_EQ("{1 ? 1|2 80 2}", chain(late, "FIRST_DEFINED[1]"));
}

TEST_F(CalcValueMethodChainTest, ScalarsPassValueFiltersButHaveNoAxesOrPositions) {
  const ChainRow rows[] = {
      {"ABOVE[5]", -1, "7"},      {"BELOW[5]", -1, "undefined"}, {"AGE_ABOVE[5]", -1, "undefined"},
      {"X_BELOW[5]", -1, "undefined"}, {"FIRST_DEFINED", -1, "7"}, {"LAST_DEFINED[3]", -1, "7"},
      {"FIRST_VISIT", -1, "undefined"}, {"N", -1, "undefined"}, {"AVG", -1, "undefined"},
      {"IS_POINT", -1, "0"},       {"IS_LAST_VISIT", -1, "0"},    {"DEFINED", -1, "1"},
      {"AGE", -1, "undefined"},    {"NOW", 0, "undefined"},       {"MAX", -1, "7"},
      {"Y", -1, "7"},
  };
  for (const ChainRow& row : rows) {
    SCOPED_TRACE(row.definition);
    EXPECT_EQ(row.expected, chain(scalar(7), row.definition, "HEIGHT", row.visit));
  }
}

TEST_F(CalcValueMethodChainTest, OnlyDefinedTurnsAnUndefinedValueIntoANumber) {
  EXPECT_EQ("0", chain(R_CalcValue(), "DEFINED"));
  EXPECT_EQ("undefined", chain(R_CalcValue(), "N"));
  EXPECT_EQ("undefined", chain(R_CalcValue(), "IS_POINT"));
  EXPECT_EQ("1", chain(R_CalcValue(), "DEFINED DEFINED"));
}

TEST_F(CalcValueMethodChainTest, SDScoresComeFromTheInterpolatedReferenceLine) {
  // Age 1: mean 68, SD 2.5; age 3: mean 94, SD 3.5; age 4: mean 102, SD 4.
  EXPECT_EQ("{1 0.8 1|2 ? 2|3 0.285714 3|4 -0.5 4}", chain(gapped(), "SD"));
  EXPECT_EQ("{1 ? 1|2 ? 2|3 ? 3|4 -0.5 4}", chain(gapped(), "LAST_DEFINED SD"));
  EXPECT_EQ("-0.5", chain(gapped(), "LAST_DEFINED SD Y"));
  // No reference for girls, nor for an unknown sex.
  EXPECT_EQ("undefined", chain(gapped(), "SD", "HEIGHT", -1, kFemale));
  EXPECT_EQ("undefined", chain(gapped(), "SD", "HEIGHT", -1, kUnknown));
  // A measurement outside the reference's ages loses its point only.
  R_CalcValue late = series({{3, 95, 3}, {5, 110, 5}});
  EXPECT_EQ("{3 0.285714 3|5 ? 5}", chain(late, "SD"));
  // A followed variable folded to a scalar has no SD score.
  EXPECT_EQ("undefined", chain(gapped(), "AVG SD"));
}

TEST_F(CalcValueMethodChainTest, PercentilesAndValuesAtAPercentile) {
  R_CalcValue value = gapped();
  int height = file->getStatistics().getVarIndex("HEIGHT");
  R_CalcValueMethod::applyChain(value, "FIRST_DEFINED P", height, *file, kMale, R_Number(), -1);
  ASSERT_TRUE(value.isPoint());
  // 100 * Phi(0.8), by the error function.
  EXPECT_NEAR(78.81446014166033, value.getPoint(0).getY().getValue(), 1e-8);
  EXPECT_EQ("{1 68 1|2 ? 2|3 94 3|4 102 4}", chain(gapped(), "VAL_BY_P[50]"));
  EXPECT_EQ("undefined", chain(gapped(), "VAL_BY_P[100]"));
  EXPECT_EQ("undefined", chain(gapped(), "VAL_BY_P"));
  EXPECT_EQ("undefined", chain(scalar(3), "VAL_BY_P[50]"));
}

TEST_F(CalcValueMethodChainTest, AListVariableKeepsItsStageAsXBesideItsSDScore) {
  // At age 5 the stage line has mean 2 and SD 1.
  R_CalcValue stages = series({{5, 3, 5}});
  EXPECT_EQ("{3 1 5}", chain(stages, "SD", "STAGE"));
}

TEST_F(CalcValueMethodChainTest, AnamnesticScalarsUseTheAnamnesticReference) {
  EXPECT_EQ("1", chain(scalar(185), "SD", "FATHER_HT"));
  EXPECT_EQ("undefined", chain(scalar(185), "SD", "FATHER_HT", -1, kFemale));
  EXPECT_EQ("undefined", chain(scalar(185), "SD", "HEIGHT"));
  EXPECT_EQ("undefined", chain(gapped(), "SD", "FATHER_HT"));
}
