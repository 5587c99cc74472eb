#include "formula/r_calcequation.h"

#include "core/r_stringlist.h"
#include "formula/r_calcbudget.h"
#include "formula/r_calcexpression.h"
#include "formula/r_calcvaluemethod.h"
#include "formula/r_calcvalueproband.h"
#include "formula/r_equation.h"
#include "knowledge/r_file.h"
#include "proband/r_proband.h"

namespace {

const int kUnknownSex = 2;

}  // namespace

R_CalcEquation::R_CalcEquation(const R_Equation& stored) : equation(stored), values(nullptr) {
  int references = equation.getVarCount();
  if (references > 0) values = new R_CalcValue[references];
}

R_CalcEquation::~R_CalcEquation() { delete[] values; }

bool R_CalcEquation::isVisitDependent() const {
  for (int k = 0; k < equation.getVarCount(); ++k) {
    R_StringList words(equation.getDefinition(k).get());
    for (int w = 0; w < words.getCount(); ++w) {
      if (R_CalcValueMethod::isVisitBound(words[w])) return true;
    }
  }
  return false;
}

bool R_CalcEquation::evaluate(const R_File& file, const R_Proband* proband, const R_Number& age, int visit,
                              int depth) {
  R_CalcBudget step;
  if (depth > R_CalcValueProband::kDepthLimit || !step.isAllowed()) return false;
  setUndefined();
  if (!loadReferences(file, proband, age, visit, depth)) return false;
  int sex = proband ? proband->getSex() : kUnknownSex;
  int method_count = equation.getMethodCount();
  if (method_count == 1) {
    bool ok = evaluateExpression(0, sex, age, sex != kUnknownSex, *this);
    if (!ok) setUndefined();
    return ok;
  }
  if (method_count == 0) return true;
  return evaluatePairs(sex, age);
}

bool R_CalcEquation::loadReferences(const R_File& file, const R_Proband* proband, const R_Number& age, int visit,
                                    int depth) {
  int sex = proband ? proband->getSex() : kUnknownSex;
  for (int k = 0; k < equation.getVarCount(); ++k) {
    int varindex = equation.getVariable(k);
    if (varindex < 0 || varindex >= file.getVarCount()) return false;
    if (!proband) return false;
    if (!R_CalcValueProband::load(values[k], file, *proband, age, varindex, depth + 1)) return false;
    R_CalcValueMethod::applyChain(values[k], equation.getDefinition(k).get(), varindex, file, sex, age, visit);
  }
  return true;
}

bool R_CalcEquation::evaluatePairs(int sex, const R_Number& age) {
  int method_count = equation.getMethodCount();
  for (int k = 0; k < method_count; k += 2) {
    R_CalcValue condition;
    // A condition always sees the context, whatever the sex.
    if (!evaluateExpression(k, sex, age, true, condition)) return false;
    if (k + 1 >= method_count) return false;
    if (condition.isTrue()) {
      bool ok = evaluateExpression(k + 1, sex, age, sex != kUnknownSex, *this);
      if (!ok) setUndefined();
      return ok;
    }
  }
  return true;
}

bool R_CalcEquation::evaluateExpression(int index, int sex, const R_Number& age, bool with_context,
                                        R_CalcValue& into) const {
  R_CalcExpression expression(equation.getMethod(index).get());
  for (int k = 0; k < equation.getVarCount() && k < R_varCount; ++k) expression.setVariable(k, &values[k]);
  if (with_context) expression.setContext(sex, age);
  if (!expression.evaluate()) return false;
  into = expression.getResult();
  return true;
}
