#include "formula/r_calcexpression.h"

#include <cassert>
#include <cstring>

#include "core/r_ascii.h"
#include "formula/r_calcvalueunary.h"
#include "formula/r_formulavocabulary.h"

namespace {

typedef R_CalcValueBinary B;

// The deepest nesting of parentheses, function arguments and prefix operators
// together. Each level costs a handful of stack frames, and a damaged binary
// file can hold a text of 100 000 '('; beyond this limit the expression is a
// syntax fault rather than a stack overflow. Authors' formulas stay far below.
const int maxNesting = 200;

// The double 0x400921FB54442D18.
const double pi = 3.141592653589793;

bool isNumberChar(int c) { return R_isDigit(c) || c == '.' || c == 'E'; }

// The prefix operator spelt by `c`; false for any other character.
bool prefixOperator(char c, R_CalcValueUnary::Operator* op) {
  switch (c) {
    case '-': *op = R_CalcValueUnary::opNegate; return true;
    case '!': *op = R_CalcValueUnary::opNot; return true;
    case '?': *op = R_CalcValueUnary::opDefined; return true;
    default: return false;
  }
}

}  // namespace

// A '=' followed by '>' is the implication of the logical level and never the
// comparison '='; two-character spellings come before their first character.
const R_CalcExpression::OperatorText R_CalcExpression::logicalOperators[] = {
    {"&", B::opAnd}, {"|", B::opOr}, {"=>", B::opImplies}};
const R_CalcExpression::OperatorText R_CalcExpression::comparisonOperators[] = {
    {"=>", B::_opCount}, {"<=", B::opLessEqual}, {"<>", B::opNotEqual}, {">=", B::opGreaterEqual},
    {"<", B::opLess},    {">", B::opGreater},    {"=", B::opEqual}};
const R_CalcExpression::OperatorText R_CalcExpression::sumOperators[] = {
    {"+", B::opAdd}, {"-", B::opSubtract}};
const R_CalcExpression::OperatorText R_CalcExpression::productOperators[] = {
    {"*", B::opMultiply}, {"/", B::opDivide}, {"^", B::opPower}};

namespace {

template <typename T, int n>
constexpr int countOf(const T (&)[n]) {
  return n;
}

}  // namespace

R_CalcExpression::R_CalcExpression(const char* source)
    : text(source), pos(0), error(true), context(false), sex(2), nesting(0) {
  token.reserve(text.getLength() + 1);
  for (int i = 0; i < R_varCount; ++i) variable[i] = nullptr;
}

void R_CalcExpression::setVariable(int slot, const R_CalcValue* value) {
  assert(slot >= 0 && slot < R_varCount);
  if (slot >= 0 && slot < R_varCount) variable[slot] = value;
}

void R_CalcExpression::setContext(int proband_sex, const R_Number& age_today) {
  sex = proband_sex;
  age = age_today;
  context = true;
}

bool R_CalcExpression::evaluate() {
  pos = 0;
  error = false;
  nesting = 0;
  result.setUndefined();
  logical(result);
  if (error) result.setUndefined();
  return !error;
}

// logical -> comparison { ('&' | '|' | '=>') comparison }
// '&' and '|' share the level, so a | b & c is (a | b) & c. Both sides are
// always computed: undefined must meet the three-valued tables.
void R_CalcExpression::logical(R_CalcValue& value) {
  binaryLevel(value, logicalOperators, countOf(logicalOperators), &R_CalcExpression::comparison);
}

// comparison -> sum { ('=' | '<>' | '<' | '<=' | '>' | '>=') sum }
// Comparisons chain from the left: 3>2>1 is (3>2)>1, which is 0.
void R_CalcExpression::comparison(R_CalcValue& value) {
  binaryLevel(value, comparisonOperators, countOf(comparisonOperators), &R_CalcExpression::sum);
}

// sum -> product { ('+' | '-') product }
void R_CalcExpression::sum(R_CalcValue& value) {
  binaryLevel(value, sumOperators, countOf(sumOperators), &R_CalcExpression::product);
}

// product -> unary { ('*' | '/' | '^') unary }
// '^' binds like '*' and associates to the left: 2*3^2 is 36, 2^3^2 is 64.
void R_CalcExpression::product(R_CalcValue& value) {
  binaryLevel(value, productOperators, countOf(productOperators), &R_CalcExpression::unary);
}

// The shape of every binary level: an operand, then operator and operand as
// long as the level's operators follow, each result the next left operand.
void R_CalcExpression::binaryLevel(R_CalcValue& value, const OperatorText* table, int count,
                                   Level next) {
  if (error) return;
  (this->*next)(value);
  B::Operator op;
  while (!error && matchOperator(table, count, &op)) {
    R_CalcValue right;
    (this->*next)(right);
    if (!error) B::apply(value, right, op);
  }
}

// Consumes the first spelling of `table` found at the reading position.
bool R_CalcExpression::matchOperator(const OperatorText* table, int count, B::Operator* op) {
  for (int i = 0; i < count; ++i) {
    int length = static_cast<int>(strlen(table[i].spelling));
    if (strncmp(text.get() + pos, table[i].spelling, length) != 0) continue;
    if (table[i].op == B::_opCount) return false;
    pos += length;
    *op = table[i].op;
    return true;
  }
  return false;
}

// unary -> ('-' | '!' | '?') unary | primary
// The prefix operators bind tighter than '^': -2^2 is 4. '+' is none.
void R_CalcExpression::unary(R_CalcValue& value) {
  if (error) return;
  if (nesting >= maxNesting) {
    error = true;
    return;
  }
  ++nesting;
  R_CalcValueUnary::Operator op;
  if (prefixOperator(at(pos), &op)) {
    ++pos;
    unary(value);
    if (!error) R_CalcValueUnary::apply(value, op);
  } else {
    primary(value);
  }
  --nesting;
}

// primary -> '@' letter | '(' logical ')' | '$' letter | number | function
void R_CalcExpression::primary(R_CalcValue& value) {
  char c = at(pos);
  if (c == '@')
    variableReference(value);
  else if (c == '(')
    parenthesised(value);
  else if (c == '$')
    contextValue(value);
  else if (R_isDigit(c))
    number(value);
  else if (R_isLetter(c))
    function(value);
  else
    error = true;
}

// '(' logical ')'
void R_CalcExpression::parenthesised(R_CalcValue& value) {
  if (at(pos) != '(') {
    error = true;
    return;
  }
  ++pos;
  logical(value);
  if (error) return;
  if (at(pos) != ')') {
    error = true;
    return;
  }
  ++pos;
}

// '@' letter: a copy of the value bound to the letter's slot.
void R_CalcExpression::variableReference(R_CalcValue& value) {
  int slot = at(pos + 1) - 'A';
  if (slot < 0 || slot >= R_varCount || !variable[slot]) {
    error = true;
    return;
  }
  pos += 2;
  value = *variable[slot];
}

// '$' letter: the proband's context. Without one, $M, $F and $I are false
// and $A is undefined.
void R_CalcExpression::contextValue(R_CalcValue& value) {
  switch (at(pos + 1)) {
    case 'M': value.set(context && sex == 0 ? 1 : 0); break;
    case 'F': value.set(context && sex == 1 ? 1 : 0); break;
    case 'I': value.set(context ? 1 : 0); break;
    case 'A':
      if (context)
        value.set(age);
      else
        value.setUndefined();
      break;
    default: error = true; return;
  }
  pos += 2;
}

// number -> a run of digits, '.' and 'E', read as the number text it starts;
// there is no exponent sign, and "1.2.3" reads as 1.2.
void R_CalcExpression::number(R_CalcValue& value) {
  readRun(isNumberChar);
  value.setText(token.c_str());
}

// function -> 'PI' | name '(' logical ')'
// PI takes no parentheses: "PI(2)" is PI, and the parser stops at '('.
void R_CalcExpression::function(R_CalcValue& value) {
  readRun(R_isLetter);
  if (R_stricmp(token.c_str(), R_formulaConstantPI) == 0) {
    value.set(pi);
    return;
  }
  for (const R_FormulaFunction& f : R_formulaFunctions) {
    if (R_stricmp(token.c_str(), f.name) != 0) continue;
    parenthesised(value);
    if (!error) R_CalcValueUnary::apply(value, f.op);
    return;
  }
  error = true;
}

// Copies the run of accepted characters at the reading position into the
// token and moves past it.
void R_CalcExpression::readRun(bool (*accepts)(int c)) {
  int start = pos;
  while (at(pos) != 0 && accepts(static_cast<unsigned char>(at(pos)))) ++pos;
  token.assign(text.get() + start, pos - start);
}
