// The page application as the server holds it: the setup, the knowledge
// file, the record policy, the database and the R_Application, made at
// start in that order and destroyed in the reverse one. The engine serves
// one request at a time; handle() holds one mutex over the whole request,
// from the parsing of the target to the last byte of the page, so the
// server may call it from any number of threads.
//
// A request reaches the engine as its raw target ("/path?query"); the
// engine's own parser reads it, so the order of the parameters stays.
#ifndef TOOLS_AUXSERVE_PAGESERVICE_H
#define TOOLS_AUXSERVE_PAGESERVICE_H

#include <cstdio>
#include <memory>
#include <mutex>
#include <string>

#include "tools/auxserve/recordsecurity.h"
#include "tools/auxserve/serveroptions.h"

class R_A_SetupFile;
class R_A_SimpleDB;
class R_Application;
class R_File;
class R_XMLErrorReporter;

struct PageAnswer {
  int status = 200;   // 404 when there is no page to show
  std::string body;   // the whole page
  int graphs = 0;     // graph files written for it
};

class PageService {
 public:
  PageService();
  ~PageService();
  PageService(const PageService&) = delete;
  PageService& operator=(const PageService&) = delete;

  // Reads the setup at `setupPath` and everything it names. False, with
  // the loaders' lines and one of its own for `reporter`, when a file is
  // missing or refused, or the database was not read whole: its first
  // save would throw away what was not read. Warnings go to `warnings`.
  bool start(const std::string& setupPath, R_XMLErrorReporter& reporter, FILE* warnings);

  const ServerSettings& getSettings() const { return settings; }

  // One request, by its raw target. Requires: start() succeeded.
  PageAnswer handle(const std::string& target);

 private:
  bool openDatabase(R_XMLErrorReporter& reporter, FILE* warnings);
  void makeApplication();

  std::mutex engine;
  ServerSettings settings;
  std::unique_ptr<R_A_SetupFile> setup;
  std::unique_ptr<R_File> file;
  RecordSecurity security;
  std::unique_ptr<R_A_SimpleDB> database;
  std::unique_ptr<R_Application> application;
};

#endif
