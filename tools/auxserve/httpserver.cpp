#include "tools/auxserve/httpserver.h"

#include <httplib.h>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <thread>

#include "core/r_ascii.h"
#include "page/r_a_cgiparameters.h"
#include "tools/auxserve/graphcleaner.h"
#include "tools/auxserve/pageservice.h"
#include "tools/auxserve/requestlog.h"

namespace {

using Clock = std::chrono::steady_clock;

// Set when a request enters routing, read by the logger on the same worker
// thread; a request refused before routing logs "-".
thread_local Clock::time_point requestStart;
thread_local bool requestTimed = false;

const int kSweepSeconds = 30;
const size_t kMaxBody = 1 << 20;

const char* const kPageType = "text/html; charset=windows-1250";

const char* const kMimeTypes[][2] = {
    {"bmp", "image/bmp"}, {"pcx", "image/x-pcx"}, {"wmf", "image/wmf"},
    {"svg", "image/svg+xml"}, {"png", "image/png"}, {"gif", "image/gif"},
    {"jpg", "image/jpeg"}, {"css", "text/css"},
};

const char* const kLoginForm =
    "<!DOCTYPE html>\n<html><head><meta charset=\"windows-1250\"><title>Log in</title></head>\n"
    "<body><h1>Log in</h1>%s<form method=\"post\" action=\"/login\">\n"
    "<label>Access token <input type=\"password\" name=\"token\" autofocus></label>\n"
    "<button type=\"submit\">Log in</button></form></body></html>\n";

std::string loginPage(const char* note) {
  char page[1024];
  snprintf(page, sizeof page, kLoginForm, note);
  return page;
}

bool isEnginePath(const std::string& path) {
  return path == "/" || R_stricmp(path.c_str(), "/temp") == 0 || R_stricmp(path.c_str(), "/xml") == 0;
}

void noStore(httplib::Response& res) {
  res.set_header("Cache-Control", "no-store");
  res.set_header("X-Content-Type-Options", "nosniff");
  res.set_header("Referrer-Policy", "no-referrer");
}

}  // namespace

struct HttpServer::Impl {
  Impl(PageService& pages, const AccessToken& access)
      : service(pages), token(access), cleaner(pages.getSettings().graphDirectory, GraphCleaner::kDefaultMaxAge) {}

  void configure();
  httplib::Server::HandlerResponse admit(const httplib::Request& req, httplib::Response& res);
  void servePage(const httplib::Request& req, httplib::Response& res, const std::string& body);
  void login(const httplib::Request& req, httplib::Response& res);
  void sweepLoop();

  PageService& service;
  AccessToken token;
  GraphCleaner cleaner;
  httplib::Server server;
  std::mutex logMutex;
  std::mutex sweepMutex;
  std::condition_variable sweepWake;
  bool stopping = false;
};

void HttpServer::Impl::configure() {
  server.set_tcp_nodelay(true);
  server.set_keep_alive_max_count(100);
  server.set_keep_alive_timeout(5);
  server.set_read_timeout(10, 0);
  server.set_write_timeout(10, 0);
  server.set_payload_max_length(kMaxBody);
  for (const auto& type : kMimeTypes) server.set_file_extension_and_mimetype_mapping(type[0], type[1]);

  const ServerSettings& settings = service.getSettings();
  std::string graphMount = mountPointOf(settings.graphUrlBase);
  if (!graphMount.empty()) server.set_mount_point(graphMount, settings.graphDirectory);
  std::string imageMount = mountPointOf(settings.imageUrlBase);
  if (!imageMount.empty() && !settings.imageDirectory.empty())
    server.set_mount_point(imageMount, settings.imageDirectory);

  server.set_pre_routing_handler(
      [this](const httplib::Request& req, httplib::Response& res) { return admit(req, res); });
  server.Get("/login", [this](const httplib::Request&, httplib::Response& res) {
    noStore(res);
    res.set_content(loginPage(""), kPageType);
  });
  server.Post("/login", [this](const httplib::Request& req, httplib::Response& res) { login(req, res); });
  server.Get(R"(/.*)", [this](const httplib::Request& req, httplib::Response& res) { servePage(req, res, ""); });
  server.Post(R"(/.*)", [this](const httplib::Request& req, httplib::Response& res) {
    servePage(req, res, req.body);
  });
  server.set_logger([this](const httplib::Request& req, const httplib::Response& res) {
    double ms = -1;
    if (requestTimed) ms = std::chrono::duration<double, std::milli>(Clock::now() - requestStart).count();
    requestTimed = false;
    std::string line = logLine(req.method, req.target, res.status, ms);
    std::lock_guard<std::mutex> lock(logMutex);
    fputs(line.c_str(), stderr);
  });
}

httplib::Server::HandlerResponse HttpServer::Impl::admit(const httplib::Request& req, httplib::Response& res) {
  requestStart = Clock::now();
  requestTimed = true;
  // A decoded NUL would cut a file name short: "g.bmp%00.txt" is no file.
  if (req.path.find('\0') != std::string::npos || req.target.find('\0') != std::string::npos) {
    res.status = 400;
    res.set_content("Bad request\n", "text/plain");
    return httplib::Server::HandlerResponse::Handled;
  }
  if (!token.isRequired() || req.path == "/login") return httplib::Server::HandlerResponse::Unhandled;
  if (token.admits(req.get_header_value("Cookie"), req.get_header_value("Authorization")))
    return httplib::Server::HandlerResponse::Unhandled;
  res.status = 401;
  res.set_header("WWW-Authenticate", "Basic realm=\"auxserve\", charset=\"UTF-8\"");
  noStore(res);
  res.set_content(loginPage("<p>This server needs its access token.</p>"), kPageType);
  return httplib::Server::HandlerResponse::Handled;
}

void HttpServer::Impl::login(const httplib::Request& req, httplib::Response& res) {
  noStore(res);
  R_A_CGIParameters form;
  form.parse(("?" + req.body).c_str(), 0);
  for (int i = 0; i < form.getVarCount(); ++i) {
    if (strcmp(form.getVarName(i), "token") != 0 || !token.matches(form.getVarValue(i))) continue;
    res.status = 303;
    res.set_header("Set-Cookie", token.makeCookie());
    res.set_header("Location", "/");
    return;
  }
  res.status = 401;
  res.set_content(loginPage("<p>Wrong token.</p>"), kPageType);
}

void HttpServer::Impl::servePage(const httplib::Request& req, httplib::Response& res, const std::string& body) {
  noStore(res);
  if (!isEnginePath(req.path)) {
    res.status = 404;
    res.set_content("Not found\n", "text/plain");
    return;
  }
  std::string target = req.target;
  if (!body.empty()) {
    target += target.find('?') == std::string::npos ? '?' : '&';
    target += body;
  }
  PageAnswer answer = service.handle(target);
  res.status = answer.status;
  res.body.swap(answer.body);
  res.set_header("Content-Type", kPageType);
}

void HttpServer::Impl::sweepLoop() {
  std::unique_lock<std::mutex> lock(sweepMutex);
  while (!stopping) {
    lock.unlock();
    cleaner.sweep(time(nullptr));
    lock.lock();
    sweepWake.wait_for(lock, std::chrono::seconds(kSweepSeconds), [this] { return stopping; });
  }
}

HttpServer::HttpServer(PageService& service, const AccessToken& token) : impl(new Impl(service, token)) {
  impl->configure();
}

HttpServer::~HttpServer() = default;

int HttpServer::bind(const std::string& address, int port) {
  if (port == 0) return impl->server.bind_to_any_port(address);
  return impl->server.bind_to_port(address, port) ? port : -1;
}

bool HttpServer::run() {
  std::thread sweeper([this] { impl->sweepLoop(); });
  bool ok = impl->server.listen_after_bind();
  {
    std::lock_guard<std::mutex> lock(impl->sweepMutex);
    impl->stopping = true;
  }
  impl->sweepWake.notify_all();
  sweeper.join();
  return ok;
}

void HttpServer::stop() { impl->server.stop(); }
