// The reference stage of one graph: for one proband it picks the growth
// reference of each block, picks one grid variant of it (or else works out
// a scale from the proband's data) and so settles the one X scale of the
// graph and the Y scale of each block. Every later stage reads its scales
// here. A block analysed "sd" has no reference and a fixed SD scale; a block
// of an anamnestic variable has no Y scale at all (its scale is 1 to 1).
//
// ok() fails, without a message, when no block has an X variable, when no
// X scale can be made, or when a block that needs a Y scale has none: the
// graph is then simply left out. Borrows the container, the calculator, the
// file and the proband; lives on the stack of one graph's write. Not
// copyable.
#ifndef GRAPH_R_GRAPHREFERENCE_H
#define GRAPH_R_GRAPHREFERENCE_H

#include <vector>

#include "core/r_number.h"

class R_File;
class R_GraphCalculator;
class R_GraphContainer;
class R_Granularity;
class R_Proband;
class R_Reference;
class R_Variable;

class R_GraphReference {
 public:
  // The numbers of one axis: from min to max with a major grid of `step`
  // and, where `small` is defined, a fine grid of that step.
  struct Scale {
    R_Number min, max, step, small;
    // min, max and step defined, min < max, step and a defined small at
    // most max - min.
    bool isValid() const;
  };

  // Does all the work. Requires: GC prepared, CALC made over GC.
  R_GraphReference(const R_GraphContainer& GC, const R_GraphCalculator& CALC, const R_File& F,
                   const R_Proband& proband);
  R_GraphReference(const R_GraphReference&) = delete;
  R_GraphReference& operator=(const R_GraphReference&) = delete;

  bool ok() const { return success; }

  // Block arguments are indices into the container.
  bool isRef(int block) const { return data[block].reference >= 0; }
  bool isVarY(int block) const { return data[block].y_variable >= 0; }
  // Requires: isRef(block).
  const R_Reference& getReference(int block) const;
  // The index of the block's chosen grid variant, -1 when its scale was
  // worked out from the data instead.
  int getVariant(int block) const { return data[block].variant; }
  const R_Variable& getBlockVariable(int block) const;
  // Requires: ok().
  const R_Variable& getXVariable() const;
  // Requires: isVarY(block).
  const R_Variable& getYVariable(int block) const;

  // The scales; to be asked only when ok() holds.
  const Scale& getXScale() const { return X; }
  const R_Number& getXMin() const { return X.min; }
  const R_Number& getXMax() const { return X.max; }
  const R_Number& getXStep() const { return X.step; }
  const R_Number& getXSmall() const { return X.small; }
  bool isXsmall() const { return X.small.isDefined(); }
  const Scale& getYScale(int block) const { return data[block].Y; }
  const R_Number& getYMin(int block) const { return data[block].Y.min; }
  const R_Number& getYMax(int block) const { return data[block].Y.max; }
  const R_Number& getYStep(int block) const { return data[block].Y.step; }
  const R_Number& getYSmall(int block) const { return data[block].Y.small; }
  bool isYsmall(int block) const { return data[block].Y.small.isDefined(); }
  // Whole cells of the major grid: floor((max - min)/step).
  int getXCellCount() const { return cellCount(X); }
  int getYCellCount(int block) const { return cellCount(data[block].Y); }
  // 0 at min, 1 at max.
  double toUnitX(double value) const { return toUnit(X, value); }
  double toUnitY(int block, double value) const { return toUnit(data[block].Y, value); }

  // A round scale around a to b (either order) with about five steps of 1,
  // 2 or 5 times a power of ten. A range narrower than ten times the
  // variable's precision (5 without one) is first widened by that much on
  // each side, so that a single value sits in the middle of a scale.
  static Scale autoScale(const R_Number& precision, double a, double b);
  // -L to L in steps of 1, L the first of 2 to 5 that holds min to max,
  // else 6; 2 for an undefined range.
  static Scale sdScale(const R_Number& min, const R_Number& max);

 private:
  struct Block {
    int y_variable = -1;
    int reference = -1;
    int variant = -1;
    Scale Y;
  };

  void findVariables(int block, int& x_var, int& y_var) const;
  int findReference(int block) const;
  void setScale(int block, bool first);
  void setScaleSD(int block, bool first);
  void setScaleFromReference(int block, bool first);
  void applyVariant(int block, const R_Granularity& g, bool first);
  // The interval of a list variable's values, in steps of 1.
  Scale listScale(int block) const;
  void autoScaleX(double a, double b);
  int chooseVariant(int block, bool keepX, bool keepY) const;
  // False when the variant cannot be judged; else its area and the points
  // of the primary value (and of its arrows) it leaves outside.
  bool judgeVariant(const R_Granularity& g, bool keepX, bool keepY, int block, double& area, int& missed) const;
  static int cellCount(const Scale& scale);
  static double toUnit(const Scale& scale, double value);

  std::vector<Block> data;  // one per block of GC
  Scale X;
  int x_variable;
  const R_GraphContainer* GC;
  const R_GraphCalculator* CALC;
  const R_File* file;
  const R_Proband* proband;
  bool success;
};

#endif
