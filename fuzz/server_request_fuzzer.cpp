// Requests as the web front end hands them to the engine. The input's first
// line is the raw target ("/path?query"), answered by the page service over
// a scratch copy of the sample application (setup, page templates,
// knowledge file and database); the second and third lines are the Cookie
// and Authorization headers of a server with an access token. A request
// gives a page or a 404, never touches the database when it could not have
// carried the order token, and its log line keeps no byte of a query value.
#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

#include "fuzz/fuzz_support.h"
#include "tools/auxserve/accesstoken.h"
#include "tools/auxserve/graphcleaner.h"
#include "tools/auxserve/pageservice.h"
#include "tools/auxserve/requestlog.h"
#include "xml/r_xmlerrorreporter.h"

namespace {

class SilentReporter : public R_XMLErrorReporter {
 public:
  void report(const char*) override {}
};

std::string copyOf(const std::string& from, const std::string& to) {
  std::string bytes = readWholeFile(from.c_str());
  FILE* file = fopen(to.c_str(), "wb");
  FUZZ_CHECK(file && fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() && fclose(file) == 0);
  return to;
}

// The sample application in a folder of this process, removed at exit.
struct Application {
  std::string folder;
  PageService service;
  time_t started;

  Application() : folder(scratchPath("server")), started(time(nullptr)) {
    const std::string samples = AUX_FUZZ_SAMPLES_DIR "/";
    FUZZ_CHECK(mkdir(folder.c_str(), 0700) == 0 && mkdir((folder + "/pages").c_str(), 0700) == 0);
    for (const char* name : {"auxserve.txt", "knowledge.bin", "probands.bin"}) copyOf(samples + name, folder + "/" + name);
    DIR* pages = opendir((samples + "pages").c_str());
    FUZZ_CHECK(pages != nullptr);
    while (dirent* entry = readdir(pages)) {
      std::string name = entry->d_name;
      if (name.size() > 4 && name.compare(name.size() - 4, 4, ".htm") == 0)
        copyOf(samples + "pages/" + name, folder + "/pages/" + name);
    }
    closedir(pages);
    SilentReporter reporter;
    if (!service.start(folder + "/auxserve.txt", reporter, nullptr)) fuzzFailure(__FILE__, __LINE__, "start");
    atexit([] { (void)system(("rm -rf '" + std::string(scratchPath("server")) + "'").c_str()); });
  }

  // Graph files of the request just made; the server's sweep does this
  // every few minutes, here each input cleans up after itself.
  void removeGraphs() const { GraphCleaner(service.getSettings().graphDirectory, 0).sweep(time(nullptr) + 3600); }
};

std::string line(const std::string& text, size_t* at) {
  size_t end = text.find('\n', *at);
  std::string piece = text.substr(*at, end == std::string::npos ? std::string::npos : end - *at);
  *at = end == std::string::npos ? text.size() : end + 1;
  return piece;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static Application* application = new Application();
  const std::string input(reinterpret_cast<const char*>(data), size);
  size_t at = 0;
  const std::string target = line(input, &at), cookie = line(input, &at), authorization = line(input, &at);

  const std::string database = application->folder + "/probands.bin";
  const std::string before = readWholeFile(database.c_str());
  PageAnswer answer = application->service.handle(target);
  FUZZ_CHECK(answer.status == 200 || answer.status == 404);
  // A change needs the order token that a page prints; an input cannot
  // know it, so the database stays as it was unless the target might name
  // the token at all (spelled out or percent-encoded).
  std::string lower = target;
  for (char& c : lower) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
  bool mayOrder = lower.find('%') != std::string::npos || lower.find("order") != std::string::npos;
  if (!mayOrder) FUZZ_CHECK(readWholeFile(database.c_str()) == before);
  application->removeGraphs();

  const std::string logged = loggedTarget(target);
  FUZZ_CHECK(logged.size() <= 200);
  // The path is kept a byte for a byte; of the query only the names stay,
  // nothing behind its '=' signs.
  size_t query = target.find('?');
  if (query < logged.size()) FUZZ_CHECK(logged[query] == '?' && logged.find('=', query) == std::string::npos);

  AccessToken token("fuzz-secret");
  std::string password;
  bool basic = AccessToken::basicPassword(authorization, password);
  bool admitted = token.admits(cookie, authorization);
  if (admitted) FUZZ_CHECK(AccessToken::cookieValue(cookie, AccessToken::kCookieName) == "fuzz-secret" ||
                           (basic && password == "fuzz-secret"));
  return 0;
}
