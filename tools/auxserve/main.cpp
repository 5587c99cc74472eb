// auxserve: serves the page application to a browser.
//   auxserve [SETUPFILE] [--port N] [--bind ADDRESS] [--today D.M.YYYY]
// Exit codes: 0 after a clean stop (SIGINT, SIGTERM), 1 when a file is
// missing or refused or the server cannot listen, 2 for a wrong usage.
#include <pthread.h>
#include <signal.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#include "core/r_date.h"
#include "page/r_a_clock.h"
#include "tools/auxserve/accesstoken.h"
#include "tools/auxserve/httpserver.h"
#include "tools/auxserve/pageservice.h"
#include "tools/auxserve/serveroptions.h"
#include "tools/auxtool/printreporter.h"

namespace {

const char* const kLoopback = "127.0.0.1";
const char* const kTokenVariable = "AUXSERVE_TOKEN";

// Another address than the loopback one is open to other machines, and
// only a token keeps them out.
bool checkBind(const ServerOptions& options, const ServerSettings& settings, std::string& token) {
  if (options.bind.empty()) return true;
  if (settings.localOnly) {
    fprintf(stderr, "--bind refused: the setup says allow-local-only = 1\n");
    return false;
  }
  const char* given = getenv(kTokenVariable);
  if (!given || !*given) {
    fprintf(stderr, "--bind needs an access token in the environment variable %s\n", kTokenVariable);
    return false;
  }
  // The token travels in a cookie and a header: printable ASCII only,
  // without the separators of either.
  for (const char* p = given; *p; ++p) {
    unsigned char byte = static_cast<unsigned char>(*p);
    if (byte <= 32 || byte >= 127 || byte == ';' || byte == ',' || byte == '"' || byte == '\\') {
      fprintf(stderr, "%s may hold printable ASCII only, without blanks and ; , \" \\\n", kTokenVariable);
      return false;
    }
  }
  token = given;
  return true;
}

std::string urlHost(const std::string& address) {
  return address.find(':') != std::string::npos ? "[" + address + "]" : address;
}

}  // namespace

int main(int argc, char** argv) {
  ServerOptions options;
  std::string usageError;
  if (!parseServerOptions(argc, argv, options, usageError)) {
    fprintf(stderr, "%s\n%s", usageError.c_str(), kServerUsage);
    return 2;
  }
  if (options.help) {
    fputs(kServerUsage, stdout);
    return 0;
  }

  // The signals are taken by one thread of our own, so that the library's
  // workers never see them and the stop happens outside a signal handler.
  sigset_t stopSignals;
  sigemptyset(&stopSignals);
  sigaddset(&stopSignals, SIGINT);
  sigaddset(&stopSignals, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &stopSignals, nullptr);
  signal(SIGPIPE, SIG_IGN);

  if (!options.today.empty()) {
    R_Date today;
    today.parse(options.today.c_str());
    R_A_fixToday(today);
  }

  PrintReporter reporter(stderr);
  PageService service;
  if (!service.start(options.setupPath, reporter, stderr)) return 1;
  const ServerSettings& settings = service.getSettings();

  std::string token;
  if (!checkBind(options, settings, token)) return 1;
  std::string address = options.bind.empty() ? kLoopback : options.bind;
  int wanted = options.port >= 0 ? options.port : settings.port;

  HttpServer server(service, AccessToken(token));
  int port = server.bind(address, wanted);
  if (port < 0) {
    fprintf(stderr, "cannot listen on %s port %d\n", address.c_str(), wanted);
    return 1;
  }
  printf("listening on http://%s:%d/\n", urlHost(address).c_str(), port);
  fflush(stdout);

  std::atomic<bool> finished(false);
  std::thread signalWaiter([&server, &stopSignals, &finished] {
    int received = 0;
    sigwait(&stopSignals, &received);
    // A signal that comes before the server runs would find nothing to
    // stop; the stop is repeated until the server has ended.
    while (!finished) {
      server.stop();
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
  });
  bool ran = server.run();
  finished = true;
  // A server that ended by itself leaves the waiter waiting; wake it.
  pthread_kill(signalWaiter.native_handle(), SIGTERM);
  signalWaiter.join();
  fprintf(stderr, "stopped\n");
  return ran ? 0 : 1;
}
