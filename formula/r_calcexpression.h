// The evaluator of one translated expression ("@A-2*@B", "$A>2.5&$M"): it
// parses the text by recursive descent and computes in the same pass, with no
// tree in between. Made per evaluation: construct with the text, bind the
// variable slots, set the context, evaluate once, read the result.
//
// The grammar, lowest precedence first, every binary level associating to
// the left:
//   logical    -> comparison { ('&' | '|' | '=>') comparison }
//   comparison -> sum { ('=' | '<>' | '<' | '<=' | '>' | '>=') sum }
//   sum        -> product { ('+' | '-') product }
//   product    -> unary { ('*' | '/' | '^') unary }
//   unary      -> ('-' | '!' | '?') unary | primary
//   primary    -> '@' letter | '(' logical ')' | '$' letter | number | function
//   function   -> 'PI' | name '(' logical ')'
// Oddities kept on purpose, since stored formulas depend on them: '&' and '|'
// share one level, so a | b & c is (a | b) & c; '^' binds like '*' and to the
// left, so 2*3^2 is 36 and 2^3^2 is 64; prefix operators bind tighter than
// '^', so -2^2 is 4; comparisons chain, so 3>2>1 is 0; a number has no
// exponent sign, so 1E-5 is 1 - 5.
//
// Parsing stops at the first character the top level does not take, and what
// stands behind a complete expression is ignored: "@A2" has the value of @A.
// A syntax fault (a missing operand, an unknown function, an unbound slot,
// more than 200 levels of parentheses, function arguments and prefix
// operators together) makes evaluate() fail. Undefined values are
// no fault: 1/0 or LN(0-1) evaluate to the undefined value. Not copyable.
#ifndef FORMULA_R_CALCEXPRESSION_H
#define FORMULA_R_CALCEXPRESSION_H

#include <string>

#include "core/r_number.h"
#include "core/r_string.h"
#include "formula/r_calcvalue.h"
#include "formula/r_calcvaluebinary.h"
#include "formula/r_formulaconstants.h"

class R_CalcExpression {
 public:
  // Copies `text`; a null text is the empty one, which fails to evaluate.
  explicit R_CalcExpression(const char* text);
  R_CalcExpression(const R_CalcExpression&) = delete;
  R_CalcExpression& operator=(const R_CalcExpression&) = delete;

  // Binds slot `pos` ("@A" is 0) to `value`, which is not owned and must
  // outlive evaluate(); evaluate() reads a copy of it. A slot used by the text
  // but left unbound is a syntax fault. Requires: 0 <= pos < R_varCount.
  void setVariable(int pos, const R_CalcValue* value);
  // The proband's sex (0 male, 1 female, 2 unknown) and the age today. Without
  // a context $M, $F and $I are 0 and $A is undefined.
  void setContext(int sex, const R_Number& age);

  // Parses and computes the text; false on a syntax fault.
  bool evaluate();
  // Requires: a successful evaluate().
  const R_CalcValue& getResult() const { return result; }

 private:
  // The spelling of one operator of a binary level. An entry with the
  // operator _opCount is a spelling that ends the level instead.
  struct OperatorText {
    const char* spelling;
    R_CalcValueBinary::Operator op;
  };
  typedef void (R_CalcExpression::*Level)(R_CalcValue& value);

  static const OperatorText logicalOperators[];
  static const OperatorText comparisonOperators[];
  static const OperatorText sumOperators[];
  static const OperatorText productOperators[];

  void logical(R_CalcValue& value);
  void comparison(R_CalcValue& value);
  void sum(R_CalcValue& value);
  void product(R_CalcValue& value);
  void unary(R_CalcValue& value);
  void primary(R_CalcValue& value);
  void function(R_CalcValue& value);

  void binaryLevel(R_CalcValue& value, const OperatorText* table, int count, Level next);
  bool matchOperator(const OperatorText* table, int count, R_CalcValueBinary::Operator* op);
  void parenthesised(R_CalcValue& value);
  void variableReference(R_CalcValue& value);
  void contextValue(R_CalcValue& value);
  void number(R_CalcValue& value);
  void readRun(bool (*accepts)(int c));
  // The byte at `index`, 0 at and past the end of the text.
  char at(int index) const { return text.charAt(index); }

  std::string token;  // the number or name being read
  R_String text;
  int pos;
  bool error;  // true until evaluate() starts, and after a syntax fault
  bool context;
  R_Number age;
  int sex;
  R_CalcValue result;
  const R_CalcValue* variable[R_varCount];
  int nesting;  // active unary levels, bounded by the nesting limit
};

#endif
