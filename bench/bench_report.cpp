// A whole report for one proband of the sample database: the text
// "growth_charts" (four growth charts of height, weight, BMI and head
// circumference for age, and an auxogram of the SD scores) written as an HTML
// page with the sample templates, each graph computed, painted and saved as a
// BMP file in a scratch folder. Items processed are reports, so items per
// second read as reports per second. The graph files of a report are removed
// outside the timing, so that the folder does not grow. They go into a
// scratch folder under $AUX_BENCH_IMAGE_DIR, else the system's temporary
// directory (/dev/shm leaves the disk file system out of the figures).
#include <benchmark/benchmark.h>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "bench/bench_support.h"
#include "core/r_date.h"
#include "core/r_number.h"
#include "document/r_supertext.h"
#include "output/r_a_htmloutput.h"
#include "output/r_a_pagesink.h"
#include "page/r_a_cgiparameters.h"
#include "page/r_a_clock.h"
#include "page/r_a_setupfile.h"
#include "proband/r_a_opensecurity.h"
#include "proband/r_a_simpledb.h"
#include "proband/r_proband.h"

namespace {

// A boy followed from birth to 15 years: 26 visits, head circumference in
// the first years, both parents' heights.
const char* const kProband = "Svoboda Martin";
const char* const kText = "growth_charts";
const char* const kToday = "1.6.2024";

// The page in memory, and the graph files that the output reports.
class CollectingSink : public R_A_PageSink {
 public:
  void error(int, const char*) override {}
  void beginPage() override {}
  void putChar(char ch) override { page += ch; }
  void endPage() override {}
  void graphDone(const char* path, const char*) override { graphs.push_back(path); }

  std::string page;
  std::vector<std::string> graphs;
};

long fileSize(const std::string& path) {
  FILE* file = fopen(path.c_str(), "rb");
  if (file == nullptr) return -1;
  fseek(file, 0, SEEK_END);
  long size = ftell(file);
  fclose(file);
  return size;
}

void BM_GrowthChartsReport(benchmark::State& state) {
  const R_File& file = sampleKnowledge();
  R_A_OpenSecurity security;
  std::string path = std::string(AUX_SOURCE_DIR) + "/samples/probands.xml";
  R_A_SimpleDB database(&security, &file, path.c_str(), false, nullptr);
  int record = -1;
  for (int i = 0; i < database.getN(); ++i)
    if (strcmp(database.getText(i, 0).get(), kProband) == 0) record = i;
  int text = file.findText(kText);
  if (record < 0 || text < 0) {
    state.SkipWithError("the sample proband or text is missing");
    return;
  }
  const char* base = std::getenv("AUX_BENCH_IMAGE_DIR");
  std::string pattern = std::string(base != nullptr && *base != '\0' ? base : P_tmpdir) + "/bench_report_XXXXXX";
  std::vector<char> folder(pattern.begin(), pattern.end());
  folder.push_back('\0');
  if (mkdtemp(folder.data()) == nullptr) {
    state.SkipWithError("no scratch folder");
    return;
  }
  std::string setupPath = std::string(AUX_SOURCE_DIR) + "/samples/setup.txt";
  R_A_SetupFile setup(setupPath.c_str());
  R_Date today;
  today.parse(kToday);
  R_A_fixToday(today);
  R_A_CGIParameters parameters;
  parameters.parse("", 0);
  const R_Proband& proband = *database.getProband(record);
  R_Number age;
  today.getAgeFrom(age, proband.getDob());

  double graphs = 0, graphBytes = 0, pageBytes = 0;
  for (auto _ : state) {
    CollectingSink sink;
    R_A_HTMLOutput output(setup, sink, parameters);
    output.setGraphDirs((std::string(folder.data()) + "/").c_str(), "");
    file.getText(text)->write(file, proband, age, output, 0);
    benchmark::DoNotOptimize(sink.page.data());
    state.PauseTiming();
    graphs = static_cast<double>(sink.graphs.size());
    graphBytes = 0;
    for (const std::string& graph : sink.graphs) {
      graphBytes += static_cast<double>(fileSize(graph));
      unlink(graph.c_str());
    }
    pageBytes = static_cast<double>(sink.page.size());
    state.ResumeTiming();
  }
  rmdir(folder.data());
  state.SetItemsProcessed(state.iterations());
  state.counters["graph_files"] = graphs;
  state.counters["graph_bytes"] = graphBytes;
  state.counters["page_bytes"] = pageBytes;
}
// Wall time as well as CPU time: the files' system calls count.
BENCHMARK(BM_GrowthChartsReport)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_GrowthChartsReport)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
