#include "tests/page/page_fixture.h"
constexpr int PageFixture::firstOrder;

#include <stdio.h>
#include <stdlib.h>

#include <sstream>

#include "output/r_a_htmloutput.h"
#include "page/r_a_clock.h"

bool IdSecurity::writeRecordId(int index, char* buffer) {
  sprintf(buffer, "r%d", index + 100);
  return true;
}

int IdSecurity::findRecordIndex(const char* id) { return id[0] == 'r' ? atoi(id + 1) - 100 : -1; }

std::vector<WalkRow> walkRows(const std::string& file) {
  std::vector<WalkRow> rows;
  std::string group, query;
  bool window_set = false;
  int window = 0;
  std::istringstream in(readFile(testData(file)));
  for (std::string line; std::getline(in, line);) {
    if (line.empty()) continue;
    const std::string rest = line.size() > 2 ? line.substr(2) : "";
    if (line.rfind("== ", 0) == 0) group = line.substr(3);
    if (line[0] == '?') query = rest;
    if (line[0] == '@') window_set = true, window = std::stoi(rest);
    if (line[0] == '<') rows.push_back({group, query, rest, "", "begin;end;", window_set, window}), query.clear();
    if (line[0] == '>') rows.back().text = rest;
    if (line[0] == '!') rows.back().events = rest;
  }
  EXPECT_FALSE(rows.empty()) << file;
  return rows;
}

void PageFixture::SetUp() {
  R_A_fixToday(R_Date(1, 7, 2020));
  R_A_LocalTime now{120, 10, 24, 23, 5, 9};
  R_A_fixNow(&now);
  R_A_HTMLOutput::resetProcessState();
  ASSERT_TRUE(file.loadXML(testData("page/knowledge.xml").c_str(), nullptr));
  writeFile(dir.file("db.xml"), readFile(testData("page/probands.xml")));
  db = reopen();
  ASSERT_EQ(3, db->getN());
  app.reset(new R_Application(*db, file));
  pageDir = dir.path() + "/";
  app->setPages("http://pages/", pageDir.c_str(), ".htm");
  app->setImageBase("img/");
  app->setUserStyle("b<i>");
  app->setDefaultPage("main");
  writeFile(dir.file("main.htm"), "main");
}

void PageFixture::TearDown() {
  R_A_fixToday(R_Date());
  R_A_fixNow(nullptr);
}

std::string PageFixture::request(const std::string& query, int client) {
  sink.clear();
  parameters.parse(query.c_str(), client);
  app->process(parameters, sink, setup);
  return sink.text();
}

std::string PageFixture::walk(const std::string& query, const std::string& text) {
  writeFile(dir.file("t.htm"), text);
  return request(query.rfind('/', 0) == 0 ? query : "_page=t&" + query);
}

std::unique_ptr<R_A_SimpleDB> PageFixture::reopen() {
  return std::unique_ptr<R_A_SimpleDB>(
      new R_A_SimpleDB(&security, &file, dir.file("db.xml").c_str(), false, nullptr));
}

std::string PageFixture::events() const {
  std::string all;
  for (const std::string& event : sink.events()) all += event + ";";
  return all;
}
