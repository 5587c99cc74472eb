#include <gtest/gtest.h>

#include <set>

#include "formula/r_calcvaluemethod.h"
#include "tests/formula/calcvalue_text.h"

typedef R_CalcValueMethod M;

// Each keyword names its own method. Filters and windows require a
// parameter (R), selections take one optionally (O), and only PREV, NEXT,
// NOW and the windows are bound to a visit.
TEST(CalcValueMethodTest, EveryKeywordNamesItsOwnMethodWithItsParameterKindAndVisitBinding) {
  const struct { const char* keyword; bool bound; char kind; } rows[] = {
      {"P", 0, '-'}, {"SD", 0, '-'}, {"N", 0, '-'}, {"PREV", 1, '-'}, {"NEXT", 1, '-'}, {"NOW", 1, '-'},
      {"X_WINDOW", 1, 'R'}, {"AGE_WINDOW", 1, 'R'}, {"SLOPE", 0, '-'}, {"DEFINED", 0, '-'}, {"ABOVE", 0, 'R'},
      {"BELOW", 0, 'R'}, {"AGE_ABOVE", 0, 'R'}, {"AGE_BELOW", 0, 'R'}, {"X_ABOVE", 0, 'R'}, {"X_BELOW", 0, 'R'},
      {"MAX", 0, 'O'}, {"MIN", 0, 'O'}, {"FIRST_DEFINED", 0, 'O'}, {"LAST_DEFINED", 0, 'O'}, {"FIRST_VISIT", 0, 'O'},
      {"LAST_VISIT", 0, 'O'}, {"AVG", 0, '-'}, {"STDEV", 0, '-'}, {"AGE", 0, '-'}, {"X", 0, '-'},
      {"IS_POINT", 0, '-'}, {"ABOVEOR", 0, 'R'}, {"BELOWOR", 0, 'R'}, {"AGE_ABOVEOR", 0, 'R'},
      {"AGE_BELOWOR", 0, 'R'}, {"X_ABOVEOR", 0, 'R'}, {"X_BELOWOR", 0, 'R'}, {"VAL_BY_P", 0, 'R'},
      {"IS_LAST_VISIT", 0, '-'}, {"Y", 0, '-'},
  };
  std::set<int> methods;
  for (const auto& row : rows) {
    SCOPED_TRACE(row.keyword);
    bool visit_bound = !row.bound;
    M::Method method = M::parseMethod(row.keyword, &visit_bound);
    ASSERT_NE(M::methodUnknown, method);
    methods.insert(method);
    EXPECT_STREQ(row.keyword, M::getKeyword(method));
    EXPECT_EQ(row.bound, visit_bound);
    EXPECT_EQ(row.bound, M::isVisitBound(row.keyword));
    EXPECT_EQ(row.kind == 'R' ? M::paramRequired : row.kind == 'O' ? M::paramOptional : M::paramNone,
              M::getParamKind(method));
  }
  EXPECT_EQ(static_cast<size_t>(M::_methodCount), methods.size());
  EXPECT_TRUE(M::isVisitBound("X_WINDOW[2]"));
  EXPECT_FALSE(M::isVisitBound("prev"));
  EXPECT_FALSE(M::isVisitBound("FIRST_VISIT[1]"));
}

TEST(CalcValueMethodTest, ParseMethodReadsTheNameAndTheBracketAndRefusesWordsWithoutAKeywordName) {
  const struct { const char* word; M::Method method; const char* param; } rows[] = {
      {"ABOVE[2.5]", M::methodAbove, "2.5"},      {"ABOVE[-3]", M::methodAbove, "-3"},
      {"ABOVE[1E2]", M::methodAbove, "100"},      {"ABOVE[-]", M::methodAbove, "0"},
      {"ABOVE[]", M::methodAbove, "?"},           {"ABOVE", M::methodAbove, "?"},
      {"LAST_VISIT[2", M::methodLastVisit, "2"},  {"AGE_ABOVE[2]", M::methodAgeAbove, "2"},
      {"AGE[7]", M::methodAge, "7"},              {"X_WINDOW[0.5]", M::methodXWindow, "0.5"},
      {"PREV[4]", M::methodPrev, "4"},            {"Y", M::methodY, "?"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.word);
    R_Number param(99.0);
    EXPECT_EQ(row.method, M::parseMethod(row.word, nullptr, &param));
    EXPECT_EQ(row.param, numberText(param));
  }
  for (const char* word : {"", "prev", "Prev", "PREVX", "PREVIOUS", "[1]", "FOO", "ABOVE_", "_ABOVE", "1ABOVE", " PREV",
                           "ABOVEOR_"}) {
    SCOPED_TRACE(word);
    bool visit_bound = true;
    EXPECT_EQ(M::methodUnknown, M::parseMethod(word, &visit_bound));
    EXPECT_FALSE(visit_bound);
  }
}
