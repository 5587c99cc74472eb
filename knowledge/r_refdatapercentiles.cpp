#include "knowledge/r_refdatapercentiles.h"

#include <cassert>
#include <new>

#include "knowledge/r_probability.h"

R_RefDataPercentiles::R_RefDataPercentiles() : sd_table(nullptr) {}

R_RefDataPercentiles::~R_RefDataPercentiles() { delete[] sd_table; }

void R_RefDataPercentiles::buildSDTable() {
  assert(getN() > 0 && !sd_table);
  sd_table = new (std::nothrow) R_Number[getN()];
  if (!sd_table) return;
  for (int i = 0; i < getN(); ++i) {
    sd_table[i] = getValue(i);
    R_Probability::percentileToSD(sd_table[i]);
  }
}

const R_Number& R_RefDataPercentiles::getSD(int index) const {
  assert(sd_table && index >= 0 && index < getN());
  return sd_table[index];
}
