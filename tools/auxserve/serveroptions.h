// The command line of auxserve:
//   auxserve [SETUPFILE] [--port N] [--bind ADDRESS] [--today D.M.YYYY]
// and the settings it takes from the setup file, with every path made
// relative to the setup file's folder, so that a setup and the files it
// names move together.
#ifndef TOOLS_AUXSERVE_SERVEROPTIONS_H
#define TOOLS_AUXSERVE_SERVEROPTIONS_H

#include <string>

class R_A_Setup;

struct ServerOptions {
  std::string setupPath = "auxserve.txt";
  int port = -1;        // -1: the setup's port-number, else 8080; 0: any free port
  std::string bind;     // empty: 127.0.0.1 and no access token
  std::string today;    // empty: the system clock
  bool help = false;
};

// Reads the arguments; false, with a line in `error`, for a wrong usage.
bool parseServerOptions(int argc, const char* const* argv, ServerOptions& options, std::string& error);

extern const char* const kServerUsage;

// What the server takes from the setup, paths already resolved.
struct ServerSettings {
  std::string knowledgeFile;
  std::string databaseFile;
  std::string pageDirectory;   // ends with '/'
  std::string pageDefault;
  std::string pageExtension;
  std::string graphDirectory;  // ends with '/'
  std::string graphUrlBase;
  std::string imageDirectory;  // ends with '/', or empty when not set
  std::string imageUrlBase;
  std::string dateFormat;
  int port = 8080;
  bool localOnly = false;
};

ServerSettings readServerSettings(const R_A_Setup& setup, const std::string& setupPath);

// `path` as seen from the folder of `setupPath`; an absolute path stays.
std::string resolveBeside(const std::string& setupPath, const std::string& path);

// The local path under which a URL base is served ("graphs/" and
// "/graphs/" both give "/graphs"); empty for a base on another host.
std::string mountPointOf(const std::string& urlBase);

#endif
