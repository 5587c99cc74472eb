// The number and date texts on the reading and exporting paths: R_Number
// from element text, the fast atof and "%g" beside the C library's, and
// R_Date from and to its texts.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

#include "core/r_date.h"
#include "core/r_number.h"
#include "core/r_numbertext.h"

namespace {

// Values as a database holds them, as element text with its indentation.
const char* const kElementTexts[] = {"\n       109.2\n     ", "\n       22.41\n     ", "\n       1\n     ",
                                     "\n       48.4\n     ",  "\n       0.857\n     ", "\n       173.7\n     "};
const char* const kPlainTexts[] = {"109.2", "22.41", "1", "48.4", "0.857", "173.7", "7.184", "13.94"};
const double kValues[] = {109.2, 22.41, 1.0, 48.4, 0.857, 173.7, 7.184, 13.94, 1e6, 0.0001234};
const char* const kDateTexts[] = {"28.11.2018", "7.10.2019", "1. 2. 2003", "01/02/03", "31.12.2099"};

template <class T, size_t N>
size_t countOf(T (&)[N]) {
  return N;
}

void BM_NumberSetFromElementText(benchmark::State& state) {
  size_t i = 0;
  for (auto _ : state) {
    R_Number number;
    number.setFromText(kElementTexts[i++ % countOf(kElementTexts)]);
    benchmark::DoNotOptimize(number);
  }
  state.SetItemsProcessed(state.iterations());
}

void BM_FastAtof(benchmark::State& state) {
  size_t i = 0;
  for (auto _ : state) benchmark::DoNotOptimize(R_atof(kPlainTexts[i++ % countOf(kPlainTexts)]));
  state.SetItemsProcessed(state.iterations());
}

void BM_LibraryAtof(benchmark::State& state) {
  size_t i = 0;
  for (auto _ : state) benchmark::DoNotOptimize(atof(kPlainTexts[i++ % countOf(kPlainTexts)]));
  state.SetItemsProcessed(state.iterations());
}

void BM_FastFormatG(benchmark::State& state) {
  char buffer[R_numberTextSize];
  size_t i = 0;
  for (auto _ : state) {
    R_formatG(kValues[i++ % countOf(kValues)], buffer);
    benchmark::DoNotOptimize(buffer);
  }
  state.SetItemsProcessed(state.iterations());
}

void BM_LibraryFormatG(benchmark::State& state) {
  char buffer[64];
  size_t i = 0;
  for (auto _ : state) {
    snprintf(buffer, sizeof buffer, "%g", kValues[i++ % countOf(kValues)]);
    benchmark::DoNotOptimize(buffer);
  }
  state.SetItemsProcessed(state.iterations());
}

void BM_DateParse(benchmark::State& state) {
  size_t i = 0;
  for (auto _ : state) {
    R_Date date;
    benchmark::DoNotOptimize(date.parse(kDateTexts[i++ % countOf(kDateTexts)]));
  }
  state.SetItemsProcessed(state.iterations());
}

void BM_DateFormat(benchmark::State& state) {
  R_Date date(28, 11, 2018);
  char buffer[64];
  for (auto _ : state) {
    date.format(buffer, "%d.%m.%Y");
    benchmark::DoNotOptimize(buffer);
  }
  state.SetItemsProcessed(state.iterations());
}

void BM_DateAge(benchmark::State& state) {
  R_Date birth(28, 11, 2018), visit(7, 10, 2019);
  for (auto _ : state) {
    R_Number age;
    visit.getAgeFrom(age, birth);
    benchmark::DoNotOptimize(age);
  }
  state.SetItemsProcessed(state.iterations());
}

BENCHMARK(BM_NumberSetFromElementText);
BENCHMARK(BM_FastAtof);
BENCHMARK(BM_LibraryAtof);
BENCHMARK(BM_FastFormatG);
BENCHMARK(BM_LibraryFormatG);
BENCHMARK(BM_DateParse);
BENCHMARK(BM_DateFormat);
BENCHMARK(BM_DateAge);

}  // namespace

BENCHMARK_MAIN();
