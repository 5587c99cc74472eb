// Page templates: any bytes walked as a page over the page test fixtures
// (tests/data/page: the knowledge file and a database of one proband with
// one visit, so that no loop runs more than twice and deep nesting stays
// cheap). Each input is requested as a page in several contexts: no
// proband, the proband with its visit and a text, the temporary proband,
// a search that finds nobody; and walked straight from memory at every
// depth. A page must come whole: one beginPage, one endPage, only error
// codes 1, 2 and 4, and no command changes the database.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "fuzz/fuzz_support.h"
#include "knowledge/r_file.h"
#include "output/r_a_pagesink.h"
#include "page/r_a_cgiparameters.h"
#include "page/r_a_parser.h"
#include "page/r_a_setupfile.h"
#include "page/r_application.h"
#include "proband/r_a_security.h"
#include "proband/r_a_simpledb.h"

namespace {

class IdSecurity : public R_A_Security {
 public:
  bool isClientAllowed(int) override { return true; }
  bool writeRecordId(int index, char* buffer) override {
    snprintf(buffer, 32, "r%d", index);
    return true;
  }
  int findRecordIndex(const char* id) override { return id[0] == 'r' ? atoi(id + 1) : -1; }
};

class CheckingSink : public R_A_PageSink {
 public:
  void error(int code, const char* text) override {
    FUZZ_CHECK(code == 1 || code == 2 || code == 4);
    FUZZ_CHECK((code == 4) == (text != nullptr));
    if (text) FUZZ_CHECK(strlen(text) <= static_cast<size_t>(R_A_Parser::maxNameLength));
  }
  void beginPage() override { ++begins; }
  void putChar(char) override { ++bytes; }
  void endPage() override { ++ends; }
  void graphDone(const char*, const char*) override {}
  int begins = 0, ends = 0;
  long long bytes = 0;
};

struct World {
  World() : setup("") {
    std::string data = AUX_FUZZ_TEST_DATA_DIR "/page/";
    if (!file.loadXML((data + "knowledge.xml").c_str(), nullptr)) fuzzFailure(__FILE__, __LINE__, "knowledge");
    db = new R_A_SimpleDB(&security, &file, (data + "fuzz_probands.xml").c_str(), false, nullptr);
    if (db->getN() != 1) fuzzFailure(__FILE__, __LINE__, "database");
    app = new R_Application(*db, file);
    pageDir = std::string(scratchPath("pages")) + "-";
    graphDir = std::string(scratchPath("graphs")) + "-";
    app->setPages("base/", pageDir.c_str(), ".htm");
    app->setGraphs(graphDir.c_str(), "graphs/");
    app->setImageBase("img/");
    app->setDefaultPage("t");
  }
  R_File file;
  IdSecurity security;
  R_A_SimpleDB* db;
  R_Application* app;
  R_A_SetupFile setup;
  std::string pageDir, graphDir;
};

World& world() {
  static World* w = new World();
  return *w;
}

const char* const requests[] = {
    "",
    "_p_id=r0&_m_id=0&_t_id=summary",
    "/temp?_p_sex=F&_p_name=T&_AGE=3&HEIGHT=95&MENARCHE=1&BIRTH=1",
    "_srch=nobody&_top=7&_t_id=boys",
    "_p_id=r0&_cmd=del&_order=1",
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  World& w = world();
  std::string page = w.pageDir + "t.htm";
  FILE* out = fopen(page.c_str(), "wb");
  if (!out) return 0;
  fwrite(data, 1, size, out);
  fclose(out);

  for (const char* query : requests) {
    R_A_CGIParameters parameters;
    parameters.parse(query, 0);
    CheckingSink sink;
    FUZZ_CHECK(w.app->process(parameters, sink, w.setup));
    FUZZ_CHECK(sink.begins == 1 && sink.ends == 1);
    FUZZ_CHECK(w.db->getN() == 1);
  }
  R_A_CGIParameters parameters;
  parameters.parse("_p_id=r0", 0);
  for (int depth : {0, 15, 16, 17}) {
    R_A_Parser parser(reinterpret_cast<const char*>(data), static_cast<int>(size));
    CheckingSink sink;
    w.app->walk(parameters, sink, parser, w.setup, depth);
    FUZZ_CHECK(depth <= 16 || sink.bytes == 0);
  }
  return 0;
}
