#include "formula/r_calcvaluemethod.h"

#include <cassert>
#include <cmath>
#include <cstring>

#include "core/r_ascii.h"
#include "core/r_stringlist.h"
#include "formula/r_calcvalue.h"
#include "formula/r_calcvalueunary.h"
#include "knowledge/r_file.h"
#include "knowledge/r_probability.h"
#include "knowledge/r_refdata.h"
#include "knowledge/r_reference.h"
#include "knowledge/r_variable.h"

namespace {

typedef R_CalcValueMethod M;

// What a method is given besides the value.
struct MethodCall {
  double p;      // the parameter; meaningful when the method's kind needs it
  int n;         // the parameter as a count: truncated toward 0, 1 when undefined
  int varindex;  // the referenced variable
  const R_File* file;
  int sex;
  R_Number age;  // the age today
  int visit;     // the current visit, or -1
};

typedef void (*Action)(R_CalcValue& value, const MethodCall& call);

enum Axis { axisY, axisAge, axisX };
enum Comparison { above, aboveOr, below, belowOr };

R_Number& axisOf(R_CalcPoint& point, Axis axis) {
  return axis == axisY ? point.getY() : axis == axisAge ? point.getAge() : point.getX();
}

bool passes(double v, double p, Comparison comparison) {
  switch (comparison) {
    case above: return v > p;
    case aboveOr: return v >= p;
    case below: return v < p;
    default: return v <= p;
  }
}

int countOf(const R_Number& param) {
  if (!param.isDefined()) return 1;
  double v = param.getValue();
  if (!(v > -1e9)) return v != v ? 0 : -1000000000;
  return v < 1e9 ? static_cast<int>(v) : 1000000000;
}

int validCount(const R_CalcValue& value) {
  int count = 0;
  for (int i = 0; i < value.getN(); ++i) count += value.getPoint(i).isValid() ? 1 : 0;
  return count;
}

// The filters: on a series each valid point that fails is cleared. A scalar
// passes the value filters or becomes undefined, and has no axes to filter.
template <Axis axis, Comparison comparison>
void filter(R_CalcValue& value, const MethodCall& call) {
  if (value.isScalar()) {
    if (axis != axisY || !passes(value.getScalar().getValue(), call.p, comparison)) value.setUndefined();
    return;
  }
  for (int i = 0; i < value.getN(); ++i) {
    R_CalcPoint& point = value.getPoint(i);
    if (point.isValid() && !passes(axisOf(point, axis).getValue(), call.p, comparison)) point.clear();
  }
}

void pointNow(R_CalcValue& value, const MethodCall& call) {
  if (!value.isXY() || call.visit < 0 || call.visit >= value.getN())
    value.setUndefined();
  else
    value.keepPoint(call.visit);
}

// Keeps the nearest valid point from `from` on, walking by `step`.
void keepNearest(R_CalcValue& value, int from, int step) {
  for (int i = from; i >= 0 && i < value.getN(); i += step) {
    if (value.getPoint(i).isValid()) {
      value.keepPoint(i);
      return;
    }
  }
  value.setUndefined();
}

void previousPoint(R_CalcValue& value, const MethodCall& call) {
  if (!value.isXY() || call.visit < 1 || call.visit >= value.getN())
    value.setUndefined();
  else
    keepNearest(value, call.visit - 1, -1);
}

void nextPoint(R_CalcValue& value, const MethodCall& call) {
  if (!value.isXY() || call.visit < 0 || call.visit >= value.getN() - 1)
    value.setUndefined();
  else
    keepNearest(value, call.visit + 1, 1);
}

template <Axis axis>
void window(R_CalcValue& value, const MethodCall& call) {
  if (!value.isXY() || call.visit < 0 || call.visit >= value.getN() || !value.getPoint(call.visit).isValid()) {
    value.setUndefined();
    return;
  }
  double centre = axisOf(value.getPoint(call.visit), axis).getValue();
  for (int i = 0; i < value.getN(); ++i) {
    R_CalcPoint& point = value.getPoint(i);
    if (!point.isValid()) continue;
    double v = axisOf(point, axis).getValue();
    if (v < centre - call.p || v > centre + call.p) point.clear();
  }
}

// Keeps the first (or last) n valid points; a scalar stays as it is.
void keepDefined(R_CalcValue& value, int n, bool from_start) {
  if (!value.isXY()) return;
  int kept = 0;
  for (int k = 0; k < value.getN(); ++k) {
    R_CalcPoint& point = value.getPoint(from_start ? k : value.getN() - 1 - k);
    if (!point.isValid()) continue;
    if (kept < n)
      ++kept;
    else
      point.clear();
  }
}

void firstDefined(R_CalcValue& value, const MethodCall& call) { keepDefined(value, call.n, true); }
void lastDefined(R_CalcValue& value, const MethodCall& call) { keepDefined(value, call.n, false); }

// Clears every position outside [first, end).
void keepPositions(R_CalcValue& value, long first, long end) {
  if (!value.isXY()) {
    value.setUndefined();
    return;
  }
  for (int i = 0; i < value.getN(); ++i) {
    if (i < first || i >= end) value.getPoint(i).clear();
  }
}

void firstVisits(R_CalcValue& value, const MethodCall& call) { keepPositions(value, 0, call.n); }
void lastVisits(R_CalcValue& value, const MethodCall& call) {
  keepPositions(value, static_cast<long>(value.getN()) - call.n, value.getN());
}

// MAX[n] and MIN[n] keep the n valid points with the largest (smallest) y,
// the earlier visit first among equal values, and clear the others: what a
// reader of WEIGHT:MAX expects, the visit of the highest weight, still bound
// to its visit. A scalar is its own extreme and stays.
template <bool largest>
void extremes(R_CalcValue& value, const MethodCall& call) {
  if (!value.isXY()) return;
  for (int i = 0; i < value.getN(); ++i) {
    R_CalcPoint& point = value.getPoint(i);
    if (!point.isValid()) continue;
    double y = point.getY().getValue();
    int beaten_by = 0;
    for (int j = 0; j < value.getN(); ++j) {
      const R_CalcPoint& other = value.getPoint(j);
      if (j == i || !other.isValid()) continue;
      double o = other.getY().getValue();
      bool before = largest ? (o > y) : (o < y);
      if (before || (o == y && j < i)) ++beaten_by;
    }
    if (beaten_by >= call.n) point.clear();
  }
}

// Sums over the valid points of a series.
struct Sums {
  double n = 0, x = 0, y = 0, xx = 0, xy = 0, yy = 0;
};

Sums sumsOf(const R_CalcValue& value) {
  Sums s;
  for (int i = 0; i < value.getN(); ++i) {
    const R_CalcPoint& point = value.getPoint(i);
    if (!point.isValid()) continue;
    double x = point.getX().getValue(), y = point.getY().getValue();
    s.n += 1;
    s.x += x;
    s.y += y;
    s.xx += x * x;
    s.xy += x * y;
    s.yy += y * y;
  }
  return s;
}

void countPoints(R_CalcValue& value, const MethodCall&) {
  if (value.isXY())
    value.set(validCount(value));
  else
    value.setUndefined();
}

void average(R_CalcValue& value, const MethodCall&) {
  Sums s = sumsOf(value);
  if (value.isXY() && s.n > 0)
    value.set(s.y / s.n);
  else
    value.setUndefined();
}

// Rounding can leave the variance of equal values a hair below 0; it is 0.
void standardDeviation(R_CalcValue& value, const MethodCall&) {
  Sums s = sumsOf(value);
  if (!value.isXY() || s.n < 2) {
    value.setUndefined();
    return;
  }
  double variance = (s.yy - (s.y / s.n) * s.y) / (s.n - 1);
  value.set(sqrt(variance > 0 ? variance : 0.0));
}

// The denominator is not tested: equal x values give what the division gives.
void slope(R_CalcValue& value, const MethodCall&) {
  Sums s = sumsOf(value);
  if (!value.isXY() || s.n < 2)
    value.setUndefined();
  else
    value.set((s.xy - s.x * s.y / s.n) / (s.xx - s.x * s.x / s.n));
}

void isPoint(R_CalcValue& value, const MethodCall&) { value.set(value.isPoint() ? 1 : 0); }

void isLastVisit(R_CalcValue& value, const MethodCall&) {
  bool last = value.isXY() && value.getN() > 0 && value.getPoint(value.getN() - 1).isValid();
  value.set(last ? 1 : 0);
}

// A point keeps its one valid position; other series turn every position
// with a value into 1 and every other into 0, so positions with x and age
// become valid.
void defined(R_CalcValue& value, const MethodCall&) {
  if (value.isScalar()) {
    value.set(1);
    return;
  }
  int only = value.getPointIndex();
  for (int i = 0; i < value.getN(); ++i) {
    R_Number& y = value.getPoint(i).getY();
    if (only >= 0)
      y = i == only ? R_Number(1) : R_Number();
    else
      y = R_Number(y.isDefined() ? 1 : 0);
  }
}

template <Axis axis>
void replaceY(R_CalcValue& value, const MethodCall&) {
  if (!value.isXY()) {
    value.setUndefined();
    return;
  }
  for (int i = 0; i < value.getN(); ++i) {
    R_CalcPoint& point = value.getPoint(i);
    if (point.isValid()) point.getY() = axisOf(point, axis);
  }
}

// Y takes the value out of a point: the scalar of its y, no longer bound to
// a visit. A scalar already is a value and stays; a series of several points
// has no single value and stays as it is.
void pointValue(R_CalcValue& value, const MethodCall&) {
  int only = value.getPointIndex();
  if (only >= 0) value.set(R_Number(value.getPoint(only).getY()));
}

// The reference data for one measurement: the first reference that fits
// the sex, the age and the variable's pair.
const R_RefData* referenceData(const MethodCall& call, const R_Number& age) {
  const R_Variable* variable = call.file->getVariable(call.varindex);
  int index = call.file->findReference(call.sex, age, variable->getXYVar());
  if (index < 0) return nullptr;
  return call.file->getReference(index)->getData();
}

void anamnesticSD(R_CalcValue& value, const MethodCall& call) {
  const R_RefData* data = referenceData(call, call.age);
  R_Number sd;
  if (data && data->isAnamnestic()) data->getSD(sd, value.getScalar());
  value.set(sd);
}

void followedSD(R_CalcValue& value, const MethodCall& call, bool list) {
  for (int i = 0; i < value.getN(); ++i) {
    R_CalcPoint& point = value.getPoint(i);
    if (!point.isValid()) continue;
    const R_RefData* data = referenceData(call, point.getAge());
    R_Number sd;
    if (data && data->isFollowed()) data->getSD(sd, point.getX(), point.getY());
    if (!sd.isDefined()) {
      point.clear();
      continue;
    }
    if (list) point.getX() = point.getY();
    point.getY() = sd;
  }
}

void sdScore(R_CalcValue& value, const MethodCall& call) {
  const R_Variable* variable = call.file->getVariable(call.varindex);
  if (value.isScalar() && variable->isAnamnestic())
    anamnesticSD(value, call);
  else if (value.isXY() && variable->isFollowed())
    followedSD(value, call, variable->isList());
  else
    value.setUndefined();
}

void percentile(R_CalcValue& value, const MethodCall& call) {
  sdScore(value, call);
  value.normalise();
  if (value.isDefined()) R_CalcValueUnary::apply(value, R_CalcValueUnary::opSdp);
}

void valueByPercentile(R_CalcValue& value, const MethodCall& call) {
  R_Number z(call.p);
  R_Probability::percentileToSD(z);
  if (!value.isXY() || !z.isDefined()) {
    value.setUndefined();
    return;
  }
  for (int i = 0; i < value.getN(); ++i) {
    R_CalcPoint& point = value.getPoint(i);
    if (!point.isValid()) continue;
    const R_RefData* data = referenceData(call, point.getAge());
    R_Number y;
    if (data && data->isFollowed()) data->getValue(y, z, point.getX());
    if (y.isDefined())
      point.getY() = y;
    else
      point.clear();
  }
}

// One row per method keyword, at the position of its enumerator, with what
// the method does.
struct MethodRow {
  M::Method method;
  const char* keyword;
  bool visit_bound;
  M::ParamKind param;
  Action action;
};

constexpr MethodRow kMethods[] = {
    {M::methodP, "P", false, M::paramNone, percentile},
    {M::methodSD, "SD", false, M::paramNone, sdScore},
    {M::methodN, "N", false, M::paramNone, countPoints},
    {M::methodPrev, "PREV", true, M::paramNone, previousPoint},
    {M::methodNext, "NEXT", true, M::paramNone, nextPoint},
    {M::methodNow, "NOW", true, M::paramNone, pointNow},
    {M::methodXWindow, "X_WINDOW", true, M::paramRequired, window<axisX>},
    {M::methodAgeWindow, "AGE_WINDOW", true, M::paramRequired, window<axisAge>},
    {M::methodSlope, "SLOPE", false, M::paramNone, slope},
    {M::methodDefined, "DEFINED", false, M::paramNone, defined},
    {M::methodAbove, "ABOVE", false, M::paramRequired, filter<axisY, above>},
    {M::methodBelow, "BELOW", false, M::paramRequired, filter<axisY, below>},
    {M::methodAgeAbove, "AGE_ABOVE", false, M::paramRequired, filter<axisAge, above>},
    {M::methodAgeBelow, "AGE_BELOW", false, M::paramRequired, filter<axisAge, below>},
    {M::methodXAbove, "X_ABOVE", false, M::paramRequired, filter<axisX, above>},
    {M::methodXBelow, "X_BELOW", false, M::paramRequired, filter<axisX, below>},
    {M::methodMax, "MAX", false, M::paramOptional, extremes<true>},
    {M::methodMin, "MIN", false, M::paramOptional, extremes<false>},
    {M::methodFirstDefined, "FIRST_DEFINED", false, M::paramOptional, firstDefined},
    {M::methodLastDefined, "LAST_DEFINED", false, M::paramOptional, lastDefined},
    {M::methodFirstVisit, "FIRST_VISIT", false, M::paramOptional, firstVisits},
    {M::methodLastVisit, "LAST_VISIT", false, M::paramOptional, lastVisits},
    {M::methodAvg, "AVG", false, M::paramNone, average},
    {M::methodStdev, "STDEV", false, M::paramNone, standardDeviation},
    {M::methodAge, "AGE", false, M::paramNone, replaceY<axisAge>},
    {M::methodX, "X", false, M::paramNone, replaceY<axisX>},
    {M::methodIsPoint, "IS_POINT", false, M::paramNone, isPoint},
    {M::methodAboveOr, "ABOVEOR", false, M::paramRequired, filter<axisY, aboveOr>},
    {M::methodBelowOr, "BELOWOR", false, M::paramRequired, filter<axisY, belowOr>},
    {M::methodAgeAboveOr, "AGE_ABOVEOR", false, M::paramRequired, filter<axisAge, aboveOr>},
    {M::methodAgeBelowOr, "AGE_BELOWOR", false, M::paramRequired, filter<axisAge, belowOr>},
    {M::methodXAboveOr, "X_ABOVEOR", false, M::paramRequired, filter<axisX, aboveOr>},
    {M::methodXBelowOr, "X_BELOWOR", false, M::paramRequired, filter<axisX, belowOr>},
    {M::methodValByP, "VAL_BY_P", false, M::paramRequired, valueByPercentile},
    {M::methodIsLastVisit, "IS_LAST_VISIT", false, M::paramNone, isLastVisit},
    {M::methodY, "Y", false, M::paramNone, pointValue},
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

void R_CalcValueMethod::applyChain(R_CalcValue& value, const char* definition, int varindex, const R_File& file,
                                   int sex, const R_Number& age, int visit) {
  assert(definition);
  R_StringList words(definition);
  for (int w = 0; w < words.getCount(); ++w) {
    R_Number param;
    Method method = parseMethod(words[w], nullptr, &param);
    apply(value, method, param, varindex, file, sex, age, visit);
  }
}

void R_CalcValueMethod::apply(R_CalcValue& value, Method method, const R_Number& param, int varindex,
                              const R_File& file, int sex, const R_Number& age, int visit) {
  if (!value.isDefined()) {
    if (method == methodDefined) value.set(0);
    return;
  }
  if (method < 0 || method >= _methodCount) {
    value.setUndefined();
    return;
  }
  const MethodRow& row = kMethods[method];
  if (row.param == paramRequired && !param.isDefined()) {
    value.setUndefined();
    return;
  }
  MethodCall call{param.isDefined() ? param.getValue() : 0.0, countOf(param), varindex, &file, sex, age, visit};
  row.action(value, call);
  value.normalise();
}
