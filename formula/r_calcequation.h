// Computes one stored equation for one proband: fetches the value of every
// variable reference, applies its method chain, then either evaluates the
// single expression or walks the condition/method pairs and evaluates the
// method of the first condition that is true. The object is itself the
// result. Nothing is cached: each evaluate() reads every reference afresh.
// The equation is borrowed and must outlive this object. Not copyable.
#ifndef FORMULA_R_CALCEQUATION_H
#define FORMULA_R_CALCEQUATION_H

#include "core/r_number.h"
#include "formula/r_calcvalue.h"

class R_Equation;
class R_File;
class R_Proband;

class R_CalcEquation : public R_CalcValue {
 public:
  explicit R_CalcEquation(const R_Equation& equation);
  ~R_CalcEquation();
  R_CalcEquation(const R_CalcEquation&) = delete;
  R_CalcEquation& operator=(const R_CalcEquation&) = delete;

  // True when a method of any reference's chain is bound to a visit (PREV,
  // NEXT, NOW, X_WINDOW, AGE_WINDOW).
  bool isVisitDependent() const;

  // Computes the equation for `proband` (may be null: then only references-
  // free expressions can compute) with `age` the age today, `visit` the
  // current visit or -1, and `depth` the nesting depth (0 from outside).
  // False when the computation failed; the result is then undefined. A
  // condition that is undefined counts as not true; when no condition holds
  // the answer is true and the result undefined.
  bool evaluate(const R_File& file, const R_Proband* proband, const R_Number& age, int visit, int depth);
  const R_CalcValue& getResult() const { return *this; }

 private:
  bool loadReferences(const R_File& file, const R_Proband* proband, const R_Number& age, int visit, int depth);
  // Parses and computes expression `index`; `with_context` decides whether the
  // proband's sex and the age today are visible to it.
  bool evaluateExpression(int index, int sex, const R_Number& age, bool with_context, R_CalcValue& into) const;
  bool evaluatePairs(int sex, const R_Number& age);

  const R_Equation& equation;
  R_CalcValue* values;  // owned, one per reference; null when there is none
};

#endif
