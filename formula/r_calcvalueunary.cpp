#include "formula/r_calcvalueunary.h"

#include <cassert>
#include <cmath>

#include "formula/r_calcvalue.h"
#include "knowledge/r_probability.h"

namespace {

double negate(double x) { return -x; }
double logicalNot(double x) { return x == 0.0 ? 1.0 : 0.0; }
double one(double) { return 1.0; }
double sine(double x) { return sin(x); }
double cosine(double x) { return cos(x); }
double exponential(double x) { return exp(x); }
double magnitude(double x) { return fabs(x); }

template <double (*compute)(double)>
void plain(R_Number& number) {
  number.set(compute(number.getValue()));
}

template <double (*compute)(double)>
void logarithm(R_Number& number) {
  if (number.getValue() > 0)
    number.set(compute(number.getValue()));
  else
    number.setUndefined();
}

double naturalLog(double x) { return log(x); }
double decimalLog(double x) { return log10(x); }

typedef void (*NumberRule)(R_Number& number);

// In the order of R_CalcValueUnary::Operator; each is called with a defined
// number only.
const NumberRule numberRules[] = {
    plain<negate>,      plain<logicalNot>,    plain<one>,
    plain<sine>,        plain<cosine>,        plain<exponential>,
    plain<magnitude>,   logarithm<naturalLog>, logarithm<decimalLog>,
    R_Probability::percentileToSD, R_Probability::sdToPercentile,
};
static_assert(sizeof(numberRules) / sizeof(numberRules[0]) == R_CalcValueUnary::_opCount,
              "one number rule per operator");

}  // namespace

void R_CalcValueUnary::apply(R_CalcValue& value, Operator op) {
  if (op == opDefined) {
    value.set(value.isDefined() ? 1 : 0);
    return;
  }
  if (value.isScalar()) {
    R_Number number = value.getScalar();
    applyNumber(number, op);
    value.set(number);
    return;
  }
  // Every operator keeps an undefined `y` undefined, so working on each `y`
  // of a point touches its one valid `y` alone.
  for (int i = 0; i < value.getN(); ++i) applyNumber(value.getPoint(i).getY(), op);
  value.normalise();
}

void R_CalcValueUnary::applyNumber(R_Number& number, Operator op) {
  assert(op >= 0 && op < _opCount);
  if (number.isDefined()) numberRules[op](number);
}
