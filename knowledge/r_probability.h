// The two scales of the system, the SD score and the percentile, and the
// conversion between them by the standard normal distribution. A group of
// functions with no state. An undefined R_Number is no failure here: it stays
// undefined through every conversion, and so does a value that has no
// counterpart on the other scale (an SD score beyond 6, a percentile at or
// outside 0 and 100). The last digits of the results are those of the series
// and the bisection below, on which stored reports depend; they differ from a
// library's error function in the last places.
#ifndef KNOWLEDGE_R_PROBABILITY_H
#define KNOWLEDGE_R_PROBABILITY_H

#include "core/r_number.h"

class R_Probability {
 public:
  // The standard normal distribution function, by its Maclaurin series.
  // 0.0 below -6 and 1.0 above 6; at -6 itself it is about 9.8e-10.
  static double normalCDF(double z);
  // The SD score whose normalCDF is `p`, found by 30 bisection steps between
  // -6 and 6; the ends of that range come back for p too close to 0 or 1.
  static double inverseNormalCDF(double p);

  // A percentile strictly between 0 and 100 becomes its SD score; any other
  // number becomes undefined.
  static void percentileToSD(R_Number& number);
  // An SD score becomes its percentile, undefined where normalCDF reaches 0
  // or 1, that is beyond 6 on either side.
  static void sdToPercentile(R_Number& number);
  // -6 <= value <= 6; an undefined number is not in range.
  static bool isSDInRange(const R_Number& number);
  static bool isSDInRange(double value);

  // The report text of a percentile: "<0.1", ">99.9", one decimal in the
  // outer tenths, whole numbers further in, steps of 5 from 25 to 75. The
  // empty text for an undefined number and for anything at or outside 0 and
  // 100. `buffer` holds at least 64 bytes.
  static void formatPercentile(char* buffer, const R_Number& number);
  // The report text of an SD score: two decimals, halves away from 0; ">6.0"
  // and "<-6.0" beyond 6 up to 12; the empty text for an undefined number or
  // beyond 12. `buffer` holds at least 64 bytes.
  static void formatSD(char* buffer, const R_Number& number);
};

#endif
