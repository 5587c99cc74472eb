#include "knowledge/r_graphreflinesinpercentiles.h"

#include <cassert>

#include "knowledge/r_probability.h"

R_GraphRefLinesInPercentiles::~R_GraphRefLinesInPercentiles() { delete[] sd_table; }

double R_GraphRefLinesInPercentiles::getLineSD(int index) const {
  assert(sd_table && index >= 0 && index < list.getN());
  return sd_table[index];
}

bool R_GraphRefLinesInPercentiles::prepare() {
  if (sd_table) return true;
  int count = list.getN();
  if (count == 0) return false;
  for (int i = 0; i < count; ++i) {
    const R_Number& percentile = list.getValue(i);
    if (!percentile.isDefined() || !(percentile.getValue() > 0 && percentile.getValue() < 100)) return false;
  }
  sd_table = new double[count];
  for (int i = 0; i < count; ++i) {
    R_Number sd(list.getValue(i));
    R_Probability::percentileToSD(sd);
    sd_table[i] = sd.getValue();
  }
  return true;
}
