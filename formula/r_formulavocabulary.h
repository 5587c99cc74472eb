// The words of the formula language that are not variable names, in one
// place for the translator, the evaluator and the writer of stored formulas:
// the keywords with the code each translates to, and the functions with the
// operation each applies. Method words live with the methods
// (R_CalcValueMethod), which the translator asks. Case is ignored when a
// word is looked up.
#ifndef FORMULA_R_FORMULAVOCABULARY_H
#define FORMULA_R_FORMULAVOCABULARY_H

#include "formula/r_calcvalueunary.h"

struct R_FormulaKeyword {
  const char* word;
  const char* code;  // the translated text; "$x" is a fact of the proband
};

inline constexpr R_FormulaKeyword R_formulaKeywords[] = {
    {"ALL", "1"},   {"ALWAYS", "1"},     {"LT", "<"},          {"GT", ">"},  {"LTEQ", "<="},
    {"GTEQ", ">="}, {"MALE", "$M"},      {"FEMALE", "$F"},     {"AND", "&"}, {"OR", "|"},
    {"NOT", "!"},   {"AGE_TODAY", "$A"}, {"IS_PROBAND", "$I"},
};

struct R_FormulaFunction {
  const char* name;
  R_CalcValueUnary::Operator op;
};

// PI, the one constant, is a word of its own: it takes no parentheses.
inline constexpr const char* R_formulaConstantPI = "PI";
inline constexpr R_FormulaFunction R_formulaFunctions[] = {
    {"EXP", R_CalcValueUnary::opExp}, {"SIN", R_CalcValueUnary::opSin},
    {"COS", R_CalcValueUnary::opCos}, {"ABS", R_CalcValueUnary::opAbs},
    {"LN", R_CalcValueUnary::opLn},   {"LOG", R_CalcValueUnary::opLog},
    {"PSD", R_CalcValueUnary::opPsd}, {"SDP", R_CalcValueUnary::opSdp},
};
// The operations before opSin are spelt by characters, every later one by
// a word here.
static_assert(sizeof(R_formulaFunctions) / sizeof(R_formulaFunctions[0]) ==
                  R_CalcValueUnary::_opCount - R_CalcValueUnary::opSin,
              "every named operation has its word");

#endif
