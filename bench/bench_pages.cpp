// Pages per second: the page application walking templates over 10 000
// synthetic probands on the sample knowledge file. The list page walks a
// window of probands as the sample list does (51 rows), the full list every
// proband, and the proband page one proband with its visits and every
// followed value of each visit. The sink only counts the bytes.
#include <benchmark/benchmark.h>

#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include <string>

#include "bench/bench_support.h"
#include "output/r_a_pagesink.h"
#include "page/r_a_cgiparameters.h"
#include "page/r_a_setupfile.h"
#include "page/r_application.h"
#include "proband/r_a_security.h"

namespace {

const int kProbands = 10000;

const char* const listPage =
    "<html><body><h1>$get-file-comment</h1>\n"
    "$if-searched-not-found<p>Nobody found for \"$get-searched-text\".</p>$end\n"
    "<table>\n$for-each-selected-proband-in-window<tr><td><a href=\"?_p_id=$(get-proband-id)\">"
    "$get-proband-name</a></td><td>$get-proband-dob</td><td>$if-proband-sex-male boy$else girl$end</td>"
    "<td>$get-proband-measure-count</td><td>$get-proband-comment</td></tr>\n$end</table>\n"
    "$if-window-previous<a href=\"?_top=$(get-window-top-previous)\">previous</a>$end\n"
    "$if-window-next<a href=\"?_top=$(get-window-top-next)\">next</a>$end\n</body></html>\n";

const char* const fullListPage =
    "<ul>\n$for-each-selected-proband<li><a href=\"?_p_id=$(get-proband-id)\">$get-proband-name</a> "
    "($get-proband-dob)</li>\n$end</ul>\n";

const char* const probandPage =
    "<html><head><title>$get-proband-name</title></head><body>\n"
    "$if-proband-defined<h1>$get-proband-name, born $get-proband-dob</h1>\n"
    "<table><tr><th>Date</th><th>Age</th>$for-each-followed<th>$get-followed-name</th>$end</tr>\n"
    "$for-each-measure<tr><td>$get-measure-date</td><td>$get-measure-age-rounded</td>"
    "$for-each-followed<td>$get-followed-value</td>$end</tr>\n$end</table>\n"
    "$for-each-anamnestic<p>$get-anamnestic-name: $get-anamnestic-value $get-anamnestic-unit</p>\n$end"
    "<form><input type=\"hidden\" name=\"_order\" value=\"$get-command-order\"></form>\n"
    "$else<p>No such proband.</p>\n$end</body></html>\n";

class IndexSecurity : public R_A_Security {
 public:
  bool isClientAllowed(int) override { return true; }
  bool writeRecordId(int index, char* buffer) override {
    snprintf(buffer, 32, "%d", index);
    return true;
  }
  int findRecordIndex(const char* id) override { return atoi(id); }
};

class CountingSink : public R_A_PageSink {
 public:
  void error(int, const char*) override { ++errors; }
  void beginPage() override {}
  void putChar(char) override { ++bytes; }
  void endPage() override {}
  void graphDone(const char*, const char*) override {}
  long long bytes = 0;
  int errors = 0;
};

void writeText(const std::string& path, const char* text) {
  FILE* file = fopen(path.c_str(), "wb");
  if (!file) abort();
  fputs(text, file);
  fclose(file);
}

// The database, the application and the page files, made once.
struct PageWorld {
  PageWorld() : database(&security, &sampleKnowledge(), "", false, nullptr), setup("") {
    ProbandSynthesizer synthesizer(sampleKnowledge(), 1);
    for (int i = 0; i < kProbands; ++i)
      if (!synthesizer.addTo(database)) abort();
    char pattern[] = "/tmp/bench_pages_XXXXXX";
    if (!mkdtemp(pattern)) abort();
    directory = std::string(pattern) + "/";
    writeText(directory + "list.htm", listPage);
    writeText(directory + "all.htm", fullListPage);
    writeText(directory + "proband.htm", probandPage);
    app = new R_Application(database, sampleKnowledge());
    app->setPages("/", directory.c_str(), ".htm");
    app->setDateFormat("%D.%M.%Y");
  }
  IndexSecurity security;
  R_A_SimpleDB database;
  R_A_SetupFile setup;
  std::string directory;
  R_Application* app;
};

PageWorld& world() {
  static PageWorld* made = new PageWorld();
  return *made;
}

// Each iteration is one whole request: the search, the choice of page,
// reading its file and the walk.
void runPage(benchmark::State& state, const std::string& (*queryFor)(int)) {
  PageWorld& w = world();
  CountingSink sink;
  R_A_CGIParameters parameters;
  int i = 0;
  for (auto _ : state) {
    parameters.parse(queryFor(i++).c_str(), 0);
    w.app->process(parameters, sink, w.setup);
  }
  if (sink.errors) state.SkipWithError("the page reported errors");
  state.SetItemsProcessed(state.iterations());
  state.counters["pages/s"] = benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
  state.counters["bytes/page"] = static_cast<double>(sink.bytes) / static_cast<double>(state.iterations());
}

const std::string& listQuery(int i) {
  static std::string query;
  query = "_page=list&_top=" + std::to_string((i * 50) % kProbands);
  return query;
}

const std::string& fullListQuery(int) {
  static const std::string query = "_page=all";
  return query;
}

const std::string& probandQuery(int i) {
  static std::string query;
  query = "_page=proband&_p_id=" + std::to_string((i * 7919) % kProbands);
  return query;
}

void BM_ListPageWindow(benchmark::State& state) { runPage(state, listQuery); }
void BM_ListPageAllProbands(benchmark::State& state) { runPage(state, fullListQuery); }
void BM_ProbandPageWithVisits(benchmark::State& state) { runPage(state, probandQuery); }

}  // namespace

BENCHMARK(BM_ListPageWindow)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ListPageAllProbands)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ProbandPageWithVisits)->Unit(benchmark::kMicrosecond);
BENCHMARK_MAIN();
