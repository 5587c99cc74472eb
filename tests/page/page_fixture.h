// A page application over the page fixtures: the knowledge file
// tests/data/page/knowledge.xml and a copy of tests/data/page/probands.xml
// (Adam, Berta, Cyril), whose records carry the identifiers r100, r101,
// r102. The clock is fixed: today is 1.7.2020 and the order token's stamp
// comes from 24.11.2020 23:05:09.
#ifndef TESTS_PAGE_PAGE_FIXTURE_H
#define TESTS_PAGE_PAGE_FIXTURE_H

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "knowledge/r_file.h"
#include "page/r_a_cgiparameters.h"
#include "page/r_application.h"
#include "proband/r_a_security.h"
#include "proband/r_a_simpledb.h"
#include "tests/support/page_fakes.h"
#include "tests/support/test_files.h"

// Identifiers "r" and the index plus 100; client 13 is refused.
class IdSecurity : public R_A_Security {
 public:
  bool isClientAllowed(int client) override { return client != 13; }
  bool writeRecordId(int index, char* buffer) override;
  int findRecordIndex(const char* id) override;
};

// A request walked over a one-line template: the rows of
// tests/data/page/walks.txt, whose head tells their form.
struct WalkRow {
  std::string group, query, page, text, events;
  bool window_set;
  int window;
};
std::vector<WalkRow> walkRows(const std::string& file);

class PageFixture : public ::testing::Test {
 protected:
  // The token value of a fresh application: the stamp 12042 times 4096.
  static constexpr int firstOrder = 12042 * 4096;

  void SetUp() override;
  void TearDown() override;

  // Runs the query (page path and '?' allowed) as one request of client 1
  // and answers the page text; sink.events() holds the rest.
  std::string request(const std::string& query, int client = 1);
  // Writes `text` as the page "t" and requests it with `query` added, or
  // with `query` alone when it starts with a path.
  std::string walk(const std::string& query, const std::string& text);
  // The database file read afresh.
  std::unique_ptr<R_A_SimpleDB> reopen();
  std::string events() const;

  TempDir dir;
  R_File file;
  IdSecurity security;
  std::unique_ptr<R_A_SimpleDB> db;
  std::unique_ptr<R_Application> app;
  std::string pageDir;
  FakeSetup setup;
  R_A_CGIParameters parameters;
  CollectingPageSink sink;
};

#endif
