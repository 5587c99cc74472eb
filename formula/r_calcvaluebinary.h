// The binary operators of the formula language on values and on numbers.
// A group of functions with no state.
//
// On values every operator works between scalars, series and points by eight
// rules tried in order (both scalars; scalar and series; series and scalar;
// two points; point and series; series and point; two series; anything with
// an undefined side, which gives undefined). At value level undefined always
// wins: 0 * undefined and 1 | undefined are undefined. Inside a series the
// softer rules of the numbers apply between points, so that 0 times an
// undefined `y` gives 0 at a position that has `x` and `age`.
#ifndef FORMULA_R_CALCVALUEBINARY_H
#define FORMULA_R_CALCVALUEBINARY_H

#include "core/r_number.h"

class R_CalcValue;

class R_CalcValueBinary {
 public:
  enum Operator {
    opPower,         // ^  pow() with no guard: what it gives comes through
    opAdd,           // +
    opSubtract,      // -
    opMultiply,      // *  one side 0, the other undefined: 0
    opDivide,        // /  undefined for a divisor 0
    opEqual,         // =  comparisons: 1 or 0, doubles compared exactly
    opNotEqual,      // <>
    opLess,          // <
    opLessEqual,     // <=
    opGreater,       // >
    opGreaterEqual,  // >=
    opAnd,           // &  three-valued logic
    opOr,            // |
    opImplies,       // =>
    _opCount
  };

  // left becomes `left op right`, normalised. Two series must have the same
  // getN(), as two series of one proband have.
  static void apply(R_CalcValue& left, const R_CalcValue& right, Operator op);
  // left becomes `left op right` on numbers; undefined operands give
  // undefined except in `*` and in the three-valued `&`, `|` and `=>`.
  static void applyNumber(R_Number& left, const R_Number& right, Operator op);
};

#endif
