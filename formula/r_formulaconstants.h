// Constants shared by the translator of formulas and their evaluator.
#ifndef FORMULA_R_FORMULACONSTANTS_H
#define FORMULA_R_FORMULACONSTANTS_H

// The number of variable references one equation can hold: the letters A to Z
// of the translated form, "@A" being slot 0 and "@Z" slot 25.
const int R_varCount = 26;

#endif
