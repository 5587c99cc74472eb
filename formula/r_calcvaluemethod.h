// The methods that a variable reference of a formula can chain behind its
// name, as in WEIGHT:AGE_ABOVE[2.5]:LAST_DEFINED[2]:AVG. A chain is kept as
// text, the method words separated by blanks; this class names the methods,
// knows their keywords, whether they are bound to the visit under evaluation
// and what kind of parameter they take, and reads one method word. It holds
// no state: everything is static.
//
// One method word is a name (its leading run of letters and '_'), then
// optionally '[', a number, ']'. Names are compared exactly: the chains are
// stored in upper case.
#ifndef FORMULA_R_CALCVALUEMETHOD_H
#define FORMULA_R_CALCVALUEMETHOD_H

#include "core/r_number.h"

class R_CalcValue;
class R_File;

class R_CalcValueMethod {
 public:
  // One enumerator per keyword, in the order of the keyword table.
  enum Method {
    methodUnknown = -1,
    methodP,
    methodSD,
    methodN,
    methodPrev,
    methodNext,
    methodNow,
    methodXWindow,
    methodAgeWindow,
    methodSlope,
    methodDefined,
    methodAbove,
    methodBelow,
    methodAgeAbove,
    methodAgeBelow,
    methodXAbove,
    methodXBelow,
    methodMax,
    methodMin,
    methodFirstDefined,
    methodLastDefined,
    methodFirstVisit,
    methodLastVisit,
    methodAvg,
    methodStdev,
    methodAge,
    methodX,
    methodIsPoint,
    methodAboveOr,
    methodBelowOr,
    methodAgeAboveOr,
    methodAgeBelowOr,
    methodXAboveOr,
    methodXBelowOr,
    methodValByP,
    methodIsLastVisit,
    methodY,
    _methodCount
  };

  // What a method does with its bracket. A required parameter that is
  // undefined makes the value undefined; an optional one stands for 1 when
  // undefined; a method without one accepts a bracket and ignores it.
  enum ParamKind { paramRequired, paramOptional, paramNone };

  // Reads one method word. Answers the method, or methodUnknown when the
  // word's name is empty or no keyword. `visit_bound` and `param` may be
  // null. `visit_bound` gets the method's mark (false for an unknown one).
  // `param` is made undefined, then, if the word holds a '[', read from the
  // text behind it up to ']' or the end of the word, by R_Number::parse: "[]"
  // leaves it undefined, "[-]" gives 0. The parameter's default is not
  // applied here. Requires: word != null.
  static Method parseMethod(const char* word, bool* visit_bound = nullptr,
                            R_Number* param = nullptr);
  // True when the word names a method bound to the current visit (PREV,
  // NEXT, NOW, X_WINDOW, AGE_WINDOW): an equation that uses one gives
  // different results at different visits. Requires: word != null.
  static bool isVisitBound(const char* word);

  // The keyword of a method, as written in a chain.
  // Require: method in 0 to _methodCount-1.
  static const char* getKeyword(Method method);
  static bool isVisitBound(Method method);
  static ParamKind getParamKind(Method method);

  // Applies each method word of `definition` (words separated by blanks)
  // from left to right. `varindex` is the referenced variable (at 0 or
  // above), `sex` 0 male, 1 female, 2 unknown, `age` the age today and
  // `visit` the current visit or -1.
  static void applyChain(R_CalcValue& value, const char* definition, int varindex, const R_File& file, int sex,
                         const R_Number& age, int visit);
  // One method. A method can't fail: what it can't compute becomes
  // undefined, and an undefined value stays undefined except under DEFINED,
  // which makes it the scalar 0. The value is normalised afterwards.
  static void apply(R_CalcValue& value, Method method, const R_Number& param, int varindex, const R_File& file,
                    int sex, const R_Number& age, int visit);
};

#endif
