#include "knowledge/r_graphreflinesinsd.h"

#include "knowledge/r_probability.h"

double R_GraphRefLinesInSD::getLineSD(int index) const { return list.getValue(index).getValue(); }

bool R_GraphRefLinesInSD::isOK() const {
  if (list.getN() == 0) return false;
  for (int i = 0; i < list.getN(); ++i) {
    if (!R_Probability::isSDInRange(list.getValue(i))) return false;
  }
  return true;
}
