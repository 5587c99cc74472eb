#include "knowledge/r_probability.h"

#include <cmath>
#include <cstdio>

namespace {

const double sdLimit = 6.0;
// normalCDF stops adding terms below this size; inverseNormalCDF stops when it
// is this close to the probability asked for.
const double tolerance = 1e-10;
const int bisectionSteps = 30;
const double twoOverPi = 0.6366197723675814;

}  // namespace

double R_Probability::normalCDF(double z) {
  if (z < -sdLimit) return 0.0;
  if (z > sdLimit) return 1.0;
  // The series of the error function, summed term by term; the order of the
  // operations in the term is kept as it is, for the sake of the last digits.
  double t = -(z * z) / 6;
  double s = 1 + t;
  double k = 5;
  double j = 2;
  while (fabs(t) > tolerance) {
    t = -t * (z * z) * (k - 2) / k / 2 / j;
    s = s + t;
    j = j + 1;
    k = k + 2;
  }
  return sqrt(twoOverPi) * z * fabs(s) / 2 + 0.5;
}

double R_Probability::inverseNormalCDF(double p) {
  if (p > normalCDF(sdLimit) - tolerance) return sdLimit;
  if (normalCDF(-sdLimit) + tolerance > p) return -sdLimit;
  double lo = -sdLimit;
  double hi = sdLimit;
  double m = 0.0;
  for (int step = 0; step < bisectionSteps; ++step) {
    m = (hi + lo) / 2;
    double f = normalCDF(m);
    if (fabs(p - f) <= tolerance) break;
    if (f > p)
      hi = m;
    else
      lo = m;
  }
  return m;
}

void R_Probability::percentileToSD(R_Number& number) {
  if (!number.isDefined()) return;
  double percentile = number.getValue();
  if (percentile > 0 && percentile < 100)
    number.set(inverseNormalCDF(percentile / 100));
  else
    number.setUndefined();
}

void R_Probability::sdToPercentile(R_Number& number) {
  if (!number.isDefined()) return;
  double p = normalCDF(number.getValue());
  if (p > 0 && p < 1)
    number.set(100 * p);
  else
    number.setUndefined();
}

bool R_Probability::isSDInRange(const R_Number& number) {
  return number.isDefined() && isSDInRange(number.getValue());
}

bool R_Probability::isSDInRange(double value) { return value >= -sdLimit && value <= sdLimit; }

void R_Probability::formatPercentile(char* buffer, const R_Number& number) {
  buffer[0] = 0;
  if (!number.isDefined()) return;
  double p = number.getValue();
  if (!(p > 0 && p < 100)) return;
  if (p < 0.1)
    snprintf(buffer, 64, "<0.1");
  else if (p > 99.9)
    snprintf(buffer, 64, ">99.9");
  else if (p < 10 || p > 90)
    snprintf(buffer, 64, "%.1f", floor(p * 10 + 0.5) / 10);
  else if (p < 25 || p > 75)
    snprintf(buffer, 64, "%.0f", floor(p + 0.5));
  else  // the middle range is told in steps of 5 only
    snprintf(buffer, 64, "%.0f", floor(p / 5 + 0.5) * 5);
}

void R_Probability::formatSD(char* buffer, const R_Number& number) {
  const int printedLimit = 6;
  buffer[0] = 0;
  if (!number.isDefined()) return;
  double v = number.getValue();
  if (!(v >= -2 * sdLimit && v <= 2 * sdLimit)) return;
  if (v > sdLimit)
    snprintf(buffer, 64, ">%d.0", printedLimit);
  else if (v < -sdLimit)
    snprintf(buffer, 64, "<-%d.0", printedLimit);
  else  // halves round away from 0
    snprintf(buffer, 64, "%.2f", (v >= 0 ? floor(v * 100 + 0.5) : ceil(v * 100 - 0.5)) / 100);
}
