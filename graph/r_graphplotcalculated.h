// The value of one plot for one proband: the plot's own result (a scalar or
// a series of points) and, for a plot with arrows, the arrow targets.
// Borrows the plot, owns the arrow value. Not copyable.
#ifndef GRAPH_R_GRAPHPLOTCALCULATED_H
#define GRAPH_R_GRAPHPLOTCALCULATED_H

#include <memory>

#include "formula/r_calcvalue.h"

class R_Equation;
class R_File;
class R_GraphPlot;
class R_Number;
class R_Proband;

class R_GraphPlotCalculated : public R_CalcValue {
 public:
  explicit R_GraphPlotCalculated(const R_GraphPlot& definition) : plot(&definition) {}
  R_GraphPlotCalculated(const R_GraphPlotCalculated&) = delete;
  R_GraphPlotCalculated& operator=(const R_GraphPlotCalculated&) = delete;

  const R_GraphPlot& getPlot() const { return *plot; }
  bool hasArrow() const { return arrow != nullptr; }
  // Requires: hasArrow().
  const R_CalcValue& getArrow() const;

  // Evaluates `equation` over the whole proband into the own value; a
  // failed evaluation leaves it undefined and says nothing.
  void calculate(const R_File& file, const R_Proband& proband, const R_Number& age, const R_Equation& equation);
  // The same into a new arrow value. Requires: !hasArrow().
  void calculateArrow(const R_File& file, const R_Proband& proband, const R_Number& age,
                      const R_Equation& equation);

  // Evaluates `equation` over the whole proband into `into`: undefined when
  // the evaluation fails.
  static void evaluate(const R_File& file, const R_Proband& proband, const R_Number& age,
                       const R_Equation& equation, R_CalcValue& into);

 private:
  std::unique_ptr<R_CalcValue> arrow;  // null without arrows
  const R_GraphPlot* plot;             // borrowed
};

#endif
