// The work that one outermost computation may spend. Calculated variables
// are computed afresh wherever they are named, with no cache, and the depth
// limit stops cycles but not fan-out: four levels of variables each naming
// the next three times through chains that compute per visit take most of
// a minute for a proband with twenty visits, and with more references or
// visits it runs into hours. So every equation evaluation and every load
// of a variable's value is one step, and all steps taken during the
// outermost one share its budget; past it each step fails, as a step
// beyond the depth limit does, and the failure ends the computation.
//
// The system has one thread, so the steps in progress and the budget left
// are two static counters. Make an R_CalcBudget on entry to a step, ask
// isAllowed(), and let it go on return. Not copyable.
#ifndef FORMULA_R_CALCBUDGET_H
#define FORMULA_R_CALCBUDGET_H

class R_CalcBudget {
 public:
  // Steps of one outermost computation: hundreds of times what knowledge
  // files of real use take (the costliest variable of the sample file takes
  // 131 for the sample proband with the most visits), and a fraction of a
  // second of work.
  static constexpr long limit = 100000;

  // Takes one step from the budget; the outermost step renews the budget.
  R_CalcBudget();
  ~R_CalcBudget();
  R_CalcBudget(const R_CalcBudget&) = delete;
  R_CalcBudget& operator=(const R_CalcBudget&) = delete;

  // Whether this step was within the budget.
  bool isAllowed() const { return allowed; }

 private:
  bool allowed;
  static int active;      // steps in progress
  static long remaining;  // steps left to the outermost computation
};

#endif
