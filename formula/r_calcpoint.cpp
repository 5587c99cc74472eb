#include "formula/r_calcpoint.h"

bool R_CalcPoint::isValid() const { return x.isDefined() && y.isDefined() && age.isDefined(); }

void R_CalcPoint::clear() { y.setUndefined(); }
