// The proband's values of one graph, worked out once for all later stages:
// per block the primary plot (the first primary plot that gives a value;
// further primary plots are alternatives), the secondary plots that give a
// value, and the three target values; and the X range of the graph, taken
// from the primary plot of the first block in rank order that has points.
// A failed evaluation leaves its plot or target out and is no failure:
// ok() holds for every calculator. Borrows the container; owns the values.
// Not copyable.
#ifndef GRAPH_R_GRAPHCALCULATOR_H
#define GRAPH_R_GRAPHCALCULATOR_H

#include <memory>
#include <vector>

#include "core/r_number.h"
#include "graph/r_graphblockdata.h"
#include "graph/r_graphplotcalculated.h"

class R_File;
class R_GraphContainer;
class R_Proband;

class R_GraphCalculator {
 public:
  // The axes of getRange.
  enum Axis { axisX = 0, axisY = 1, axisAge = 2 };

  // Does all the work. Requires: GC.getCount() >= 1, GC prepared.
  R_GraphCalculator(const R_File& file, const R_Proband& proband, const R_Number& age, const R_GraphContainer& GC);
  R_GraphCalculator(const R_GraphCalculator&) = delete;
  R_GraphCalculator& operator=(const R_GraphCalculator&) = delete;

  bool ok() const { return success; }

  // Block arguments are indices into the container: 0 <= block < its count.
  bool isPrimary(int block) const { return data[block].primary != nullptr; }
  bool hasPrimary(int block) const { return isPrimary(block) && data[block].primary->isDefined(); }
  // Requires: isPrimary(block).
  const R_GraphPlotCalculated& getPrimary(int block) const;
  int getSecondaryCount(int block) const { return data[block].secondary_count; }
  // Requires: 0 <= index < getSecondaryCount(block).
  const R_GraphPlotCalculated& getSecondary(int block, int index) const;
  // Requires: 0 <= tgt < R_graphBlockTargetCount.
  const R_Number& getTarget(int block, int tgt) const;
  // The range of the block's points on `axis` (0 x, 1 y, 2 age), arrow
  // points included: from the primary plot, or, when that leaves either end
  // undefined, widened by the secondary plots in order until both ends are
  // defined. Scalars count for nothing. Both undefined without points.
  void getRange(int axis, int block, R_Number& min, R_Number& max) const;
  // The X range of the graph; both defined or both undefined.
  const R_Number& getMinX() const { return x_min; }
  const R_Number& getMaxX() const { return x_max; }

 private:
  struct Block {
    std::vector<std::unique_ptr<R_GraphPlotCalculated>> secondary;  // the first secondary_count used
    std::unique_ptr<R_GraphPlotCalculated> primary;                 // null without a primary value
    int secondary_count = 0;
    R_Number target[R_graphBlockTargetCount];
  };

  void calculateTargets(const R_GraphBlockData& definition, Block& block);
  void calculatePrimary(const R_GraphBlockData& definition, Block& block);
  void calculateSecondary(const R_GraphBlockData& definition, Block& block);
  // The plot's values, or null when its own value is undefined.
  std::unique_ptr<R_GraphPlotCalculated> calculatePlot(const R_GraphPlot& plot) const;
  void calculateRangeX();

  const R_File& file;
  const R_Proband& proband;
  const R_Number age;
  const R_GraphContainer* GC;
  std::vector<Block> data;  // one per block of GC
  bool success;
  R_Number x_min;
  R_Number x_max;
};

#endif
