// Method chains applied to hand-made values. Expected values are worked out
// by hand; the reference numbers come from the lines of
// tests/data/formula/methods.xml (mean and SD interpolated between the ages
// 0, 2 and 4).
#include "formula/r_calcvaluemethod.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "knowledge/r_file.h"
#include "tests/formula/calcvalue_text.h"
#include "tests/knowledge/case_file.h"
#include "tests/support/test_files.h"

namespace {

const int kMale = 0, kFemale = 1, kUnknown = 2;

// The knowledge file of the chains, loaded once.
const R_File& file() {
  static R_File loaded;
  static const bool ok = loaded.loadXML(testData("formula/methods.xml").c_str(), nullptr);
  EXPECT_TRUE(ok);
  return loaded;
}

// The value after the chain, as text.
std::string chain(R_CalcValue value, const char* definition, const char* variable = "HEIGHT", int visit = -1,
                  int sex = kMale) {
  int index = file().getStatistics().getVarIndex(variable);
  R_CalcValueMethod::applyChain(value, definition, index, file(), sex, R_Number(30.0), visit);
  return valueText(value);
}

// Visits at ages 1 to 4; the second has no value.
R_CalcValue gapped() { return series({{1, 70, 1}, {2, U, 2}, {3, 95, 3}, {4, 100, 4}}); }

struct ChainRow {
  const char* definition;
  const char* expected;
};

}  // namespace

TEST(CalcValueMethodChainTest, ChainsOnASeriesWithAGap) {
  for (const TextCase& row : readCases("formula/chains.txt")) {
    SCOPED_TRACE(row.label);
    size_t at = row.label.find(" @ ");
    int visit = at == std::string::npos ? -1 : std::stoi(row.label.substr(at + 3));
    EXPECT_EQ(row.out, std::vector<std::string>{chain(gapped(), row.label.substr(0, at).c_str(), "HEIGHT", visit)});
  }
  R_CalcValue late = series({{1, U, 1}, {2, 80, 2}});
  EXPECT_EQ("undefined", chain(late, "FIRST_VISIT[1]")) << "positions count whether or not they hold a value";
  EXPECT_EQ("{1 ? 1|2 80 2}", chain(late, "FIRST_DEFINED[1]"));
  // A series without a valid point has no average, spread or slope.
  for (const char* definition : {"AVG", "STDEV", "SLOPE"})
    EXPECT_EQ("undefined", chain(rawSeries({{1, U, 1}, {2, U, 2}}), definition)) << definition;
}

TEST(CalcValueMethodChainTest, ScalarsPassValueFiltersButHaveNoAxesOrPositionsAndOnlyDefinedDefinesUndefined) {
  const ChainRow rows[] = {
      {"ABOVE[5]", "7"},        {"BELOW[5]", "undefined"}, {"AGE_ABOVE[5]", "undefined"}, {"FIRST_DEFINED", "7"},
      {"FIRST_VISIT", "undefined"},  {"N", "undefined"},
      {"AVG", "undefined"},       {"IS_POINT", "0"},           {"IS_LAST_VISIT", "0"},        {"DEFINED", "1"},
      {"AGE", "undefined"},       {"MAX", "7"},                {"Y", "7"},
  };
  for (const ChainRow& row : rows) {
    SCOPED_TRACE(row.definition);
    EXPECT_EQ(row.expected, chain(scalar(7), row.definition));
  }
  EXPECT_EQ("undefined", chain(scalar(7), "NOW", "HEIGHT", 0));
  EXPECT_EQ("0", chain(R_CalcValue(), "DEFINED"));
  EXPECT_EQ("undefined", chain(R_CalcValue(), "N"));
  EXPECT_EQ("1", chain(R_CalcValue(), "DEFINED DEFINED"));
}

TEST(CalcValueMethodChainTest, SDScoresComeFromTheInterpolatedReferenceLineOfTheVariableAndSex) {
  // Age 1: mean 68, SD 2.5; age 3: mean 94, SD 3.5; age 4: mean 102, SD 4.
  EXPECT_EQ("{1 0.8 1|2 ? 2|3 0.285714 3|4 -0.5 4}", chain(gapped(), "SD"));
  EXPECT_EQ("-0.5", chain(gapped(), "LAST_DEFINED SD Y"));
  // No reference for girls, nor for an unknown sex.
  EXPECT_EQ("undefined", chain(gapped(), "SD", "HEIGHT", -1, kFemale));
  EXPECT_EQ("undefined", chain(gapped(), "SD", "HEIGHT", -1, kUnknown));
  // A measurement outside the reference's ages loses its point only.
  EXPECT_EQ("{3 0.285714 3|5 ? 5}", chain(series({{3, 95, 3}, {5, 110, 5}}), "SD"));
  // A followed variable folded to a scalar has no SD score.
  EXPECT_EQ("undefined", chain(gapped(), "AVG SD"));
  // At age 5 the stage line of a list variable has mean 2 and SD 1; the
  // stage stays as x beside its SD score.
  EXPECT_EQ("{3 1 5}", chain(series({{5, 3, 5}}), "SD", "STAGE"));
  // Anamnestic scalars use the anamnestic reference, and only they do.
  EXPECT_EQ("1", chain(scalar(185), "SD", "FATHER_HT"));
  EXPECT_EQ("undefined", chain(scalar(185), "SD", "FATHER_HT", -1, kFemale));
  EXPECT_EQ("undefined", chain(scalar(185), "SD", "HEIGHT"));
  EXPECT_EQ("undefined", chain(gapped(), "SD", "FATHER_HT"));
}

TEST(CalcValueMethodChainTest, PercentilesAndValuesAtAPercentile) {
  R_CalcValue value = gapped();
  int height = file().getStatistics().getVarIndex("HEIGHT");
  R_CalcValueMethod::applyChain(value, "FIRST_DEFINED P", height, file(), kMale, R_Number(), -1);
  ASSERT_TRUE(value.isPoint());
  // 100 * Phi(0.8), by the error function.
  EXPECT_NEAR(78.81446014166033, value.getPoint(0).getY().getValue(), 1e-8);
  EXPECT_EQ("{1 68 1|2 ? 2|3 94 3|4 102 4}", chain(gapped(), "VAL_BY_P[50]"));
  EXPECT_EQ("undefined", chain(gapped(), "VAL_BY_P[100]"));
  EXPECT_EQ("undefined", chain(gapped(), "VAL_BY_P"));
  EXPECT_EQ("undefined", chain(scalar(3), "VAL_BY_P[50]"));
}

// Keywords are upper case and whole; a bracket gives the parameter.
TEST(CalcValueMethodTest, ParseMethodReadsTheNameAndTheBracketAndRefusesWordsWithoutAKeywordName) {
  typedef R_CalcValueMethod M;
  const struct { const char* word; M::Method method; const char* param; } rows[] = {
      {"ABOVE[2.5]", M::methodAbove, "2.5"},     {"ABOVE[-]", M::methodAbove, "0"},   {"ABOVE[]", M::methodAbove, "?"},
      {"LAST_VISIT[2", M::methodLastVisit, "2"}, {"AGE[7]", M::methodAge, "7"},       {"Y", M::methodY, "?"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.word);
    R_Number param(99.0);
    EXPECT_EQ(row.method, M::parseMethod(row.word, nullptr, &param));
    EXPECT_EQ(row.param, numberText(param));
  }
  for (const char* word : {"", "prev", "PREVX", "[1]", "ABOVE_", " PREV"}) {
    SCOPED_TRACE(word);
    bool visit_bound = true;
    EXPECT_EQ(M::methodUnknown, M::parseMethod(word, &visit_bound));
    EXPECT_FALSE(visit_bound);
  }
  EXPECT_TRUE(M::isVisitBound("X_WINDOW[2]") && M::isVisitBound("NOW"));
  EXPECT_FALSE(M::isVisitBound("prev") || M::isVisitBound("FIRST_VISIT[1]"));
}
