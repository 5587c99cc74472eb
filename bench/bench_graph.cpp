// One growth graph for one proband of the sample database: a height block
// with the reference for boys or girls of 2 to 5 years shown, the proband's heights joined, the target range
// from the parents, and an SD block of the height SD scores under it. All
// stages run per graph: blocks, values, references and scales, layout and
// painting. Items processed are graphs, so items per second read as graphs
// per second.
//
// The sample knowledge file holds no graph, so the benchmark defines its
// own over the file's variables.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "core/r_date.h"
#include "graph/r_textgraph.h"
#include "knowledge/r_file.h"
#include "output/r_a_htmloutput.h"
#include "output/r_a_pagesink.h"
#include "output/r_outputinterface.h"
#include "page/r_a_cgiparameters.h"
#include "page/r_a_setupfile.h"
#include "proband/r_a_opensecurity.h"
#include "proband/r_a_simpledb.h"
#include "proband/r_proband.h"

namespace {

const char kGraph[] =
    "<caption>Height for age</caption>"
    "<block var=\"HEIGHT\" priority=\"10\"><refdata age=\"3\" show=\"yes\"/>"
    "<plot method=\"HEIGHT\" connect=\"yes\"/>"
    "<targetpoint name=\"Target\" method=\"TARGET_HT\"/>"
    "<targetrange><targetpoint name=\"-\" method=\"TARGET_HT-8.5\"/>"
    "<targetpoint name=\"+\" method=\"TARGET_HT+8.5\"/></targetrange></block>"
    "<block var=\"HEIGHT\" priority=\"5\" analysed=\"sd\"><plot method=\"HEIGHT:SD\" connect=\"yes\"/></block>";

std::string samplePath(const char* name) { return std::string(AUX_SOURCE_DIR) + "/samples/" + name; }

// An output that draws nothing and answers the measures of the bitmap
// graphs of the HTML output with its default settings.
class NullOutput : public R_OutputInterface {
 public:
  int graphs = 0;
  int calls = 0;
  int bars = 0;

  void beginDocument() override {}
  void endDocument() override {}
  void beginBlock(int) override {}
  void endBlock() override {}
  void beginParagraph() override {}
  void endParagraph() override {}
  void writeChar(int, char) override {}
  void setFont(int) override {}
  void writeAnchor(const char*, bool) override {}
  void writeResult(const char*) override {}
  void writeHeader(int, const char*) override {}
  void writeHRule() override {}
  void beginTable(int, int, int) override {}
  void endTable(int) override {}
  void beginRow(int, int) override {}
  void endRow(int, int) override {}
  void beginCell(int, int, int) override {}
  void endCell(int, int, int) override {}
  void writeSeparatorCell(int, int, int) override {}
  int getInvertedColumnCount() override { return 6; }
  void writeInvertedBreak() override {}
  void writeCell(int, int, const char*) override {}
  void writeImage(const char*) override {}
  bool isGraphInSD() override { return true; }
  int getWidthMetric(int which) override {
    static const int widths[] = {512, 10, 8, 16, 3, 6};
    return which >= 0 && which < 6 ? widths[which] : 0;
  }
  int getHeightMetric(int which) override {
    static const int heights[] = {8, 2, 6, 3};
    return which >= 0 && which < 4 ? heights[which] : 0;
  }
  void beginGraph(int, const char*, int, int) override { ++graphs; }
  void endGraph(int, const char*) override {}
  const char* getDateFormat() override { return "%d.%m.%Y"; }
  void drawText(int, int, int, int, int, const char*) override { ++calls; }
  const char* getSDAppend(int) override { return ""; }
  int getFontHeight(int) override { return 10; }
  int getTextWidth(int, const char* text) override { return 8 * static_cast<int>(std::string(text).size()); }
  void fillArea(int, int, int, int, int, int) override { ++calls; }
  void frameArea(int, int, int, int, int, int) override { ++calls; }
  void drawRasterLine(int, int, int, int, int) override { ++calls; }
  void drawRefLine(int, int, int, int, int) override { ++calls; }
  void drawBand(int, int, int, int, int, int, int) override { ++calls; }
  void setClip(int, int, int, int) override { ++calls; }
  void drawRangeBar(int, int, int, int) override { ++calls, ++bars; }
  void drawDataLine(int, int, int, int, int) override { ++calls; }
  void drawDataArrow(int, int, int, int, int) override { ++calls; }
  void drawMark(int, int, int, bool) override { ++calls; }
};

// Keeps the paths of the graph files for removal after the timing.
class FileSink : public R_A_PageSink {
 public:
  std::vector<std::string> paths;
  void error(int, const char*) override {}
  void beginPage() override {}
  void putChar(char) override {}
  void endPage() override {}
  void graphDone(const char* path, const char*) override { paths.push_back(path); }
};

// The sample files in their binary forms, the graph, and the first proband
// for whom the graph is drawn with its target and target range.
struct Sample {
  R_File file;
  R_A_OpenSecurity security;
  std::unique_ptr<R_A_SimpleDB> database;
  R_TextGraph graph;
  const R_Proband* proband = nullptr;
  R_Number age;

  Sample() {
    if (!file.loadBinary(samplePath("knowledge.bin").c_str())) abort();
    database.reset(new R_A_SimpleDB(&security, &file, samplePath("probands.bin").c_str(), true, nullptr));
    graph.loadText(kGraph, file.getStatistics(), nullptr);
    if (!graph.isOK()) abort();
    for (int i = 0; i < database->getN() && proband == nullptr; ++i) {
      NullOutput output;
      R_Date(1, 1, 2026).getAgeFrom(age, database->getProband(i)->getDob());
      graph.write(file, *database->getProband(i), age, output);
      if (output.graphs == 1 && output.bars == 2) proband = database->getProband(i);
    }
    if (proband == nullptr) abort();
  }
};

Sample& sample() {
  static Sample* made = new Sample;
  return *made;
}

void BM_GraphToNullOutput(benchmark::State& state) {
  Sample& s = sample();
  int calls = 0;
  for (auto _ : state) {
    NullOutput output;
    s.graph.write(s.file, *s.proband, s.age, output);
    calls = output.calls;
  }
  state.counters["drawing calls"] = calls;
  state.SetItemsProcessed(state.iterations());
}

// Through the HTML output with the sample setup: a canvas of 512 pixels
// wide, saved as a BMP file in $AUX_BENCH_IMAGE_DIR, else the system's
// temporary directory. The files are removed after the timing.
void BM_GraphToBMPFile(benchmark::State& state) {
  Sample& s = sample();
  R_A_SetupFile setup(samplePath("setup.txt").c_str());
  R_A_CGIParameters parameters;
  FileSink sink;
  const char* env = std::getenv("AUX_BENCH_IMAGE_DIR");
  const std::string dir = std::string(env != nullptr && *env != '\0' ? env : P_tmpdir) + "/";
  for (auto _ : state) {
    R_A_HTMLOutput output(setup, sink, parameters);
    output.setGraphDirs(dir.c_str(), "");
    s.graph.write(s.file, *s.proband, s.age, output);
  }
  state.SetItemsProcessed(state.iterations());
  if (sink.paths.size() != static_cast<size_t>(state.iterations())) state.SkipWithError("graphs missing");
  for (const std::string& path : sink.paths) std::remove(path.c_str());
}

}  // namespace

BENCHMARK(BM_GraphToNullOutput)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_GraphToBMPFile)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
