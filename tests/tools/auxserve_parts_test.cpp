// The pieces of auxserve that need no HTTP: record identifiers, the log
// line, the graph sweep and the options.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <utime.h>

#include <string>

#include "knowledge/r_file.h"
#include "proband/r_a_simpledb.h"
#include "tests/support/test_files.h"
#include "tools/auxserve/graphcleaner.h"
#include "tools/auxserve/recordsecurity.h"
#include "tools/auxserve/requestlog.h"
#include "tools/auxserve/serveroptions.h"

namespace {

std::string record(const char* name) {
  return std::string("<p_record><p_name>") + name + "</p_name><p_comment></p_comment><proband>"
         "<info id=\"x\" dob=\"1.1.2010\" sex=\"male\"/><data></data></proband></p_record>\n";
}

std::string idOf(RecordSecurity& security, int index) {
  char buffer[RecordSecurity::kIdSize];
  security.writeRecordId(index, buffer);
  return buffer;
}

}  // namespace

// Beta, Delta, Gamma in name order; an unnamed record sorts before them all.
TEST(RecordSecurityTest, AnIdentifierFollowsItsRecordThroughInsertsRenamesAndRemovals) {
  TempDir dir;
  writeFile(dir.file("db.xml"), "<p_database>\n" + record("Gamma") + record("Beta") + record("Delta") + "</p_database>\n");
  R_File file;
  ASSERT_TRUE(file.loadXML(testData("tools/report.xml").c_str(), nullptr));
  RecordSecurity security;
  R_A_SimpleDB db(&security, &file, dir.file("db.xml").c_str(), false, nullptr);
  security.attach(&db);
  ASSERT_EQ(3, db.getN());

  EXPECT_EQ("p1", idOf(security, 0));  // Beta
  EXPECT_EQ("p2", idOf(security, 2));  // Gamma
  EXPECT_EQ("p1", idOf(security, 0));  // shown again: the same identifier

  int added = db.addRecord(1);
  EXPECT_EQ(0, added);
  EXPECT_EQ(1, security.findRecordIndex("p1"));  // Beta moved one down
  EXPECT_EQ(3, security.findRecordIndex("p2"));

  int beta = 1;
  db.setText(beta, 0, "Zeta");  // "", Delta, Gamma, Zeta
  EXPECT_EQ(3, beta);
  EXPECT_EQ(3, security.findRecordIndex("p1"));
  EXPECT_EQ(2, security.findRecordIndex("p2"));

  for (int i = 0; i < db.getN(); ++i) db.setSelected(i, i == 2);
  db.removeBySelection(true);  // Gamma goes
  security.forgetRemoved();
  EXPECT_EQ(-1, security.findRecordIndex("p2"));
  EXPECT_EQ(2, security.findRecordIndex("p1"));
  EXPECT_EQ(1, security.getKnownCount());
  EXPECT_EQ("p3", idOf(security, 0));  // a new serial, never a freed one

  for (const char* id : {"", "p", "px", "1", "2", "p0", "p99", "p1x", "P1", "p-1", "p 1"})
    EXPECT_EQ(-1, security.findRecordIndex(id)) << id;
  char buffer[RecordSecurity::kIdSize] = "junk";
  EXPECT_FALSE(security.writeRecordId(-1, buffer));
  EXPECT_STREQ("", buffer);
  EXPECT_FALSE(security.writeRecordId(db.getN(), buffer));
  EXPECT_TRUE(security.isClientAllowed(RecordSecurity::kClient));
  EXPECT_FALSE(security.isClientAllowed(0));
}

TEST(RequestLogTest, TheLineKeepsNamesAndDropsValues) {
  const struct {
    std::string method, target;
    int status;
    double ms;
    std::string line;
  } rows[] = {
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
  for (const char* name : {".bmp", "12a.bmp", "123.BMP", "123.bmp.tmp", "123"})
    EXPECT_FALSE(GraphCleaner::isGraphName(name)) << name;
  TempDir dir;
  const time_t now = 1000000;
  const struct {
    const char* name;
    time_t changed;
    bool stays;
  } files[] = {{"1.bmp", now - 301, false}, {"2.bmp", now - 300, true},        {"3.pcx", now - 10, true},
               {"keep.bmp", now - 9999, true}, {"2718281.wmf", now - 9999, false}, {"9.pcx", now - 301, false}};
  for (const auto& row : files) {
    writeFile(dir.file(row.name), "x");
    struct utimbuf times = {row.changed, row.changed};
    utime(dir.file(row.name).c_str(), &times);
  }
  EXPECT_EQ(3, GraphCleaner(dir.path() + "/", 300).sweep(now));
  for (const auto& row : files) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.stays, fileExists(dir.file(row.name)));
  }
}

TEST(ServerOptionsTest, ArgumentsAndPathsBesideTheSetup) {
  const struct {
    std::vector<const char*> args;
    std::string setup, bind, error;
    int port;
  } rows[] = {
      {{"auxserve"}, "auxserve.txt", "", "", -1},
      {{"auxserve", "--bind", "0.0.0.0", "--port", "0", "a/b.txt"}, "a/b.txt", "0.0.0.0", "", 0},
      {{"auxserve", "--port", "65536"}, "", "", "--port needs a number from 0 to 65535", 0},
      {{"auxserve", "--today", "31.2"}, "", "", "--today needs a date D.M.YYYY", 0},
      {{"auxserve", "a.txt", "b.txt"}, "", "", "only one setup file", 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.args.back());
    ServerOptions options;
    std::string error;
    bool ok = parseServerOptions(static_cast<int>(row.args.size()), row.args.data(), options, error);
    EXPECT_EQ(row.error, error);
    if (!ok) continue;
    EXPECT_EQ(row.setup + " " + row.bind + " " + std::to_string(row.port),
              options.setupPath + " " + options.bind + " " + std::to_string(options.port));
  }

  EXPECT_EQ("samples/pages /srv/db.bin db.bin /etc/../x",
            resolveBeside("samples/auxserve.txt", "pages") + " " + resolveBeside("samples/auxserve.txt", "/srv/db.bin") +
                " " + resolveBeside("auxserve.txt", "db.bin") + " " + resolveBeside("/etc/s.txt", "../x"));
  std::string mounts;
  for (const char* url : {"/graphs/", "graphs/", "/a/b//", "/", "http://cdn.example/graphs/", "//cdn.example/g/"})
    mounts += "[" + mountPointOf(url) + "]";
  EXPECT_EQ("[/graphs][/graphs][/a/b][][][]", mounts);
}
