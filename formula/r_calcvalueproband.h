// The bridge from a proband's stored data to an R_CalcValue: a variable's
// anamnestic value, or a series with one point per visit whose x, y and age
// come from the variable's xyref pair, computing calculated variables on the
// way. Operations only, no state.
//
// Depth: each load and each nested evaluation tests depth > 10; load hands
// depth + 1 on, so a calculated variable nested in another costs two levels.
// That limit is the only guard against a definition that refers to itself.
#ifndef FORMULA_R_CALCVALUEPROBAND_H
#define FORMULA_R_CALCVALUEPROBAND_H

#include "core/r_number.h"

class R_CalcValue;
class R_File;
class R_Proband;

class R_CalcValueProband {
 public:
  // Which number of a point a field operation fills.
  enum Field { fieldX = 0, fieldY = 1, fieldAge = 2 };

  // Fills `value` with the variable `varindex` of `proband`; `age` is the age
  // today, handed down unchanged. False when the evaluation failed (the value
  // is then undefined); a proband of unknown sex gives true and undefined.
  static bool load(R_CalcValue& value, const R_File& file, const R_Proband& proband, const R_Number& age,
                   int varindex, int depth);
  static bool loadAnamnestic(R_CalcValue& value, const R_File& file, const R_Proband& proband,
                             const R_Number& age, int varindex, int depth);
  // Requires: value is a series of the proband's visit count; both indices
  // at 0 or above.
  static bool loadSeries(R_CalcValue& value, const R_File& file, const R_Proband& proband, const R_Number& age,
                         int index_x, int index_y, int depth);

  // Each visit's age into `field` of its point.
  static void setAges(R_CalcValue& value, int field, const R_Proband& proband);
  // Each visit's stored value of the followed variable `name` into `field`; a
  // name that is no followed measured variable changes nothing.
  static void setMeasured(R_CalcValue& value, int field, const R_Proband& proband, const char* name);
  // Computes the calculated variable `varindex` per visit (visit-bound
  // chains) or once as a series, into `field`. False when an evaluation failed.
  static bool setCalculated(R_CalcValue& value, const R_File& file, const R_Proband& proband, const R_Number& age,
                            int varindex, int field, int depth);
  // `number` into `field` of point `index`; ignored for an index outside the
  // series or a field outside 0 to 2.
  static void setField(R_CalcValue& value, int field, int index, const R_Number& number);

  // Depth beyond which loads and evaluations fail.
  static const int kDepthLimit = 10;

 private:
  static bool fillField(R_CalcValue& value, const R_File& file, const R_Proband& proband, const R_Number& age,
                        int varindex, int field, int depth);
  static void setMeasuredOrder(R_CalcValue& value, int field, const R_Proband& proband, int order);
};

#endif
