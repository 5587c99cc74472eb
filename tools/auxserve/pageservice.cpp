#include "tools/auxserve/pageservice.h"

#include <sys/stat.h>

#include "knowledge/r_file.h"
#include "page/r_a_cgiparameters.h"
#include "page/r_a_setupfile.h"
#include "page/r_application.h"
#include "proband/r_a_fileopener.h"
#include "proband/r_a_simpledb.h"
#include "tools/auxserve/stringpagesink.h"
#include "tools/auxtool/fileloading.h"
#include "xml/r_xmlerrorreporter.h"

namespace {

// Counts what passes through, so that a load that reported anything counts
// as refused.
class CountingReporter : public R_XMLErrorReporter {
 public:
  explicit CountingReporter(R_XMLErrorReporter& target) : inner(target) {}
  void report(const char* text) override {
    inner.report(text);
    ++count;
  }
  int count = 0;

 private:
  R_XMLErrorReporter& inner;
};

void reportLine(R_XMLErrorReporter& reporter, const std::string& line) { reporter.report(line.c_str()); }

bool fileOpens(const std::string& path) {
  FILE* f = fopen(path.c_str(), "rb");
  if (!f) return false;
  fclose(f);
  return true;
}

// The name of a missing page, made harmless for HTML.
std::string escaped(const std::string& text) {
  std::string out;
  for (char ch : text) {
    if (ch == '<')
      out += "&lt;";
    else if (ch == '>')
      out += "&gt;";
    else if (ch == '&')
      out += "&amp;";
    else if (ch == '"')
      out += "&quot;";
    else
      out += ch;
  }
  return out;
}

std::string notFoundPage(const std::string& name) {
  return "<!DOCTYPE html>\n<html><head><meta charset=\"windows-1250\"><title>Page not found</title></head>\n"
         "<body><h1>Page not found</h1><p>There is no page " + escaped(name) +
         ".</p><p><a href=\"/\">Back to the list</a></p></body></html>\n";
}

}  // namespace

PageService::PageService() = default;

PageService::~PageService() {
  application.reset();
  database.reset();
  file.reset();
  setup.reset();
}

bool PageService::start(const std::string& setupPath, R_XMLErrorReporter& reporter, FILE* warnings) {
  if (!fileOpens(setupPath)) {
    reportLine(reporter, "File " + setupPath + " not found");
    return false;
  }
  setup.reset(new R_A_SetupFile(setupPath.c_str()));
  settings = readServerSettings(*setup, setupPath);
  if (settings.knowledgeFile.empty()) {
    reportLine(reporter, "Setup file " + setupPath + " names no knowledge-file-name");
    return false;
  }
  if (settings.databaseFile.empty()) {
    reportLine(reporter, "Setup file " + setupPath + " names no proband-data-file");
    return false;
  }
  file.reset(new R_File());
  if (!loadKnowledgeFile(*file, settings.knowledgeFile.c_str(), reporter)) return false;
  if (!openDatabase(reporter, warnings)) return false;
  mkdir(settings.graphDirectory.c_str(), 0777);  // an existing folder is fine
  makeApplication();
  return true;
}

bool PageService::openDatabase(R_XMLErrorReporter& reporter, FILE* warnings) {
  const char* path = settings.databaseFile.c_str();
  R_A_FileOpener::Form form = R_A_FileOpener::formOf(path);
  if (form == R_A_FileOpener::formMissing) {
    reportLine(reporter, "File " + settings.databaseFile + " not found");
    return false;
  }
  CountingReporter counting(reporter);
  database.reset(R_A_FileOpener::openDatabase(security, *file, path, form, &counting));
  security.attach(database.get());
  if (counting.count > 0 || !database->isReadWhole()) {
    reportLine(reporter, "Database file " + settings.databaseFile + " was not read whole; records read: " +
                             std::to_string(database->getN()));
    return false;
  }
  if (form == R_A_FileOpener::formXML && warnings)
    fprintf(warnings,
            "warning: %s is an XML database: every save turns a typed & into &amp;, which the next load "
            "keeps as text; keep it in the binary form (auxtool convert database ... --to bin)\n",
            path);
  return true;
}

void PageService::makeApplication() {
  application.reset(new R_Application(*database, *file));
  // The texts stay in `settings`, which outlives the application.
  application->setDateFormat(settings.dateFormat.c_str());
  application->setDefaultPage(settings.pageDefault.c_str());
  application->setImageBase(settings.imageUrlBase.c_str());
  application->setPages("/", settings.pageDirectory.c_str(), settings.pageExtension.c_str());
  application->setGraphs(settings.graphDirectory.c_str(), settings.graphUrlBase.c_str());
  application->setUserStyle("");
}

PageAnswer PageService::handle(const std::string& target) {
  // Without '?' the parser would take the path for a parameter.
  std::string query = target.find('?') == std::string::npos ? target + "?" : target;
  PageAnswer answer;
  StringPageSink sink;
  {
    std::lock_guard<std::mutex> lock(engine);
    R_A_CGIParameters parameters;
    parameters.parse(query.c_str(), RecordSecurity::kClient);
    int before = database->getN();
    application->process(parameters, sink, *setup);
    if (database->getN() != before || parameters.isCommand("del")) security.forgetRemoved();
  }
  answer.graphs = sink.getGraphCount();
  if (sink.hasPage()) {
    answer.body.swap(sink.takePage());
  } else {
    answer.status = 404;
    answer.body = notFoundPage(sink.isPageMissing() ? sink.getMissingPage() : settings.pageDefault);
  }
  return answer;
}
