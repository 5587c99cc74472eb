#include <gtest/gtest.h>

#include <set>
#include <string>

#include "formula/r_calcvaluemethod.h"

namespace {

typedef R_CalcValueMethod M;

// All method keywords of the formula language.
const char* const kKeywords[] = {
    "P",           "SD",         "N",          "PREV",          "NEXT",
    "NOW",         "X_WINDOW",   "AGE_WINDOW", "SLOPE",         "DEFINED",
    "ABOVE",       "BELOW",      "AGE_ABOVE",  "AGE_BELOW",     "X_ABOVE",
    "X_BELOW",     "MAX",        "MIN",        "FIRST_DEFINED", "LAST_DEFINED",
    "FIRST_VISIT", "LAST_VISIT", "AVG",        "STDEV",         "AGE",
    "X",           "IS_POINT",   "ABOVEOR",    "BELOWOR",       "AGE_ABOVEOR",
    "AGE_BELOWOR", "X_ABOVEOR",  "X_BELOWOR",  "VAL_BY_P",      "IS_LAST_VISIT",
    "Y",
};

// The keywords whose method has the parameter kind `kind`.
std::set<std::string> keywordsOfKind(M::ParamKind kind) {
  std::set<std::string> keywords;
  for (const char* keyword : kKeywords) {
    if (M::getParamKind(M::parseMethod(keyword)) == kind) keywords.insert(keyword);
  }
  return keywords;
}

struct WordRow {
  const char* word;
  M::Method method;
  bool defined;
  double param;
};

}  // namespace

TEST(CalcValueMethodTest, EveryKeywordNamesItsOwnMethod) {
  std::set<int> methods;
  for (const char* keyword : kKeywords) {
    SCOPED_TRACE(keyword);
    M::Method method = M::parseMethod(keyword);
    ASSERT_NE(M::methodUnknown, method);
    EXPECT_STREQ(keyword, M::getKeyword(method));
    methods.insert(method);
  }
  EXPECT_EQ(static_cast<size_t>(M::_methodCount), methods.size());
}

TEST(CalcValueMethodTest, FiltersAndWindowsNeedAParameterAndSelectionsDefaultToOne) {
  EXPECT_EQ((std::set<std::string>{"ABOVE", "ABOVEOR", "AGE_ABOVE", "AGE_ABOVEOR", "AGE_BELOW",
                                   "AGE_BELOWOR", "AGE_WINDOW", "BELOW", "BELOWOR", "VAL_BY_P",
                                   "X_ABOVE", "X_ABOVEOR", "X_BELOW", "X_BELOWOR", "X_WINDOW"}),
            keywordsOfKind(M::paramRequired));
  EXPECT_EQ((std::set<std::string>{"FIRST_DEFINED", "FIRST_VISIT", "LAST_DEFINED", "LAST_VISIT",
                                   "MAX", "MIN"}),
            keywordsOfKind(M::paramOptional));
}

TEST(CalcValueMethodTest, ParseMethodReadsTheNameAndTheBracket) {
  const WordRow rows[] = {
      {"ABOVE[2.5]", M::methodAbove, true, 2.5},
      {"ABOVE[-3]", M::methodAbove, true, -3},
      {"ABOVE[1E2]", M::methodAbove, true, 100},
      {"ABOVE[-]", M::methodAbove, true, 0},
      {"ABOVE[]", M::methodAbove, false, 0},
      {"ABOVE", M::methodAbove, false, 0},
      {"LAST_VISIT[2", M::methodLastVisit, true, 2},
      {"AGE_ABOVE[2]", M::methodAgeAbove, true, 2},
      {"AGE[7]", M::methodAge, true, 7},
      {"X_WINDOW[0.5]", M::methodXWindow, true, 0.5},
      {"FIRST_DEFINED", M::methodFirstDefined, false, 0},
      {"PREV", M::methodPrev, false, 0},
      {"PREV[4]", M::methodPrev, true, 4},
      {"Y", M::methodY, false, 0},
  };
  for (const WordRow& row : rows) {
    SCOPED_TRACE(row.word);
    R_Number param(99.0);
    EXPECT_EQ(row.method, M::parseMethod(row.word, nullptr, &param));
    ASSERT_EQ(row.defined, param.isDefined());
    if (row.defined) {
      EXPECT_DOUBLE_EQ(row.param, param.getValue());
    }
  }
}

TEST(CalcValueMethodTest, ParseMethodRefusesWordsWithoutAKeywordName) {
  const char* words[] = {"",    "prev",   "Prev",   "PREVX",  "PREVIOUS", "[1]",
                         "FOO", "ABOVE_", "_ABOVE", "1ABOVE", " PREV",    "ABOVEOR_"};
  for (const char* word : words) {
    SCOPED_TRACE(word);
    bool visit_bound = true;
    EXPECT_EQ(M::methodUnknown, M::parseMethod(word, &visit_bound));
    EXPECT_FALSE(visit_bound);
  }
}

TEST(CalcValueMethodTest, OnlyPrevNextNowAndTheWindowsAreBoundToAVisit) {
  std::set<std::string> bound;
  for (const char* keyword : kKeywords) {
    bool visit_bound = false;
    M::parseMethod(keyword, &visit_bound);
    EXPECT_EQ(visit_bound, M::isVisitBound(keyword)) << keyword;
    if (visit_bound) bound.insert(keyword);
  }
  EXPECT_EQ((std::set<std::string>{"AGE_WINDOW", "NEXT", "NOW", "PREV", "X_WINDOW"}), bound);
  EXPECT_TRUE(M::isVisitBound("X_WINDOW[2]"));
  EXPECT_FALSE(M::isVisitBound("prev"));
  EXPECT_FALSE(M::isVisitBound("FIRST_VISIT[1]"));
}
