#include "graph/r_graphplotcalculated.h"

#include <cassert>

#include "formula/r_calcequation.h"

const R_CalcValue& R_GraphPlotCalculated::getArrow() const {
  assert(hasArrow());
  return *arrow;
}

void R_GraphPlotCalculated::calculate(const R_File& file, const R_Proband& proband, const R_Number& age,
                                      const R_Equation& equation) {
  evaluate(file, proband, age, equation, *this);
}

void R_GraphPlotCalculated::calculateArrow(const R_File& file, const R_Proband& proband, const R_Number& age,
                                           const R_Equation& equation) {
  assert(!hasArrow());
  arrow.reset(new R_CalcValue());
  evaluate(file, proband, age, equation, *arrow);
}

void R_GraphPlotCalculated::evaluate(const R_File& file, const R_Proband& proband, const R_Number& age,
                                     const R_Equation& equation, R_CalcValue& into) {
  R_CalcEquation calculation(equation);
  if (calculation.evaluate(file, &proband, age, -1, 0)) {
    into = calculation.getResult();
  } else {
    into.setUndefined();
  }
}
