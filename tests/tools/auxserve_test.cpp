// The built auxserve program over HTTP on 127.0.0.1: start and refusals,
// whole pages, files, the access token, hostile requests, clients editing
// at once, and a kill in the middle of writes. Pages are compared whole
// with texts written by hand from the fixture templates below.
#include <gtest/gtest.h>
#include <httplib.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/test_files.h"

namespace {

const std::string kKnowledge = testData("tools/report.xml");

// The built auxserve, started with arguments and an optional access token
// (env takes the inherited one out or puts ours in). Its output goes to
// files of its own folder, so standard error is there whole once it ended.
// Every wait is bounded: 20 s, then the program is killed.
class ServerRun {
 public:
  ~ServerRun() { stop(SIGKILL); }
  // True once the program said where it listens; false when it ended first.
  bool start(std::vector<std::string> arguments, const std::string& token = "") {
    std::vector<std::string> words = {"env", "-u", "AUXSERVE_TOKEN"};
    if (!token.empty()) words.push_back("AUXSERVE_TOKEN=" + token);
    words.push_back(std::string(AUX_BIN_DIR) + "/auxserve");
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(&word[0]);
    argv.push_back(nullptr);
    const std::string out = dir.file("out"), err = dir.file("err");
    if ((pid = fork()) == 0) {
      dup2(open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 1);
      dup2(open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 2);
      execv("/usr/bin/env", argv.data());
      _exit(127);
    }
    for (int i = 0; i < 1000 && first_line.find('\n') == std::string::npos && !ended(); ++i) {
      usleep(20000);
      first_line = readFile(out);
    }
    first_line = first_line.substr(0, first_line.find('\n'));
    port = first_line.compare(0, 13, "listening on ") == 0 ? atoi(first_line.c_str() + first_line.rfind(':') + 1) : -1;
    return port > 0;
  }
  // Sends `signal` (none for 0) and waits for the end: the exit code, 128 +
  // the signal that ended it, or -1 when it had to be killed.
  int stop(int signal) {
    if (pid > 0 && signal != 0) kill(pid, signal);
    for (int i = 0; i < 1000 && !ended(); ++i) usleep(20000);
    if (pid > 0 && kill(pid, SIGKILL) == 0 && waitpid(pid, nullptr, 0) == pid) pid = exit_code = -1;
    return exit_code;
  }
  int waitExit() { return stop(0); }
  std::string errors() const { return readFile(dir.file("err")); }

  int port = -1;
  std::string first_line;

 private:
  bool ended() {
    int status = 0;
    if (pid <= 0 || waitpid(pid, &status, WNOHANG) != pid) return pid <= 0;
    exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    pid = -1;
    return true;
  }

  TempDir dir;
  int pid = -1, exit_code = -1;
};


// The names in the database at `path`, as `auxtool calc` lists them: it
// refuses a database that was not read whole.
std::vector<std::string> readDatabase(const std::string& path, bool* whole) {
  int status = -1;
  std::istringstream lines(runCommand(AUX_BIN_DIR "/auxtool calc " + kKnowledge + " " + path + " 1", &status));
  *whole = status == 0;
  std::vector<std::string> names;
  for (std::string line; std::getline(lines, line);) names.push_back(line.substr(0, line.find(',')));
  if (!names.empty()) names.erase(names.begin());  // the head
  return names;
}

// A folder with a setup, its templates and a binary database of `names`
// (written by auxtool); the knowledge file is the tools fixture.
struct Site {
  TempDir dir;
  std::string setup = dir.file("setup.txt"), database = dir.file("db.bin");

  explicit Site(const std::vector<std::string>& names = {"Gamma", "Beta", "Delta"}) {
    std::string xml = "<p_database>\n";
    for (const std::string& name : names)
      xml += "<p_record><p_name>" + name + "</p_name><proband><info dob=\"1.1.2010\" sex=\"male\"/></proband>"
             "</p_record>\n";
    writeFile(dir.file("db.xml"), xml + "</p_database>\n");
    int status = -1;
    runCommand(std::string(AUX_BIN_DIR) + "/auxtool convert database " + kKnowledge + " " + dir.file("db.xml") +
                   " " + database + " --to bin",
               &status);
    EXPECT_EQ(0, status);
    mkdir(dir.file("pages").c_str(), 0777);
    writeFile(setup, "knowledge-file-name = " + kKnowledge +
                         "\nproband-data-file = db.bin\npage-directory = pages\npage-default = list\n"
                         "page-extension = .htm\ngraph-directory = graphs\ngraph-url-base = /graphs/\n"
                         "image-directory = img\nimage-url-base = /images/\n");
    const char* const pages[][2] = {{"list", "$for-each-proband $get-proband-name=$get-proband-id;$end"},
                                    {"ids", "$for-each-selected-proband $get-proband-id $end"},
                                    {"order", "$get-command-order"},
                                    {"made", "$if-proband-defined $get-proband-name $else none $end"},
                                    {"report", "$if-proband-defined [$get-proband-name] $get-text $else none $end"}};
    for (const auto& page : pages) writeFile(dir.file("pages/") + page[0] + ".htm", page[1]);
  }
  // A copy of the setup with `extra` lines after it, by name.
  std::string setupWith(const std::string& name, const std::string& extra) {
    writeFile(dir.file(name), readFile(setup) + extra);
    return dir.file(name);
  }
};

struct Reply { int status; std::string body, type, cookie; };

// A GET, or a form POST when `form` is given; the target goes out as written.
Reply request(int port, const std::string& target, const std::string& form = "", const httplib::Headers& headers = {}) {
  httplib::Client client("127.0.0.1", port);
  client.set_read_timeout(20, 0);
  client.set_url_encode(false);
  auto res = form.empty() ? client.Get(target.c_str(), headers)
                          : client.Post(target.c_str(), headers, form, "application/x-www-form-urlencoded");
  if (!res) return {-1, "", "", ""};
  return {res->status, res->body, res->get_header_value("Content-Type"), res->get_header_value("Set-Cookie")};
}

// Adds a proband through the form with a fresh order token; the page "made" shows it.
Reply addProband(int port, const std::string& name, const std::string& order = "") {
  return request(port, "/", "_cmd=new&_order=" + (order.empty() ? request(port, "/?_page=order").body : order) +
                                "&_p_name=" + name + "&_p_sex=F&_page=made");
}

}  // namespace

TEST(AuxserveTest, StartsOnlyOnWholeFilesAndRefusesAnOpenAddressWithoutAToken) {
  Site site;
  const std::string& d = site.dir.path();
  std::string whole = readFile(site.database);
  writeFile(d + "/cut.bin", whole.substr(0, whole.size() - 5));
  const std::string local = site.setupWith("local.txt", "allow-local-only = 1\n");
  const std::string none = site.setupWith("noknow.txt", "knowledge-file-name = none.xml\n");
  const std::string nodb = site.setupWith("nodb.txt", "proband-data-file = none.bin\n");
  const std::string cut = site.setupWith("cut.txt", "proband-data-file = cut.bin\n");
  const struct {
    std::vector<std::string> arguments;
    std::string token;
    int exit_code;
    std::string errors;
  } rows[] = {
      {{d + "/none.txt"}, "", 1, "File " + d + "/none.txt not found\n"},
      {{none}, "", 1, "File " + d + "/none.xml not found\n"},
      {{nodb}, "", 1, "File " + d + "/none.bin not found\n"},
      // The third record is cut short; it counts among those read.
      {{cut}, "", 1, "Database file " + d + "/cut.bin was not read whole; records read: 3\n"},
      {{site.setup, "--bind", "127.0.0.1"}, "", 1,
       "--bind needs an access token in the environment variable AUXSERVE_TOKEN\n"},
      {{site.setup, "--bind", "127.0.0.1"}, "a;b", 1,
       "AUXSERVE_TOKEN may hold printable ASCII only, without blanks and ; , \" \\\n"},
      {{local, "--bind", "127.0.0.1"}, "t", 1, "--bind refused: the setup says allow-local-only = 1\n"},
      {{site.setup, "--port", "65536"}, "", 2, "--port needs a number from 0 to 65535\n"},
      {{site.setup, "--today", "31.2"}, "", 2, "--today needs a date D.M.YYYY\n"},
      {{site.setup, "b.txt"}, "", 2, "only one setup file\n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.errors);
    ServerRun server;
    EXPECT_FALSE(server.start(row.arguments, row.token));
    EXPECT_EQ(row.exit_code, server.waitExit());
    EXPECT_EQ(row.errors, server.errors().substr(0, row.errors.size()));
  }
  EXPECT_EQ(whole.substr(0, whole.size() - 5), readFile(d + "/cut.bin"));
}

// Pages, files and hostile requests on one server, which goes on after each
// and logs one line per request without the values.
TEST(AuxserveTest, ServesPagesAndFilesRefusesHostileRequestsAndLogsEachRequest) {
  Site site;
  mkdir(site.dir.file("img").c_str(), 0777);
  writeFile(site.dir.file("img/logo.png"), "PNG bytes");
  ServerRun server;
  ASSERT_TRUE(server.start({site.setup, "--port", "0"}));
  EXPECT_EQ("listening on http://127.0.0.1:" + std::to_string(server.port) + "/", server.first_line);
  // The graph folder is made at start.
  writeFile(site.dir.file("graphs/123.bmp"), std::string("BM\0\x01", 4));
  writeFile(site.dir.file("graphs/9.pcx"), "PCX");
  writeFile(site.dir.file("graphs/7.wmf"), "WMF");
  std::string many = "/?_page=ids";
  for (int i = 0; i < 1000; ++i) many += "&a=1";  // 4 000 bytes, below the 8 192 of a target
  many += "&_srch=amm";  // behind 1 000 free pairs, still a typed parameter
  const std::string page = "text/html; charset=windows-1250";
  const struct {
    std::string target, form;
    int status;
    std::string type, body;  // compared when not empty
  } rows[] = {
      // Identifiers are handed out in the order records are first shown.
      {"/", "", 200, page, " Beta=p1; Delta=p2; Gamma=p3;"},
      {"/?_page=ids&_srch=elt", "", 200, page, " p2 "},
      {"/?_page=made&_p_id=p3", "", 200, page, " Gamma "},
      {"/?_page=made&_p_id=p4", "", 200, page, " none "},
      {"/?_page=made&_p_id=2", "", 200, page, " none "},  // an index is no identifier
      {"/?_page=made&_p_id=P1", "", 200, page, " none "},
      {"/?_page=made&_p_id=p1x", "", 200, page, " none "},
      {"/?_page=made&_p_id=p0", "", 200, page, " none "},
      {"/?_page=../list", "", 200, page, " Beta=p1; Delta=p2; Gamma=p3;"},  // unsafe: the default page
      {"/?_page=nothing", "", 404, "", ""},
      {"/other", "", 404, "", "Not found\n"},
      {"/graphs/123.bmp", "", 200, "image/bmp", std::string("BM\0\x01", 4)},
      {"/graphs/9.pcx", "", 200, "image/x-pcx", "PCX"},
      {"/graphs/7.wmf", "", 200, "image/wmf", "WMF"},
      {"/images/logo.png", "", 200, "image/png", "PNG bytes"},
      {"/graphs/124.bmp", "", 404, "", ""},
      {"/graphs/../setup.txt", "", 404, "", ""},
      {"/graphs/..%2fsetup.txt", "", 404, "", ""},
      {"/images/../db.bin", "", 404, "", ""},
      {"/graphs/123.bmp%00.txt", "", 400, "", ""},
      {"/%00", "", 400, "", ""},
      {"/?_page=ids&_srch=" + std::string(100 * 1024, 'a'), "", 414, "", ""},
      // A form body has a limit of its own, 8 192 bytes.
      {"/?_page=ids", "_srch=" + std::string(100 * 1024, 'a'), 413, "", ""},
      // "aaa" matches nobody, so everybody shows.
      {"/?_page=ids", "_srch=" + std::string(8000, 'a'), 200, page, " p1  p2  p3 "},
      {"/?_page=ids&_srch=%zz%u12%", "", 200, page, " p1  p2  p3 "},
      {"/?_page=made&_p_id=%70%31", "", 200, page, " Beta "},  // p1 spelled in escapes
      {"/?%=%&=&&&_page=ids&_srch=%u0044", "", 200, page, " p2 "},  // %u0044 is D
      {many, "", 200, page, " p3 "},
      {"/?_page=ids&_srch=G%00amma", "", 200, page, " p3 "},  // a NUL in a value is dropped
      {"/", "", 200, page, " Beta=p1; Delta=p2; Gamma=p3;"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.target.substr(0, 60));
    Reply reply = request(server.port, row.target, row.form);
    EXPECT_EQ(row.status, reply.status);
    EXPECT_EQ(row.type, row.type.empty() ? "" : reply.type);
    EXPECT_EQ(row.body, row.body.empty() ? "" : reply.body);
  }
  EXPECT_EQ(0, server.stop(SIGINT));
  // Workers write their lines as they finish: in any order.
  const std::string log = "\n" + server.errors();
  for (const char* line : {"\nGET / 200 ", "\nGET /?_page&_p_id 200 ", "\nGET /other 404 ", "\nPOST /?_page 200 "})
    EXPECT_NE(std::string::npos, log.find(line)) << line;
  EXPECT_EQ(sizeof rows / sizeof rows[0] + 2, static_cast<size_t>(std::count(log.begin(), log.end(), '\n')));
  EXPECT_EQ("\nstopped\n", log.substr(log.size() - 9));
  EXPECT_EQ(std::string::npos, log.find("Gamma"));
  EXPECT_EQ(std::string::npos, log.find("amm"));
}

// The boy of the fixture at 1.1.2013, as `auxtool report` writes him, with
// the internal link made by the request (the page path, then _p_id, _t_id
// and _page in parameter order) and the image under the image URL.
TEST(AuxserveTest, AnXmlDatabaseIsServedWithAWarningAndReportsComeWhole) {
  Site site;
  ServerRun server;
  const std::string xml = site.setupWith("xml.txt", "proband-data-file = " + testData("tools/report_database.xml") + "\n");
  ASSERT_TRUE(server.start({xml, "--port", "0", "--today", "1.1.2013"}));
  EXPECT_EQ(" p1 ", request(server.port, "/?_page=ids&_srch=Boy+Jan").body);
  std::string page = readFile(testData("tools/report_summary.html"));
  page.replace(page.find("_t_id=visits&"), 0, "/?_p_id=p1&").replace(page.find("visits&") + 7, 0, "_page=report&");
  page.replace(page.find("logo.png"), 0, "/images/");
  EXPECT_EQ(" [Boy Jan] " + page + " ", request(server.port, "/?_page=report&_p_id=p1&_t_id=summary").body);
  EXPECT_EQ(0, server.stop(SIGTERM));
  EXPECT_EQ(0u, server.errors().find("warning: " + testData("tools/report_database.xml") + " is an XML database"));
}

// The token comes by cookie or basic authentication with any user name. In
// base 64 "u:sesame" is dTpzZXNhbWU=, "u:wrong" dTp3cm9uZw==, ":sesame"
// OnNlc2FtZQ== and "sesame" c2VzYW1l.
TEST(AuxserveTest, WithATokenEveryRequestMustShowIt) {
  Site site;
  ServerRun server;
  ASSERT_TRUE(server.start({site.setup, "--port", "0", "--bind", "127.0.0.1"}, "sesame"));
  const struct { std::string target, form; httplib::Headers headers; int status; } rows[] = {
      {"/", "", {}, 401},
      {"/graphs/1.bmp", "", {}, 401},
      {"/", "", {{"Authorization", "Basic dTp3cm9uZw=="}}, 401},
      {"/", "", {{"Cookie", "auxserve_token=sesam"}}, 401},
      {"/", "", {{"Authorization", "Basic dTpzZXNhbWU="}}, 200},
      {"/", "", {{"Cookie", "auxserve_token=sesame"}}, 200},
      {"/", "", {{"Cookie", "a=1; auxserve_token=sesame; b=2"}}, 200},
      {"/", "", {{"Cookie", "xauxserve_token=sesame"}}, 401},
      {"/", "", {{"Authorization", "basic OnNlc2FtZQ=="}}, 200},
      {"/", "", {{"Authorization", "Basic c2VzYW1l"}}, 401},  // no colon
      {"/", "", {{"Cookie", "auxserve_token=wrong"}, {"Authorization", "Basic dTpzZXNhbWU="}}, 200},
      {"/login", "", {}, 200},
      {"/login", "token=sesam", {}, 401},
      {"/login", "token=sesame", {}, 303},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.target + " " + std::to_string(row.status));
    Reply reply = request(server.port, row.target, row.form, row.headers);
    EXPECT_EQ(row.status, reply.status);
    EXPECT_EQ(row.status == 200 && row.target == "/", reply.body.find("Beta") != std::string::npos);
    EXPECT_EQ(row.status == 303 ? "auxserve_token=sesame; Path=/; HttpOnly; SameSite=Strict" : "", reply.cookie);
  }
  EXPECT_EQ(0, server.stop(SIGTERM));
}

// Each client reads the order token and adds its records; a token that
// another client used first is stale, shows the page unchanged, and the
// client tries again. Every record must then be in the file.
TEST(AuxserveTest, ClientsEditingAtOnceLoseNothing) {
  Site site;
  ServerRun server;
  ASSERT_TRUE(server.start({site.setup, "--port", "0"}));
  const int port = server.port;
  ASSERT_EQ(" Beta=p1; Delta=p2; Gamma=p3;", request(port, "/").body);
  const int kClients = 4, kEach = 8, kTries = 400;
  std::atomic<int> made(0);
  std::vector<std::thread> clients;
  std::vector<std::string> expected = {"Beta"};
  for (int c = 0; c < kClients; ++c) {
    for (int k = 0; k < kEach; ++k) expected.push_back("Client" + std::to_string(c) + "x" + std::to_string(k));
    clients.emplace_back([&, c] {
      for (int k = 0; k < kEach; ++k) {
        std::string name = "Client" + std::to_string(c) + "x" + std::to_string(k);
        for (int t = 0; t < kTries; ++t)
          if (addProband(port, name).body == " " + name + " ") {
            ++made;
            break;
          }
      }
    });
  }
  for (std::thread& client : clients) client.join();
  EXPECT_EQ(kClients * kEach, made.load());
  // A repeated form changes nothing: the token it carries is spent.
  std::string order = request(port, "/?_page=order").body;
  EXPECT_EQ(" Zed ", addProband(port, "Zed", order).body);
  EXPECT_EQ(" none ", addProband(port, "Zed", order).body);
  // Identifiers handed out before 33 records came in still name their
  // records; the one of a deleted record names nobody.
  order = request(port, "/?_page=order").body;
  EXPECT_EQ(" none ", request(port, "/", "_cmd=del&_order=" + order + "&_p_id=p2&_page=made").body);
  EXPECT_EQ(" Beta ", request(port, "/?_page=made&_p_id=p1").body);
  EXPECT_EQ(" none ", request(port, "/?_page=made&_p_id=p2").body);
  EXPECT_EQ(" Gamma ", request(port, "/?_page=made&_p_id=p3").body);
  EXPECT_EQ(0, server.stop(SIGTERM));
  for (const char* name : {"Gamma", "Zed"}) expected.push_back(name);
  bool whole = false;
  EXPECT_EQ(expected, readDatabase(site.database, &whole));
  EXPECT_TRUE(whole);
}

// The save writes a temporary file and renames it: whenever the kill
// comes, the database is the old or a newer one, whole.
TEST(AuxserveTest, AKillInTheMiddleOfWritesLeavesAWholeDatabase) {
  std::vector<std::string> names;
  for (int i = 0; i < 3000; ++i) names.push_back("Proband " + std::to_string(10000 + i));
  Site site(names);
  size_t last = names.size();
  for (int round = 0; round < 3; ++round) {
    SCOPED_TRACE(round);
    ServerRun server;
    ASSERT_TRUE(server.start({site.setup, "--port", "0"}));
    std::atomic<bool> go(true);
    std::atomic<int> sent(0);
    std::thread writer([&] {
      for (int k = 0; k < 2000 && go; ++k, ++sent) addProband(server.port, "K" + std::to_string(k));
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(150 + 100 * round));
    EXPECT_EQ(128 + SIGKILL, server.stop(SIGKILL));
    go = false;
    writer.join();
    EXPECT_GT(sent.load(), 0);
    bool whole = false;
    size_t count = readDatabase(site.database, &whole).size();
    EXPECT_TRUE(whole);
    EXPECT_GE(count, last);
    last = count;
  }
  EXPECT_GT(last, names.size());  // the kills came while records were being added
}
