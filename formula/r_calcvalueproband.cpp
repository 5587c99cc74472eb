#include "formula/r_calcvalueproband.h"

#include "formula/r_calcbudget.h"
#include "formula/r_calcequation.h"
#include "formula/r_calcvalue.h"
#include "knowledge/r_file.h"
#include "knowledge/r_measuredvariables.h"
#include "knowledge/r_variable.h"
#include "proband/r_proband.h"

bool R_CalcValueProband::load(R_CalcValue& value, const R_File& file, const R_Proband& proband,
                              const R_Number& age, int varindex, int depth) {
  R_CalcBudget step;
  if (depth > kDepthLimit || !step.isAllowed()) return false;
  value.setUndefined();
  // Nothing can be read for a proband of unknown sex, and that is no failure.
  if (!proband.isSexDefined()) return true;
  const R_Variable* variable = file.getVariable(varindex);
  bool outcome = false;
  if (variable->isAnamnestic()) {
    outcome = loadAnamnestic(value, file, proband, age, varindex, depth + 1);
  } else if (variable->isFollowed()) {
    value.setN(proband.getVisitCount());
    const R_XYVar& xy = variable->getXYVar();
    if (xy.getXVar() >= 0 && xy.getYVar() >= 0)
      outcome = loadSeries(value, file, proband, age, xy.getXVar(), xy.getYVar(), depth + 1);
  }
  if (outcome)
    value.normalise();
  else
    value.setUndefined();
  return outcome;
}

bool R_CalcValueProband::loadAnamnestic(R_CalcValue& value, const R_File& file, const R_Proband& proband,
                                        const R_Number& age, int varindex, int depth) {
  const R_Variable* variable = file.getVariable(varindex);
  if (variable->isMeasured()) {
    int order = file.getAnamnesticVars()->getOrderOfIndex(varindex);
    if (order >= 0) value.set(proband.getAnamnesticNumber(order));
    return true;
  }
  if (!variable->isCalculated()) return false;
  R_CalcEquation equation(variable->getEquation());
  if (!equation.evaluate(file, &proband, age, -1, depth)) return false;
  if (equation.getResult().isScalar()) value.set(equation.getResult().getScalar());
  return true;
}

bool R_CalcValueProband::loadSeries(R_CalcValue& value, const R_File& file, const R_Proband& proband,
                                    const R_Number& age, int index_x, int index_y, int depth) {
  setAges(value, fieldAge, proband);
  if (!fillField(value, file, proband, age, index_x, fieldX, depth)) return false;
  return fillField(value, file, proband, age, index_y, fieldY, depth);
}

bool R_CalcValueProband::fillField(R_CalcValue& value, const R_File& file, const R_Proband& proband,
                                   const R_Number& age, int varindex, int field, int depth) {
  const R_Variable* variable = file.getVariable(varindex);
  if (variable->isAge()) {
    setAges(value, field, proband);
    return true;
  }
  if (variable->isMeasured()) {
    setMeasuredOrder(value, field, proband, file.getFollowedVars()->getOrderOfIndex(varindex));
    return true;
  }
  if (variable->isCalculated()) return setCalculated(value, file, proband, age, varindex, field, depth);
  return false;
}

void R_CalcValueProband::setAges(R_CalcValue& value, int field, const R_Proband& proband) {
  for (int i = 0; i < value.getN(); ++i) setField(value, field, i, proband.getVisitAge(i));
}

void R_CalcValueProband::setMeasured(R_CalcValue& value, int field, const R_Proband& proband, const char* name) {
  setMeasuredOrder(value, field, proband, proband.getFollowedOrder(name));
}

void R_CalcValueProband::setMeasuredOrder(R_CalcValue& value, int field, const R_Proband& proband, int order) {
  if (order < 0) return;
  for (int i = 0; i < value.getN(); ++i) setField(value, field, i, proband.getFollowedNumber(i, order));
}

bool R_CalcValueProband::setCalculated(R_CalcValue& value, const R_File& file, const R_Proband& proband,
                                       const R_Number& age, int varindex, int field, int depth) {
  R_CalcEquation equation(file.getVariable(varindex)->getEquation());
  if (equation.isVisitDependent()) {
    for (int visit = 0; visit < value.getN(); ++visit) {
      if (!equation.evaluate(file, &proband, age, visit, depth)) return false;
      const R_CalcValue& result = equation.getResult();
      if (result.isPoint())
        setField(value, field, visit, result.getPoint(result.getPointIndex()).getY());
      else if (result.isScalar())
        setField(value, field, visit, result.getScalar());
    }
    return true;
  }
  if (!equation.evaluate(file, &proband, age, -1, depth)) return false;
  const R_CalcValue& result = equation.getResult();
  for (int i = 0; i < value.getN(); ++i) {
    bool has_point = result.isXY() && i < result.getN();
    setField(value, field, i, has_point ? result.getPoint(i).getY() : R_Number());
  }
  return true;
}

void R_CalcValueProband::setField(R_CalcValue& value, int field, int index, const R_Number& number) {
  if (!value.isXY() && value.getN() == 0) return;
  if (index < 0 || index >= value.getN()) return;
  R_CalcPoint& point = value.getPoint(index);
  switch (field) {
    case fieldX: point.getX() = number; break;
    case fieldY: point.getY() = number; break;
    case fieldAge: point.getAge() = number; break;
    default: break;
  }
}
