// The HTTP side of auxserve, on cpp-httplib: the page routes ("/", "/temp"
// and "/xml", GET and POST, a POST body read as more query), the graph and
// image folders served as files, the access check and login page when a
// token is required, one log line per request on standard error, and a
// sweep of old graph files every half minute. Worker threads of the library
// run requests side by side; PageService serialises what reaches the
// engine.
#ifndef TOOLS_AUXSERVE_HTTPSERVER_H
#define TOOLS_AUXSERVE_HTTPSERVER_H

#include <memory>
#include <string>

#include "tools/auxserve/accesstoken.h"

class PageService;

class HttpServer {
 public:
  HttpServer(PageService& service, const AccessToken& token);
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  // Binds to `address`; port 0 takes any free port. Answers the port, or
  // -1 when the address or port cannot be had.
  int bind(const std::string& address, int port);
  // Serves until stop(); false when the server could not run.
  bool run();
  // Safe from any thread, before or during run().
  void stop();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl;
};

#endif
