// Fakes of the page application's interfaces, for every suite that writes
// pages or reads settings and requests.
#ifndef TESTS_SUPPORT_PAGE_FAKES_H
#define TESTS_SUPPORT_PAGE_FAKES_H

#include <map>
#include <string>
#include <vector>

#include "output/r_a_pagesink.h"
#include "page/r_a_parameters.h"
#include "page/r_a_setup.h"

// Settings from two maps, code to value; a code not in them gives the default.
class FakeSetup : public R_A_Setup {
 public:
  void setInt(int code, int value) { ints[code] = value; }
  void setStr(int code, const std::string& text) { strs[code] = text; }
  int getInt(int code, int defaultValue) const override;
  const char* getStr(int code, const char* defaultText) const override;

 private:
  std::map<int, int> ints;
  std::map<int, std::string> strs;
};

// A request built by hand. encodeURL writes the URL prefix and the target
// (cut to `size` - 1 bytes) and remembers the size it was given.
class FakeParameters : public R_A_Parameters {
 public:
  void set(int index, const std::string& value) { typed[index] = value; }
  void setPage(const std::string& path) { page = path; }
  void addVar(const std::string& name, const std::string& value);
  void setClient(int number) { client = number; }
  void setToday(const R_Date& date) { today = date; }
  void setUrlPrefix(const std::string& prefix) { urlPrefix = prefix; }
  int lastUrlSize() const { return urlSize; }

  void copyValue(int index, char* buffer, int size) const override;
  const char* getPage() const override { return page.c_str(); }
  int getClient() const override { return client; }
  bool isDefined(int index) const override { return typed.count(index) != 0; }
  const char* get(int index) const override { return typed.at(index).c_str(); }
  int getVarCount() const override { return static_cast<int>(names.size()); }
  const char* getVarName(int i) const override { return names[i].c_str(); }
  const char* getVarValue(int i) const override { return values[i].c_str(); }
  R_Date getToday() const override { return today; }
  void encodeURL(const char* target, char* buffer, int size) const override;

 private:
  std::map<int, std::string> typed;
  std::string page;
  std::vector<std::string> names, values;
  int client = 0;
  R_Date today;
  std::string urlPrefix;
  mutable int urlSize = 0;
};

// Collects the page bytes of all pages in one text, and each other call as
// one line: "begin", "end", "graph path url", "error code text" ("error code"
// without a text).
class CollectingPageSink : public R_A_PageSink {
 public:
  void error(int code, const char* text) override;
  void beginPage() override { events_.push_back("begin"); }
  void putChar(char ch) override { text_ += ch; }
  void endPage() override { events_.push_back("end"); }
  void graphDone(const char* path, const char* url) override;

  const std::string& text() const { return text_; }
  const std::vector<std::string>& events() const { return events_; }
  void clear() { text_.clear(); events_.clear(); }

 private:
  std::string text_;
  std::vector<std::string> events_;
};

#endif
