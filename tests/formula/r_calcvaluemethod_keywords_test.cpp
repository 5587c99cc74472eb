#include <gtest/gtest.h>

#include <set>
#include <string>

#include "formula/r_calcvaluemethod.h"
#include "tests/formula/calcvalue_text.h"

namespace {

typedef R_CalcValueMethod M;

// All method keywords of the formula language.
const char* const kKeywords[] = {
    "P",         "SD",        "N",         "PREV",        "NEXT",          "NOW",          "X_WINDOW",
    "AGE_WINDOW", "SLOPE",    "DEFINED",   "ABOVE",       "BELOW",         "AGE_ABOVE",    "AGE_BELOW",
    "X_ABOVE",   "X_BELOW",   "MAX",       "MIN",         "FIRST_DEFINED", "LAST_DEFINED", "FIRST_VISIT",
    "LAST_VISIT", "AVG",      "STDEV",     "AGE",         "X",             "IS_POINT",     "ABOVEOR",
    "BELOWOR",   "AGE_ABOVEOR", "AGE_BELOWOR", "X_ABOVEOR", "X_BELOWOR",   "VAL_BY_P",     "IS_LAST_VISIT",
    "Y",
};

}  // namespace

TEST(CalcValueMethodTest, EveryKeywordNamesItsOwnMethodWithItsParameterKindAndVisitBinding) {
  std::set<int> methods;
  std::set<std::string> required, optional, bound;
  for (const char* keyword : kKeywords) {
    SCOPED_TRACE(keyword);
    bool visit_bound = false;
    M::Method method = M::parseMethod(keyword, &visit_bound);
    ASSERT_NE(M::methodUnknown, method);
    EXPECT_STREQ(keyword, M::getKeyword(method));
    EXPECT_EQ(visit_bound, M::isVisitBound(keyword));
    methods.insert(method);
    if (M::getParamKind(method) == M::paramRequired) required.insert(keyword);
    if (M::getParamKind(method) == M::paramOptional) optional.insert(keyword);
    if (visit_bound) bound.insert(keyword);
  }
  EXPECT_EQ(static_cast<size_t>(M::_methodCount), methods.size());
  // Filters and windows need a parameter, selections default to one, and
  // only PREV, NEXT, NOW and the windows are bound to a visit.
  EXPECT_EQ((std::set<std::string>{"ABOVE", "ABOVEOR", "AGE_ABOVE", "AGE_ABOVEOR", "AGE_BELOW", "AGE_BELOWOR",
                                   "AGE_WINDOW", "BELOW", "BELOWOR", "VAL_BY_P", "X_ABOVE", "X_ABOVEOR", "X_BELOW",
                                   "X_BELOWOR", "X_WINDOW"}),
            required);
  EXPECT_EQ((std::set<std::string>{"FIRST_DEFINED", "FIRST_VISIT", "LAST_DEFINED", "LAST_VISIT", "MAX", "MIN"}),
            optional);
  EXPECT_EQ((std::set<std::string>{"AGE_WINDOW", "NEXT", "NOW", "PREV", "X_WINDOW"}), bound);
  EXPECT_TRUE(M::isVisitBound("X_WINDOW[2]"));
  EXPECT_FALSE(M::isVisitBound("prev"));
  EXPECT_FALSE(M::isVisitBound("FIRST_VISIT[1]"));
}

TEST(CalcValueMethodTest, ParseMethodReadsTheNameAndTheBracket) {
  const struct { const char* word; M::Method method; const char* param; } rows[] = {
      {"ABOVE[2.5]", M::methodAbove, "2.5"},      {"ABOVE[-3]", M::methodAbove, "-3"},
      {"ABOVE[1E2]", M::methodAbove, "100"},      {"ABOVE[-]", M::methodAbove, "0"},
      {"ABOVE[]", M::methodAbove, "?"},           {"ABOVE", M::methodAbove, "?"},
      {"LAST_VISIT[2", M::methodLastVisit, "2"},  {"AGE_ABOVE[2]", M::methodAgeAbove, "2"},
      {"AGE[7]", M::methodAge, "7"},              {"X_WINDOW[0.5]", M::methodXWindow, "0.5"},
      {"FIRST_DEFINED", M::methodFirstDefined, "?"}, {"PREV", M::methodPrev, "?"},
      {"PREV[4]", M::methodPrev, "4"},            {"Y", M::methodY, "?"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.word);
    R_Number param(99.0);
    EXPECT_EQ(row.method, M::parseMethod(row.word, nullptr, &param));
    EXPECT_EQ(row.param, numberText(param));
  }
}

TEST(CalcValueMethodTest, ParseMethodRefusesWordsWithoutAKeywordName) {
  for (const char* word : {"", "prev", "Prev", "PREVX", "PREVIOUS", "[1]", "FOO", "ABOVE_", "_ABOVE", "1ABOVE", " PREV",
                           "ABOVEOR_"}) {
    SCOPED_TRACE(word);
    bool visit_bound = true;
    EXPECT_EQ(M::methodUnknown, M::parseMethod(word, &visit_bound));
    EXPECT_FALSE(visit_bound);
  }
}
