// The built auxserve program over HTTP on 127.0.0.1: start and refusals,
// whole pages, files, the access token, hostile requests, clients editing
// at once, and a kill in the middle of writes. Pages are compared whole
// with texts written by hand from the fixture templates below.
#include <gtest/gtest.h>
#include <httplib.h>
#include <signal.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "knowledge/r_file.h"
#include "proband/r_a_opensecurity.h"
#include "proband/r_a_simpledb.h"
#include "tests/support/test_files.h"
#include "tests/tools/auxserve_run.h"

namespace {

const std::string kKnowledge = testData("tools/report.xml");

std::string record(const std::string& name) {
  return "<p_record><p_name>" + name + "</p_name><p_comment></p_comment><proband>"
         "<info id=\"x\" dob=\"1.1.2010\" sex=\"male\"/><data></data></proband></p_record>\n";
}

// The database of `names` in binary form at `path`, written through the
// engine's own save.
void writeDatabase(const std::string& path, const std::vector<std::string>& names) {
  std::string xml = "<p_database>\n";
  for (const std::string& name : names) xml += record(name);
  writeFile(path + ".xml", xml + "</p_database>\n");
  R_File file;
  ASSERT_TRUE(file.loadXML(kKnowledge.c_str(), nullptr));
  R_A_OpenSecurity open;
  R_A_SimpleDB db(&open, &file, (path + ".xml").c_str(), false, nullptr);
  ASSERT_EQ(static_cast<int>(names.size()), db.getN());
  ASSERT_TRUE(db.saveAs(path.c_str(), true));
}

struct DatabaseRead {
  bool whole = false;
  std::vector<std::string> names;
};

DatabaseRead readDatabase(const std::string& path) {
  R_File file;
  EXPECT_TRUE(file.loadXML(kKnowledge.c_str(), nullptr));
  R_A_OpenSecurity open;
  R_A_SimpleDB db(&open, &file, path.c_str(), true, nullptr);
  DatabaseRead read;
  read.whole = db.isReadWhole();
  for (int i = 0; i < db.getN(); ++i) read.names.push_back(db.getText(i, 0).get());
  return read;
}

// A folder with a setup, its templates and a binary database of Gamma,
// Beta and Delta; the knowledge file is the tools fixture.
struct Site {
  TempDir dir;
  std::string setup = dir.file("setup.txt");
  std::string database = dir.file("db.bin");

  explicit Site(const std::string& extra = "", const std::vector<std::string>& names = {"Gamma", "Beta", "Delta"}) {
    writeDatabase(database, names);
    mkdir(dir.file("pages").c_str(), 0777);
    writeFile(setup, "knowledge-file-name = " + kKnowledge +
                         "\nproband-data-file = db.bin\npage-directory = pages\npage-default = list\n"
                         "page-extension = .htm\ngraph-directory = graphs\ngraph-url-base = /graphs/\n"
                         "image-directory = img\nimage-url-base = /images/\n" + extra);
    page("list", "$for-each-proband $get-proband-name=$get-proband-id;$end");
    page("ids", "$for-each-selected-proband $get-proband-id $end");
    page("order", "$get-command-order");
    page("made", "$if-proband-defined $get-proband-name $else none $end");
    page("report", "$if-proband-defined [$get-proband-name] $get-text $else none $end");
  }
  void page(const std::string& name, const std::string& text) { writeFile(dir.file("pages/" + name + ".htm"), text); }
};

struct Reply {
  int status;
  std::string body;
  std::string type;
};

Reply get(int port, const std::string& target, const httplib::Headers& headers = {}) {
  httplib::Client client("127.0.0.1", port);
  client.set_read_timeout(20, 0);
  client.set_url_encode(false);  // the target goes out as written
  auto res = client.Get(target.c_str(), headers);
  if (!res) return {-1, "", ""};
  return {res->status, res->body, res->get_header_value("Content-Type")};
}

Reply post(int port, const std::string& target, const std::string& body) {
  httplib::Client client("127.0.0.1", port);
  client.set_read_timeout(20, 0);
  client.set_url_encode(false);
  auto res = client.Post(target.c_str(), body, "application/x-www-form-urlencoded");
  if (!res) return {-1, "", ""};
  return {res->status, res->body, res->get_header_value("Content-Type")};
}

const char* const kPageType = "text/html; charset=windows-1250";

}  // namespace

TEST(AuxserveTest, StartsOnlyOnWholeFilesAndRefusesAnOpenAddressWithoutAToken) {
  Site site;
  writeFile(site.dir.file("local.txt"), readFile(site.setup) + "allow-local-only = 1\n");
  writeFile(site.dir.file("noknow.txt"), "knowledge-file-name = none.xml\nproband-data-file = db.bin\n");
  writeFile(site.dir.file("nodb.txt"), "knowledge-file-name = " + kKnowledge + "\nproband-data-file = none.bin\n");
  writeFile(site.dir.file("cut.txt"), "knowledge-file-name = " + kKnowledge + "\nproband-data-file = cut.bin\n");
  std::string whole = readFile(site.database);
  writeFile(site.dir.file("cut.bin"), whole.substr(0, whole.size() - 5));
  const std::string& d = site.dir.path();
  const struct {
    std::vector<std::string> arguments;
    std::string token;
    int exit_code;
    std::string errors;
  } rows[] = {
      {{d + "/none.txt"}, "", 1, "File " + d + "/none.txt not found\n"},
      {{d + "/noknow.txt"}, "", 1, "File " + d + "/none.xml not found\n"},
      {{d + "/nodb.txt"}, "", 1, "File " + d + "/none.bin not found\n"},
      // The third record is cut short; it counts among those read.
      {{d + "/cut.txt"}, "", 1, "Database file " + d + "/cut.bin was not read whole; records read: 3\n"},
      {{site.setup, "--bind", "127.0.0.1"}, "", 1,
       "--bind needs an access token in the environment variable AUXSERVE_TOKEN\n"},
      {{site.setup, "--bind", "127.0.0.1"}, "a;b", 1,
       "AUXSERVE_TOKEN may hold printable ASCII only, without blanks and ; , \" \\\n"},
      {{d + "/local.txt", "--bind", "127.0.0.1"}, "t", 1, "--bind refused: the setup says allow-local-only = 1\n"},
      {{site.setup, "--port", "x"}, "", 2, "--port needs a number from 0 to 65535\n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.errors);
    ServerRun server;
    EXPECT_FALSE(server.start(row.arguments, row.token));
    EXPECT_EQ(row.exit_code, server.waitExit());
    EXPECT_EQ(row.errors, server.errors().substr(0, row.errors.size()));
  }
  EXPECT_EQ(whole.substr(0, whole.size() - 5), readFile(site.dir.file("cut.bin")));
}

TEST(AuxserveTest, ServesWholePagesAndEndsCleanlyWithOneLogLinePerRequest) {
  Site site;
  ServerRun server;
  ASSERT_TRUE(server.start({site.setup, "--port", "0"}));
  EXPECT_EQ("listening on http://127.0.0.1:" + std::to_string(server.port()) + "/", server.firstLine());
  const struct {
    std::string target;
    int status;
    std::string body;
  } rows[] = {
      // Identifiers are handed out in the order records are first shown.
      {"/", 200, " Beta=p1; Delta=p2; Gamma=p3;"},
      {"/?_srch=elt", 200, " Beta=p1; Delta=p2; Gamma=p3;"},  // the list shows all, searched or not
      {"/?_page=ids&_srch=elt", 200, " p2 "},
      {"/?_page=made&_p_id=p3", 200, " Gamma "},
      {"/?_page=made&_p_id=p4", 200, " none "},
      {"/?_page=made&_p_id=2", 200, " none "},  // an index is no identifier
      {"/?_page=../list", 200, " Beta=p1; Delta=p2; Gamma=p3;"},  // unsafe: the default page
      {"/?_page=nothing", 404, ""},
      {"/other", 404, "Not found\n"},
      {"/graphs/", 404, "Not found\n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.target);
    Reply reply = get(server.port(), row.target);
    EXPECT_EQ(row.status, reply.status);
    if (row.status == 200 || !row.body.empty()) {
      EXPECT_EQ(row.body, reply.body);
    }
  }
  EXPECT_EQ(0, server.stop(SIGINT));
  EXPECT_EQ("GET / 200", server.errors().substr(0, 9));
  std::string log = server.errors();
  EXPECT_NE(std::string::npos, log.find("\nGET /?_page&_p_id 200 "));
  EXPECT_NE(std::string::npos, log.find("\nGET /other 404 "));
  EXPECT_EQ(std::string::npos, log.find("Gamma"));
  int lines = 0;
  for (char ch : log) lines += ch == '\n';
  EXPECT_EQ(static_cast<int>(sizeof rows / sizeof rows[0]) + 1, lines);  // and "stopped"
  EXPECT_EQ("stopped\n", log.substr(log.size() - 8));
}

// The boy of the fixture at 1.1.2013, as `auxtool report` writes him, with
// the internal link made by the request: the page path, then _p_id, _t_id
// and _page in parameter order.
TEST(AuxserveTest, AnXmlDatabaseIsServedWithAWarningAndReportsComeWhole) {
  Site site;
  writeFile(site.database + ".report.xml", readFile(testData("tools/report_database.xml")));
  writeFile(site.dir.file("xml.txt"), readFile(site.setup) + "proband-data-file = db.bin.report.xml\n");
  ServerRun server;
  ASSERT_TRUE(server.start({site.dir.file("xml.txt"), "--port", "0", "--today", "1.1.2013"}));
  EXPECT_EQ(" p1 ", get(server.port(), "/?_page=ids&_srch=Boy+Jan").body);
  Reply reply = get(server.port(), "/?_page=report&_p_id=p1&_t_id=summary");
  EXPECT_EQ(200, reply.status);
  EXPECT_EQ(kPageType, reply.type);
  EXPECT_EQ(
      " [Boy Jan] <h1>Summary</h1><p>Height <b>now</b> <font color=red>90.0 cm</font>, target "
      "<font color=red>179.5 cm</font>; <a href=\"/?_p_id=p1&_t_id=visits&_page=report&\">(*)</a> or "
      "<a href=\"http://example.org/\">[*]</a>.</p><p>A boy.</p><p>Shared <i>note</i>.</p><hr />"
      "<center><img src=\"/images/logo.png\"></img></center>"
      "<h2>Body mass index (kg/m<sup>2</sup>)</h2><center><table border=\"1\"><tr><th>Date</th><th>Height</th>"
      "<th>&nbsp;</th><th>BMI</th></tr><tr><td>1.1.2012</td><td>86.0</td><td>&nbsp;</td><td>16.2</td></tr>"
      "<tr><td>1.7.2012</td><td>90.0</td><td>&nbsp;</td><td>&nbsp;</td></tr></table></center> ",
      reply.body);
  EXPECT_EQ(0, server.stop(SIGTERM));
  // Standard error is read on its own thread: only after the stop is all of it here.
  EXPECT_EQ(0u, server.errors().find("warning: " + site.dir.file("db.bin.report.xml") + " is an XML database"));
}

TEST(AuxserveTest, FilesComeWithTheirTypesAndNothingOutsideTheirFolders) {
  Site site;
  mkdir(site.dir.file("img").c_str(), 0777);
  writeFile(site.dir.file("img/logo.png"), "PNG bytes");
  ServerRun server;
  ASSERT_TRUE(server.start({site.setup, "--port", "0"}));
  // The graph folder is made at start.
  writeFile(site.dir.file("graphs/123.bmp"), std::string("BM\0\x01", 4));
  writeFile(site.dir.file("graphs/9.pcx"), "PCX");
  writeFile(site.dir.file("graphs/7.wmf"), "WMF");
  const struct {
    std::string target;
    int status;
    std::string type, body;
  } rows[] = {
      {"/graphs/123.bmp", 200, "image/bmp", std::string("BM\0\x01", 4)},
      {"/graphs/9.pcx", 200, "image/x-pcx", "PCX"},
      {"/graphs/7.wmf", 200, "image/wmf", "WMF"},
      {"/images/logo.png", 200, "image/png", "PNG bytes"},
      {"/graphs/124.bmp", 404, "", ""},
      {"/graphs/../setup.txt", 404, "", ""},
      {"/graphs/..%2fsetup.txt", 404, "", ""},
      {"/graphs/%2e%2e/setup.txt", 404, "", ""},
      {"/images/../db.bin", 404, "", ""},
      {"/graphs/123.bmp%00.txt", 400, "", ""},
      {"/%00", 400, "", ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.target);
    Reply reply = get(server.port(), row.target);
    EXPECT_EQ(row.status, reply.status);
    if (row.status != 200) continue;
    EXPECT_EQ(row.type, reply.type);
    EXPECT_EQ(row.body, reply.body);
  }
  EXPECT_EQ(0, server.stop(SIGTERM));
}

// "u:sesame" is dTpzZXNhbWU= and "u:wrong" dTp3cm9uZw== in base 64.
TEST(AuxserveTest, WithATokenEveryRequestMustShowIt) {
  Site site;
  ServerRun server;
  ASSERT_TRUE(server.start({site.setup, "--port", "0", "--bind", "127.0.0.1"}, "sesame"));
  const struct {
    std::string target;
    httplib::Headers headers;
    int status;
  } rows[] = {
      {"/", {}, 401},
      {"/graphs/1.bmp", {}, 401},
      {"/", {{"Authorization", "Basic dTp3cm9uZw=="}}, 401},
      {"/", {{"Cookie", "auxserve_token=sesam"}}, 401},
      {"/", {{"Authorization", "Basic dTpzZXNhbWU="}}, 200},
      {"/", {{"Cookie", "auxserve_token=sesame"}}, 200},
      {"/login", {}, 200},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.target + " " + std::to_string(row.status));
    Reply reply = get(server.port(), row.target, row.headers);
    EXPECT_EQ(row.status, reply.status);
    if (row.status == 401) {
      EXPECT_EQ(std::string::npos, reply.body.find("Beta"));
    }
  }
  httplib::Client client("127.0.0.1", server.port());
  auto wrong = client.Post("/login", "token=sesam", "application/x-www-form-urlencoded");
  ASSERT_TRUE(wrong);
  EXPECT_EQ(401, wrong->status);
  EXPECT_FALSE(wrong->has_header("Set-Cookie"));
  auto right = client.Post("/login", "token=sesame", "application/x-www-form-urlencoded");
  ASSERT_TRUE(right);
  EXPECT_EQ(303, right->status);
  EXPECT_EQ("auxserve_token=sesame; Path=/; HttpOnly; SameSite=Strict", right->get_header_value("Set-Cookie"));
  EXPECT_EQ(0, server.stop(SIGTERM));
}

TEST(AuxserveTest, HostileRequestsAreRefusedOrReadAndTheServerGoesOn) {
  Site site;
  ServerRun server;
  ASSERT_TRUE(server.start({site.setup, "--port", "0"}));
  std::string many = "/?_page=ids";
  for (int i = 0; i < 1000; ++i) many += "&a=1";  // 4 000 bytes, below the 8 192 of a target
  many += "&_srch=amm";  // behind 1 000 free pairs, still a typed parameter
  const struct {
    std::string target, body;
    int status;
    std::string page;
  } rows[] = {
      {"/?_page=ids&_srch=" + std::string(100 * 1024, 'a'), "", 414, ""},
      // A form body has a limit of its own, 8 192 bytes.
      {"/?_page=ids", "_srch=" + std::string(100 * 1024, 'a'), 413, ""},
      // "aaa" matches nobody, so everybody shows.
      {"/?_page=ids", "_srch=" + std::string(8000, 'a'), 200, " p1  p2  p3 "},
      {"/?_page=ids&_srch=%zz%u12%", "", 200, " p1  p2  p3 "},
      {"/?_page=ids&_srch=%4", "", 200, " p1  p2  p3 "},
      {"/?_page=made&_p_id=%70%31", "", 200, " Beta "},  // p1 spelled in escapes
      {"/?%=%&=&&&_page=ids&_srch=%u0044", "", 200, " p2 "},  // %u0044 is D
      {many, "", 200, " p3 "},
      {"/?_page=ids&_srch=G%00amma", "", 200, " p3 "},  // a NUL in a value is dropped
  };
  get(server.port(), "/");  // hands out p1 to p3
  for (const auto& row : rows) {
    SCOPED_TRACE(row.target.substr(0, 60));
    Reply reply = row.body.empty() ? get(server.port(), row.target) : post(server.port(), row.target, row.body);
    EXPECT_EQ(row.status, reply.status);
    if (row.status == 200) {
      EXPECT_EQ(row.page, reply.body);
    }
  }
  EXPECT_EQ(" Beta=p1; Delta=p2; Gamma=p3;", get(server.port(), "/").body);
  EXPECT_EQ(0, server.stop(SIGTERM));
}

// Each client reads the order token and adds its records; a token that
// another client used first is stale, shows the page unchanged, and the
// client tries again. Every record must then be in the file.
TEST(AuxserveTest, ClientsEditingAtOnceLoseNothing) {
  Site site;
  ServerRun server;
  ASSERT_TRUE(server.start({site.setup, "--port", "0"}));
  ASSERT_EQ(" Beta=p1; Delta=p2; Gamma=p3;", get(server.port(), "/").body);
  const int kClients = 4, kEach = 8, kTries = 400;
  std::atomic<int> made(0), refused(0);
  std::vector<std::thread> clients;
  for (int c = 0; c < kClients; ++c) {
    clients.emplace_back([&, c] {
      for (int k = 0; k < kEach; ++k) {
        std::string name = "Client" + std::to_string(c) + "x" + std::to_string(k);
        for (int t = 0; t < kTries; ++t) {
          std::string order = get(server.port(), "/?_page=order").body;
          Reply reply = post(server.port(), "/", "_cmd=new&_order=" + order + "&_p_name=" + name +
                                                     "&_p_sex=F&_page=made");
          if (reply.body == " " + name + " ") {
            ++made;
            break;
          }
          ++refused;
        }
      }
    });
  }
  for (std::thread& client : clients) client.join();
  EXPECT_EQ(kClients * kEach, made.load());
  // A repeated form changes nothing: the token it carries is spent.
  std::string order = get(server.port(), "/?_page=order").body;
  EXPECT_EQ(" Zed ", post(server.port(), "/", "_cmd=new&_order=" + order + "&_p_name=Zed&_p_sex=M&_page=made").body);
  EXPECT_EQ(" none ", post(server.port(), "/", "_cmd=new&_order=" + order + "&_p_name=Zed&_p_sex=M&_page=made").body);
  // Identifiers handed out before 33 records came in still name their
  // records; the one of a deleted record names nobody.
  EXPECT_EQ(" Gamma ", get(server.port(), "/?_page=made&_p_id=p3").body);
  order = get(server.port(), "/?_page=order").body;
  EXPECT_EQ(" none ", post(server.port(), "/", "_cmd=del&_order=" + order + "&_p_id=p2&_page=made").body);
  EXPECT_EQ(" none ", get(server.port(), "/?_page=made&_p_id=p2").body);
  EXPECT_EQ(" Gamma ", get(server.port(), "/?_page=made&_p_id=p3").body);
  EXPECT_EQ(" Beta ", get(server.port(), "/?_page=made&_p_id=p1").body);
  EXPECT_EQ(0, server.stop(SIGTERM));

  DatabaseRead read = readDatabase(site.database);
  EXPECT_TRUE(read.whole);
  std::vector<std::string> expected = {"Beta"};
  for (int c = 0; c < kClients; ++c)
    for (int k = 0; k < kEach; ++k) expected.push_back("Client" + std::to_string(c) + "x" + std::to_string(k));
  for (const char* name : {"Gamma", "Zed"}) expected.push_back(name);
  EXPECT_EQ(expected, read.names);
}

// The save writes a temporary file and renames it: whenever the kill
// comes, the database is the old or a newer one, whole.
TEST(AuxserveTest, AKillInTheMiddleOfWritesLeavesAWholeDatabase) {
  std::vector<std::string> names;
  for (int i = 0; i < 3000; ++i) names.push_back("Proband " + std::to_string(10000 + i));
  Site site("", names);
  size_t last = names.size();
  for (int round = 0; round < 3; ++round) {
    SCOPED_TRACE(round);
    ServerRun server;
    ASSERT_TRUE(server.start({site.setup, "--port", "0"}));
    std::atomic<bool> go(true);
    std::atomic<int> sent(0);
    std::thread writer([&] {
      for (int k = 0; k < 2000 && go; ++k) {
        std::string order = get(server.port(), "/?_page=order").body;
        post(server.port(), "/", "_cmd=new&_order=" + order + "&_p_name=K" + std::to_string(k) + "&_p_sex=M");
        ++sent;
      }
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(150 + 100 * round));
    EXPECT_EQ(128 + SIGKILL, server.stop(SIGKILL));
    go = false;
    writer.join();
    EXPECT_GT(sent.load(), 0);
    DatabaseRead read = readDatabase(site.database);
    EXPECT_TRUE(read.whole);
    EXPECT_GE(read.names.size(), last);
    last = read.names.size();
  }
  EXPECT_GT(last, names.size());  // the kills came while records were being added
}
