// Formula evaluation: a translated expression alone, and whole formulas
// over the probands of a synthetic database (series arithmetic, a nested
// calculated variable, method chains), without references.
#include <benchmark/benchmark.h>

#include <memory>

#include "bench/bench_support.h"
#include "formula/r_calcequation.h"
#include "formula/r_calcexpression.h"
#include "formula/r_equation.h"
#include "proband/r_proband.h"

namespace {

const int kProbands = 2000;

const SyntheticDatabase& database() {
  static SyntheticDatabase made(kProbands);
  return made;
}

void BM_ExpressionConstant(benchmark::State& state) {
  for (auto _ : state) {
    R_CalcExpression expression("(2+3)*4-1/8+EXP(1)*LN(2)+ABS(0-3)");
    benchmark::DoNotOptimize(expression.evaluate());
  }
  state.SetItemsProcessed(state.iterations());
}

void BM_ExpressionWithSlots(benchmark::State& state) {
  R_CalcValue weight, height;
  weight.set(22.41);
  height.set(114.9);
  for (auto _ : state) {
    R_CalcExpression expression("@A/((@B/100)^2)");
    expression.setVariable(0, &weight);
    expression.setVariable(1, &height);
    benchmark::DoNotOptimize(expression.evaluate());
  }
  state.SetItemsProcessed(state.iterations());
}

// Each proband in turn, with the age today of an auxtool calc run.
void runFormula(benchmark::State& state, const char* formula) {
  const R_File& file = sampleKnowledge();
  R_Equation equation;
  if (!translateForBench(state, formula, &equation)) return;
  const R_A_SimpleDB& db = database().get();
  R_Date today(1, 1, 2026);
  int index = 0;
  for (auto _ : state) {
    const R_Proband& proband = *db.getProband(index);
    index = (index + 1) % db.getN();
    R_Number age;
    today.getAgeFrom(age, proband.getDob());
    R_CalcEquation calculation(equation);
    benchmark::DoNotOptimize(calculation.evaluate(file, &proband, age, -1, 0));
  }
  state.SetItemsProcessed(state.iterations());
}

void BM_FormulaBmiSeries(benchmark::State& state) { runFormula(state, "WEIGHT/((HEIGHT/100)^2)"); }
void BM_FormulaCalculatedVariable(benchmark::State& state) { runFormula(state, "BMI"); }
void BM_FormulaMethodChain(benchmark::State& state) { runFormula(state, "HEIGHT:AGE_ABOVE[2]:FIRST_DEFINED[3]:AVG"); }
void BM_FormulaSlope(benchmark::State& state) { runFormula(state, "WEIGHT:SLOPE*12"); }

BENCHMARK(BM_ExpressionConstant);
BENCHMARK(BM_ExpressionWithSlots);
BENCHMARK(BM_FormulaBmiSeries);
BENCHMARK(BM_FormulaCalculatedVariable);
BENCHMARK(BM_FormulaMethodChain);
BENCHMARK(BM_FormulaSlope);

}  // namespace

BENCHMARK_MAIN();
