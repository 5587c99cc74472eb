#include "formula/r_calcbudget.h"

int R_CalcBudget::active = 0;
long R_CalcBudget::remaining = 0;

R_CalcBudget::R_CalcBudget() {
  if (active == 0) remaining = limit;
  ++active;
  allowed = remaining > 0;
  if (allowed) --remaining;
}

R_CalcBudget::~R_CalcBudget() { --active; }
