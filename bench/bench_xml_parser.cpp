// Throughput of the XML reader on a generated proband database of some tens
// of megabytes: each record is captured by the outer parse, and in the
// nested case also parsed again, as the loaders do.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "xml/r_xmlparser.h"
#include "xml/r_xmlrecipient.h"

namespace {

const int kRecords = 60000;

void appendVisit(std::string& out, int record, int visit) {
  char text[256];
  snprintf(text, sizeof text,
           "   <p_visit date=\"%02d.%02d.%04d\">\n"
           "    <v id=\"HEIGHT\">%d.%d</v>\n"
           "    <v id=\"WEIGHT\">%d.%d</v>\n"
           "    <v id=\"HEAD\">%d.%d</v>\n"
           "   </p_visit>\n",
           1 + record % 28, 1 + visit, 2000 + visit, 80 + (record + visit * 7) % 90, record % 10,
           10 + record % 50, visit, 45 + record % 10, (record + visit) % 10);
  out += text;
}

void appendRecord(std::string& out, int record) {
  char text[512];
  snprintf(text, sizeof text,
           " <p_record>\n"
           "  <p_name>Proband \xC8\xED" "slo %d</p_name>\n"
           "  <p_birth>%02d.%02d.%04d</p_birth>\n"
           "  <p_sex>%d</p_sex>\n"
           "  <p_anamnestic>\n"
           "   <v id=\"MOTHER_HEIGHT\">%d.5</v>\n"
           "   <v id=\"FATHER_HEIGHT\">%d.0</v>\n"
           "  </p_anamnestic>\n",
           record, 1 + record % 28, 1 + record % 12, 1995 + record % 20, record % 2,
           150 + record % 30, 165 + record % 30);
  out += text;
  for (int visit = 0; visit < 3; ++visit) appendVisit(out, record, visit);
  out += " </p_record>\n";
}

// The database file, written once per program run and removed at exit.
class DatabaseFile {
 public:
  DatabaseFile() {
    const char* base = getenv("TMPDIR");
    path_ = std::string(base && *base ? base : "/tmp") + "/bench_xml_XXXXXX";
    int fd = mkstemp(&path_[0]);
    if (fd < 0) abort();
    std::string text =
        "<?xml version='1.0' encoding=\"Windows-1250\" standalone=\"no\"?>\n"
        "<!DOCTYPE p_database>\n<p_database>\n";
    for (int record = 0; record < kRecords; ++record) appendRecord(text, record);
    text += "</p_database>\n";
    if (write(fd, text.data(), text.size()) != static_cast<ssize_t>(text.size())) abort();
    close(fd);
    size_ = static_cast<int64_t>(text.size());
  }
  ~DatabaseFile() { unlink(path_.c_str()); }
  const char* path() const { return path_.c_str(); }
  int64_t size() const { return size_; }

 private:
  std::string path_;
  int64_t size_;
};

const DatabaseFile& database() {
  static DatabaseFile file;
  return file;
}

// Takes the tag table for the duration of one parse.
class TableRecipient : public R_XMLRecipient {
 public:
  bool parseFile(const char* path, const char* const* tags, int count) {
    R_XMLParser parser(R_XMLParser::captureSize, nullptr);
    setTable(tags, count);
    bool ok = parser.parseFile(path, this);
    clearTags();
    return ok;
  }
  bool parseString(const char* text, const char* const* tags, int count) {
    R_XMLParser parser(R_XMLParser::captureSize, nullptr);
    setTable(tags, count);
    bool ok = parser.parseString(text, this);
    clearTags();
    return ok;
  }

 private:
  void setTable(const char* const* tags, int count) {
    setTagCount(count);
    for (int i = 0; i < count; ++i) setTag(i, tags[i]);
  }
};

// Counts the values of one record, read from its captured text.
class RecordReader : public TableRecipient {
 public:
  const char* receive(int, const char* text, const R_XMLParameters&) override {
    bytes += static_cast<int64_t>(strlen(text));
    return nullptr;
  }
  int64_t bytes = 0;
};

const char* const kRecordTags[] = {"p_name", "p_birth", "p_sex", "p_anamnestic:v", "p_visit:v"};

// Captures every record; with `nested`, parses each record's text again.
class DatabaseReader : public TableRecipient {
 public:
  explicit DatabaseReader(bool nested_parse) : nested(nested_parse) {}
  const char* receive(int, const char* text, const R_XMLParameters&) override {
    ++records;
    if (nested && !inner.parseString(text, kRecordTags, 5)) return "record load error";
    return nullptr;
  }
  bool nested;
  int records = 0;
  RecordReader inner;
};

const char* const kDatabaseTags[] = {"p_database:p_record"};

void runDatabase(benchmark::State& state, bool nested) {
  const DatabaseFile& file = database();
  for (auto _ : state) {
    DatabaseReader reader(nested);
    if (!reader.parseFile(file.path(), kDatabaseTags, 1) || reader.records != kRecords) {
      state.SkipWithError("the database did not parse");
      return;
    }
    benchmark::DoNotOptimize(reader.inner.bytes);
  }
  state.SetBytesProcessed(state.iterations() * file.size());
}

void BM_ParseFileCapturingRecords(benchmark::State& state) { runDatabase(state, false); }
void BM_ParseFileAndEachRecord(benchmark::State& state) { runDatabase(state, true); }

BENCHMARK(BM_ParseFileCapturingRecords)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ParseFileAndEachRecord)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
