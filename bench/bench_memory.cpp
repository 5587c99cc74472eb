// What holding a database in memory costs before anything is done with it:
// the first write to each page of fresh heap, which the system makes
// (fault, zeroing) on that write. Beside it the same writes to pages that
// are already there, and one visit record's worth of allocation. The
// exporter and calc hold every proband of a database, so this is the floor
// under their time per byte of heap.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "core/r_number.h"
#include "proband/r_probandrecord.h"

namespace {

const size_t kPage = 4096;
const size_t kMegabyte = size_t(1) << 20;

void touchPages(char* bytes, size_t size) {
  for (size_t at = 0; at < size; at += kPage) bytes[at] = 1;
  benchmark::ClobberMemory();
}

// A block this large comes fresh from the system for each allocation and
// goes back to it when freed, so every page is touched for the first time.
void BM_FirstTouchPerMegabyte(benchmark::State& state) {
  size_t size = static_cast<size_t>(state.range(0)) * kMegabyte;
  for (auto _ : state) {
    char* bytes = static_cast<char*>(malloc(size));
    touchPages(bytes, size);
    free(bytes);
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(size));
}

void BM_TouchAgainPerMegabyte(benchmark::State& state) {
  size_t size = static_cast<size_t>(state.range(0)) * kMegabyte;
  char* bytes = static_cast<char*>(malloc(size));
  touchPages(bytes, size);
  for (auto _ : state) touchPages(bytes, size);
  free(bytes);
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(size));
}

// A visit of thirteen followed variables with five of them measured, made
// and deleted again: the allocator's own cost, without fresh pages.
void BM_VisitRecordMadeAndDeleted(benchmark::State& state) {
  for (auto _ : state) {
    R_ProbandRecord* record = R_ProbandRecord::create(13, 5);
    for (int slot = 0; slot < 13; slot += 3) record->setValue(slot, R_Number(100.0 + slot));
    benchmark::DoNotOptimize(record);
    delete record;
  }
  state.SetItemsProcessed(state.iterations());
}

}  // namespace

BENCHMARK(BM_FirstTouchPerMegabyte)->Arg(64)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TouchAgainPerMegabyte)->Arg(64)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_VisitRecordMadeAndDeleted);
BENCHMARK_MAIN();
