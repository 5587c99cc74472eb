// SD scores against the WHO references of the sample knowledge file: the
// reference data alone, and the SD method over the visits of a synthetic
// database as `auxtool calc HEIGHT:SD` computes it. The counter "SD/s" is
// the rate of SD scores made; the database path must reach one million per
// second.
#include <benchmark/benchmark.h>

#include "bench/bench_support.h"
#include "formula/r_calcequation.h"
#include "formula/r_equation.h"
#include "knowledge/r_refdata.h"
#include "knowledge/r_reference.h"
#include "knowledge/r_variable.h"
#include "proband/r_proband.h"

namespace {

const int kProbands = 10000;

const SyntheticDatabase& database() {
  static SyntheticDatabase made(kProbands);
  return made;
}

// The height reference for boys, from the file's own search.
const R_RefData* heightReference(double age) {
  const R_File& file = sampleKnowledge();
  int height = file.getStatistics().getVarIndex("HEIGHT");
  int ref = file.findReference(0, R_Number(age), file.getVariable(height)->getXYVar());
  return ref >= 0 ? file.getReference(ref)->getData() : nullptr;
}

void BM_RefDataSD(benchmark::State& state) {
  const R_RefData* data = heightReference(7.0);
  if (!data || !data->isFollowed()) {
    state.SkipWithError("no followed height reference");
    return;
  }
  double age = 5.0;
  for (auto _ : state) {
    R_Number sd;
    data->getSD(sd, R_Number(age), R_Number(120.0));
    benchmark::DoNotOptimize(sd);
    age = age < 18.0 ? age + 0.37 : 5.0;
  }
  state.counters["SD/s"] = benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

int validPoints(const R_CalcValue& value) {
  int count = 0;
  for (int i = 0; value.isXY() && i < value.getN(); ++i) count += value.getPoint(i).isValid() ? 1 : 0;
  return count;
}

// The whole database per iteration, one SD score per valid point.
void runOverDatabase(benchmark::State& state, const char* formula) {
  const R_File& file = sampleKnowledge();
  R_Equation equation;
  if (!translateForBench(state, formula, &equation)) return;
  const R_A_SimpleDB& db = database().get();
  R_Date today(1, 1, 2026);
  double scores = 0;
  for (auto _ : state) {
    for (int i = 0; i < db.getN(); ++i) {
      const R_Proband& proband = *db.getProband(i);
      R_Number age;
      today.getAgeFrom(age, proband.getDob());
      R_CalcEquation calculation(equation);
      if (calculation.evaluate(file, &proband, age, -1, 0)) scores += validPoints(calculation.getResult());
    }
  }
  state.counters["SD/s"] = benchmark::Counter(scores, benchmark::Counter::kIsRate);
  state.counters["probands/s"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * db.getN(), benchmark::Counter::kIsRate);
}

void BM_HeightSDOverDatabase(benchmark::State& state) { runOverDatabase(state, "HEIGHT:SD"); }
void BM_WeightSDOverDatabase(benchmark::State& state) { runOverDatabase(state, "WEIGHT:SD"); }
void BM_BmiSDOverDatabase(benchmark::State& state) { runOverDatabase(state, "BMI:SD"); }
void BM_HeadSDOverDatabase(benchmark::State& state) { runOverDatabase(state, "FOH:SD"); }

BENCHMARK(BM_RefDataSD);
BENCHMARK(BM_HeightSDOverDatabase)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_WeightSDOverDatabase)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BmiSDOverDatabase)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_HeadSDOverDatabase)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
