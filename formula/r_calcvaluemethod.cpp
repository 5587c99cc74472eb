#include "formula/r_calcvaluemethod.h"

#include <cassert>
#include <cstring>

#include "core/r_ascii.h"

namespace {

typedef R_CalcValueMethod M;

// One row per method keyword, at the position of its enumerator. The
// operation of a method belongs in its row as well, so that the keyword, its
// marks and what it does stay together.
struct MethodRow {
  M::Method method;
  const char* keyword;
  bool visit_bound;
  M::ParamKind param;
};

constexpr MethodRow kMethods[] = {
    {M::methodP, "P", false, M::paramNone},
    {M::methodSD, "SD", false, M::paramNone},
    {M::methodN, "N", false, M::paramNone},
    {M::methodPrev, "PREV", true, M::paramNone},
    {M::methodNext, "NEXT", true, M::paramNone},
    {M::methodNow, "NOW", true, M::paramNone},
    {M::methodXWindow, "X_WINDOW", true, M::paramRequired},
    {M::methodAgeWindow, "AGE_WINDOW", true, M::paramRequired},
    {M::methodSlope, "SLOPE", false, M::paramNone},
    {M::methodDefined, "DEFINED", false, M::paramNone},
    {M::methodAbove, "ABOVE", false, M::paramRequired},
    {M::methodBelow, "BELOW", false, M::paramRequired},
    {M::methodAgeAbove, "AGE_ABOVE", false, M::paramRequired},
    {M::methodAgeBelow, "AGE_BELOW", false, M::paramRequired},
    {M::methodXAbove, "X_ABOVE", false, M::paramRequired},
    {M::methodXBelow, "X_BELOW", false, M::paramRequired},
    {M::methodMax, "MAX", false, M::paramOptional},
    {M::methodMin, "MIN", false, M::paramOptional},
    {M::methodFirstDefined, "FIRST_DEFINED", false, M::paramOptional},
    {M::methodLastDefined, "LAST_DEFINED", false, M::paramOptional},
    {M::methodFirstVisit, "FIRST_VISIT", false, M::paramOptional},
    {M::methodLastVisit, "LAST_VISIT", false, M::paramOptional},
    {M::methodAvg, "AVG", false, M::paramNone},
    {M::methodStdev, "STDEV", false, M::paramNone},
    {M::methodAge, "AGE", false, M::paramNone},
    {M::methodX, "X", false, M::paramNone},
    {M::methodIsPoint, "IS_POINT", false, M::paramNone},
    {M::methodAboveOr, "ABOVEOR", false, M::paramRequired},
    {M::methodBelowOr, "BELOWOR", false, M::paramRequired},
    {M::methodAgeAboveOr, "AGE_ABOVEOR", false, M::paramRequired},
    {M::methodAgeBelowOr, "AGE_BELOWOR", false, M::paramRequired},
    {M::methodXAboveOr, "X_ABOVEOR", false, M::paramRequired},
    {M::methodXBelowOr, "X_BELOWOR", false, M::paramRequired},
    {M::methodValByP, "VAL_BY_P", false, M::paramRequired},
    {M::methodIsLastVisit, "IS_LAST_VISIT", false, M::paramNone},
    {M::methodY, "Y", false, M::paramNone},
};

static_assert(sizeof(kMethods) / sizeof(kMethods[0]) == M::_methodCount,
              "one keyword row per method");

constexpr bool rowsFollowTheEnumeration() {
  for (int i = 0; i < M::_methodCount; ++i) {
    if (kMethods[i].method != i) return false;
  }
  return true;
}
static_assert(rowsFollowTheEnumeration(), "row i holds method i");

bool isNameChar(char c) { return R_isLetter(static_cast<unsigned char>(c)) || c == '_'; }

// The row whose keyword equals the `length` bytes at `name` exactly.
const MethodRow* findRow(const char* name, size_t length) {
  if (length == 0) return nullptr;
  for (const MethodRow& row : kMethods) {
    if (strlen(row.keyword) == length && memcmp(row.keyword, name, length) == 0) return &row;
  }
  return nullptr;
}

// The bracket text behind the first '[' of the word, up to ']' or the end.
void readParam(const char* word, R_Number* param) {
  param->setUndefined();
  const char* bracket = strchr(word, '[');
  if (!bracket) return;
  char text[65];
  int n = 0;
  for (const char* p = bracket + 1; *p && *p != ']' && n < 64; ++p) text[n++] = *p;
  text[n] = 0;
  param->parse(text);
}

}  // namespace

R_CalcValueMethod::Method R_CalcValueMethod::parseMethod(const char* word, bool* visit_bound,
                                                         R_Number* param) {
  assert(word);
  size_t length = 0;
  while (isNameChar(word[length])) ++length;
  const MethodRow* row = findRow(word, length);
  if (visit_bound) *visit_bound = row && row->visit_bound;
  if (param) readParam(word, param);
  return row ? row->method : methodUnknown;
}

bool R_CalcValueMethod::isVisitBound(const char* word) {
  bool visit_bound = false;
  parseMethod(word, &visit_bound);
  return visit_bound;
}

const char* R_CalcValueMethod::getKeyword(Method method) {
  assert(method >= 0 && method < _methodCount);
  return kMethods[method].keyword;
}

bool R_CalcValueMethod::isVisitBound(Method method) {
  assert(method >= 0 && method < _methodCount);
  return kMethods[method].visit_bound;
}

R_CalcValueMethod::ParamKind R_CalcValueMethod::getParamKind(Method method) {
  assert(method >= 0 && method < _methodCount);
  return kMethods[method].param;
}
