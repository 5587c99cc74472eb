// What the benchmarks share: the sample knowledge file, loaded once per
// program, and a database of synthetic probands made in memory by the
// synthesizer of `auxtool synth`, so that every program measures the same
// kind of data.
#ifndef BENCH_BENCH_SUPPORT_H
#define BENCH_BENCH_SUPPORT_H

#include <cstdlib>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "proband/r_a_opensecurity.h"
#include "formula/r_equation.h"
#include "knowledge/r_file.h"
#include "proband/r_a_simpledb.h"
#include "tools/auxtool/probandsynthesizer.h"

// The sample knowledge file with the WHO references; aborts if it does not
// load, since no figure would mean anything.
inline const R_File& sampleKnowledge() {
  static R_File* file = [] {
    R_File* loaded = new R_File;
    std::string path = std::string(AUX_SOURCE_DIR) + "/samples/knowledge.xml";
    if (!loaded->loadXML(path.c_str(), nullptr) || !loaded->isOK()) abort();
    return loaded;
  }();
  return *file;
}

// `formula` translated against the sample knowledge file into `equation`;
// false, with the benchmark marked as skipped, when it does not translate.
inline bool translateForBench(benchmark::State& state, const char* formula, R_Equation* equation) {
  if (equation->loadExpression(formula, sampleKnowledge().getStatistics())) return true;
  state.SkipWithError("the formula does not translate");
  return false;
}

// `count` synthetic probands (seed 1) in a database without a file.
class SyntheticDatabase {
 public:
  explicit SyntheticDatabase(int count)
      : database(&security, &sampleKnowledge(), "", false, nullptr) {
    ProbandSynthesizer synthesizer(sampleKnowledge(), 1);
    for (int i = 0; i < count; ++i)
      if (!synthesizer.addTo(database)) abort();
  }
  const R_A_SimpleDB& get() const { return database; }

 private:
  R_A_OpenSecurity security;
  R_A_SimpleDB database;
};

#endif
