// The pieces of auxserve that need no HTTP: the log line and the graph
// sweep. Options, paths and record identifiers are followed over HTTP, in
// auxserve_test.cpp.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <utime.h>

#include <string>

#include "tests/support/test_files.h"
#include "tools/auxserve/graphcleaner.h"
#include "tools/auxserve/requestlog.h"

TEST(RequestLogTest, TheLineKeepsNamesAndDropsValues) {
  const struct { std::string method, target; int status; double ms; std::string line; } rows[] = {
      {"GET", "/", 200, 1.25, "GET / 200 1.2 ms\n"},
      {"POST", "/?_cmd=new&_p_name=Nov%E1k+Jan&HEIGHT=110", 200, 12.0, "POST /?_cmd&_p_name&HEIGHT 200 12.0 ms\n"},
      {"GET", "/graphs/12.bmp", 404, 0.04, "GET /graphs/12.bmp 404 0.0 ms\n"},
      {"GET", "/?a=b=c&&d", 200, -1, "GET /?a&&d 200 - ms\n"},
      {"GET", "/x y\x01\xE1?n\x7f=1", 400, 2, "GET /x?y???n? 400 2.0 ms\n"},
      {"GET", "/" + std::string(300, 'a'), 414, 1, "GET /" + std::string(199, 'a') + " 414 1.0 ms\n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.target);
    EXPECT_EQ(row.line, logLine(row.method, row.target, row.status, row.ms));
  }
}

TEST(GraphCleanerTest, OnlyOldFilesNamedLikeGraphsGo) {
  TempDir dir;
  const time_t now = 1000000, old = now - 9999;
  // A graph being written is named *.tmp until it is complete.
  const struct { const char* name; time_t changed; bool stays; } files[] = {
      {"1.bmp", now - 301, false}, {"2.bmp", now - 300, true},      {"3.pcx", now - 10, true},  {"keep.bmp", old, true},
      {"2718281.wmf", old, false}, {"9.pcx", now - 301, false},     {".bmp", old, true},        {"12a.bmp", old, true},
      {"123.BMP", old, true},      {"123.bmp.tmp", old, true},      {"123", old, true}};
  for (const auto& row : files) {
    writeFile(dir.file(row.name), "x");
    struct utimbuf times = {row.changed, row.changed};
    utime(dir.file(row.name).c_str(), &times);
  }
  EXPECT_EQ(3, GraphCleaner(dir.path() + "/", 300).sweep(now));
  for (const auto& row : files) EXPECT_EQ(row.stays, fileExists(dir.file(row.name))) << row.name;
}
