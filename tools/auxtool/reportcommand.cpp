#include "tools/auxtool/reportcommand.h"

#include <unistd.h>

#include <cstdio>
#include <ctime>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "core/r_ascii.h"
#include "core/r_date.h"
#include "core/r_number.h"
#include "core/r_safefile.h"
#include "document/r_supertext.h"
#include "knowledge/r_file.h"
#include "output/r_a_htmloutput.h"
#include "output/r_a_pagesink.h"
#include "page/r_a_cgiparameters.h"
#include "page/r_a_clock.h"
#include "page/r_a_setupfile.h"
#include "proband/r_a_simpledb.h"
#include "proband/r_proband.h"
#include "tools/auxtool/exitcodes.h"
#include "tools/auxtool/fileloading.h"
#include "tools/auxtool/printreporter.h"
#include "tools/auxtool/randomsource.h"
#include "tools/auxtool/systemclock.h"

const char* const kReportUsage =
    "usage: auxtool report KNOWLEDGE DATABASE PROBAND TEXT [--out FILE] [--setup FILE] [--today D.M.YYYY]\n"
    "       auxtool report --list KNOWLEDGE\n"
    "  Writes the report text TEXT (a text block's id) for the proband named PROBAND\n"
    "  (the name exactly as stored) as one HTML page, with the templates of the setup\n"
    "  file (default: the built-in templates), to FILE or standard output. Graph files\n"
    "  go into the folder of FILE (with standard output, the current folder). --today\n"
    "  sets the date of today for the proband's age (default: the system clock).\n"
    "  --list prints one line per text block: its id, a tab, its title (empty for a\n"
    "  text that is only inserted). Exit 0 done, 1 a file, proband or text missing or\n"
    "  refused, 2 wrong usage.\n";

namespace {

struct ReportOptions {
  bool list = false;
  const char* knowledge = nullptr;
  const char* database = nullptr;
  const char* proband = nullptr;
  const char* text = nullptr;
  const char* out = nullptr;    // null: standard output
  const char* setup = nullptr;  // null: the built-in templates
  R_Date today;
};

// The value of an option that takes one; false when it is missing or given twice.
bool takeValue(int argc, const char* const* argv, int* i, const char** value) {
  if (*value != nullptr || ++*i >= argc) return false;
  *value = argv[*i];
  return true;
}

bool parseOptions(int argc, const char* const* argv, ReportOptions* options) {
  std::vector<const char*> positional;
  const char* today = nullptr;
  for (int i = 0; i < argc; ++i) {
    bool ok = true;
    if (strcmp(argv[i], "--list") == 0) {
      ok = !options->list;
      options->list = true;
    } else if (strcmp(argv[i], "--out") == 0) {
      ok = takeValue(argc, argv, &i, &options->out);
    } else if (strcmp(argv[i], "--setup") == 0) {
      ok = takeValue(argc, argv, &i, &options->setup);
    } else if (strcmp(argv[i], "--today") == 0) {
      ok = takeValue(argc, argv, &i, &today);
    } else if (strncmp(argv[i], "--", 2) == 0) {
      ok = false;
    } else {
      positional.push_back(argv[i]);
    }
    if (!ok) return false;
  }
  if (options->list) {
    if (positional.size() != 1 || options->out || options->setup || today) return false;
    options->knowledge = positional[0];
    return true;
  }
  if (positional.size() != 4) return false;
  options->knowledge = positional[0];
  options->database = positional[1];
  options->proband = positional[2];
  options->text = positional[3];
  if (today == nullptr) {
    options->today = systemToday();
    return true;
  }
  return options->today.parse(today);
}

void printTextList(const R_File& file) {
  for (int i = 0; i < file.getTextCount(); ++i) {
    const R_SuperText& text = *file.getText(i);
    printf("%s\t%s\n", text.getId().get(), text.getTitle().get());
  }
}

std::string lowerAscii(const char* text) {
  std::string lower(text);
  for (char& c : lower) c = R_toLower(c);
  return lower;
}

// The index of the first record named `name` exactly; -1 for none.
int findProband(const R_A_SimpleDB& database, const char* name) {
  for (int i = 0; i < database.getN(); ++i) {
    if (strcmp(database.getText(i, 0).get(), name) == 0) return i;
  }
  return -1;
}

// Tells that no record is named `name`, with the first few names that
// contain it regardless of ASCII case, as a hint at the stored spelling.
void reportMissingProband(const R_A_SimpleDB& database, const char* name) {
  static const int kHintCount = 5;
  std::string wanted = lowerAscii(name);
  std::vector<const char*> hints;
  for (int i = 0; i < database.getN() && static_cast<int>(hints.size()) < kHintCount; ++i) {
    const char* stored = database.getText(i, 0).get();
    if (lowerAscii(stored).find(wanted) != std::string::npos) hints.push_back(stored);
  }
  if (hints.empty()) {
    fprintf(stderr, "Proband \"%s\" not found\n", name);
    return;
  }
  fprintf(stderr, "Proband \"%s\" not found; names containing it:\n", name);
  for (const char* hint : hints) fprintf(stderr, "  %s\n", hint);
}

// Collects the page, so that nothing is written unless all of it was made.
class StringPageSink : public R_A_PageSink {
 public:
  void error(int code, const char* text) override {
    fprintf(stderr, "Page error %d: %s\n", code, text ? text : "");
  }
  void beginPage() override {}
  void putChar(char ch) override { page += ch; }
  void endPage() override {}
  void graphDone(const char*, const char*) override {}

  const std::string& getPage() const { return page; }

 private:
  std::string page;
};

// The folder a graph file of the page goes into, with its closing slash:
// that of `out`, or the current folder for standard output.
std::string graphFolder(const char* out) {
  if (out == nullptr) return "./";
  const char* slash = strrchr(out, '/');
  if (slash == nullptr) return "./";
  return std::string(out, slash + 1);
}

// Graph files are named from a generator, the clock's seconds and a running
// number. The engine's generator starts alike in every process, so two
// reports made in the same second into one folder would take the same names
// and overwrite each other's images; this one starts from the process id.
int processRandom() {
  static RandomSource random(static_cast<uint64_t>(getpid()) << 32 ^ static_cast<uint64_t>(time(nullptr)));
  return static_cast<int>(random.next() % 32768);
}

std::string makePage(const R_File& file, const R_SuperText& text, const R_Proband& proband,
                     const ReportOptions& options) {
  R_A_SetupFile setup(options.setup);
  // The parameters take today's date from the page clock; the report is
  // made as of --today throughout.
  R_A_fixToday(options.today);
  R_A_CGIParameters parameters;
  parameters.parse("", 0);
  StringPageSink sink;
  R_A_HTMLOutput::setNameSources(processRandom, nullptr);
  R_A_HTMLOutput output(setup, sink, parameters);
  output.setGraphDirs(graphFolder(options.out).c_str(), "");
  R_Number age;
  options.today.getAgeFrom(age, proband.getDob());
  text.write(file, proband, age, output, 0);
  return sink.getPage();
}

bool writePage(const std::string& page, const char* out) {
  if (out == nullptr) return fwrite(page.data(), 1, page.size(), stdout) == page.size() && fflush(stdout) == 0;
  R_SafeFile file(out);
  for (char c : page) file.put(static_cast<unsigned char>(c));
  return file.commit();
}

int runReport(const ReportOptions& options) {
  PrintReporter reporter(stderr);
  R_File file;
  if (!loadKnowledgeFile(file, options.knowledge, reporter)) return kExitRefused;
  if (options.list) {
    printTextList(file);
    return kExitSuccess;
  }
  int text = file.findText(options.text);
  if (text < 0) {
    fprintf(stderr, "Text \"%s\" not found\n", options.text);
    return kExitRefused;
  }
  std::unique_ptr<R_A_SimpleDB> database(openDatabase(file, options.database, reporter));
  if (!database || reporter.getCount() > 0) return kExitRefused;
  int record = findProband(*database, options.proband);
  if (record < 0) {
    reportMissingProband(*database, options.proband);
    return kExitRefused;
  }
  std::string page = makePage(file, *file.getText(text), *database->getProband(record), options);
  if (!writePage(page, options.out)) {
    fprintf(stderr, "Cannot write %s\n", options.out ? options.out : "to standard output");
    return kExitRefused;
  }
  return kExitSuccess;
}

}  // namespace

int runReportCommand(int argc, const char* const* argv) {
  ReportOptions options;
  if (!parseOptions(argc, argv, &options)) {
    fputs(kReportUsage, stderr);
    return kExitUsageError;
  }
  return runReport(options);
}
