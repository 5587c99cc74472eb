// The prefix operators and the functions of the formula language, on values
// and on numbers. A group of functions with no state.
//
// Every operator but the defined-test keeps an undefined value or number
// undefined; domain faults (the logarithm of 0, a percentile of 100) give an
// undefined number, never a failure. On a series the operator works on each
// `y`, and the result is normalised.
#ifndef FORMULA_R_CALCVALUEUNARY_H
#define FORMULA_R_CALCVALUEUNARY_H

#include "core/r_number.h"

class R_CalcValue;

class R_CalcValueUnary {
 public:
  enum Operator {
    opNegate,   // -
    opNot,      // !  1 for 0, else 0
    opDefined,  // ?  1 for a defined value, 0 for an undefined one
    opSin,      // SIN, in radians
    opCos,      // COS, in radians
    opExp,      // EXP
    opAbs,      // ABS
    opLn,       // LN, undefined for a number not above 0
    opLog,      // LOG, decimal, undefined for a number not above 0
    opPsd,      // PSD, a percentile to an SD score
    opSdp,      // SDP, an SD score to a percentile
    _opCount
  };

  // `?` turns any value into the scalar 1 or 0: the one operator that makes
  // a defined value of an undefined one. The others apply to a scalar or to
  // each `y` of a series, and leave an undefined value undefined.
  static void apply(R_CalcValue& value, Operator op);
  // The operator on one number; an undefined number stays undefined, also
  // under the defined-test, which gives 1 for a defined number: only on a
  // value can it see undefined.
  static void applyNumber(R_Number& number, Operator op);
};

#endif
