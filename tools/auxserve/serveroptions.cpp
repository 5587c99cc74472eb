#include "tools/auxserve/serveroptions.h"

#include <cstdlib>
#include <cstring>

#include "core/r_date.h"
#include "page/r_a_setup.h"

const char* const kServerUsage =
    "usage: auxserve [SETUPFILE] [--port N] [--bind ADDRESS] [--today D.M.YYYY]\n"
    "  SETUPFILE       the setup file (default auxserve.txt); the files it names\n"
    "                  are found relative to its folder\n"
    "  --port N        the port (default: port-number of the setup, else 8080);\n"
    "                  0 takes any free port\n"
    "  --bind ADDRESS  listen on ADDRESS instead of 127.0.0.1; needs an access\n"
    "                  token in the environment variable AUXSERVE_TOKEN\n"
    "  --today D.M.YYYY  the date of today for ages and pages (default: the\n"
    "                  system clock), for demonstrations and tests\n";

namespace {

bool readPort(const char* text, int& port) {
  if (!text || !*text) return false;
  char* end = nullptr;
  long value = strtol(text, &end, 10);
  if (*end != 0 || value < 0 || value > 65535) return false;
  port = static_cast<int>(value);
  return true;
}

std::string withSlash(std::string path) {
  if (!path.empty() && path.back() != '/') path += '/';
  return path;
}

}  // namespace

bool parseServerOptions(int argc, const char* const* argv, ServerOptions& options, std::string& error) {
  bool setupGiven = false;
  for (int i = 1; i < argc; ++i) {
    const char* arg = argv[i];
    if (strcmp(arg, "--help") == 0 || strcmp(arg, "-h") == 0) {
      options.help = true;
    } else if (strcmp(arg, "--port") == 0) {
      if (i + 1 >= argc || !readPort(argv[i + 1], options.port)) {
        error = "--port needs a number from 0 to 65535";
        return false;
      }
      ++i;
    } else if (strcmp(arg, "--bind") == 0) {
      if (i + 1 >= argc || !*argv[i + 1]) {
        error = "--bind needs an address";
        return false;
      }
      options.bind = argv[++i];
    } else if (strcmp(arg, "--today") == 0) {
      R_Date date;
      if (i + 1 >= argc || !date.parse(argv[i + 1])) {
        error = "--today needs a date D.M.YYYY";
        return false;
      }
      options.today = argv[++i];
    } else if (arg[0] == '-' && arg[1] != 0) {
      error = std::string("unknown option ") + arg;
      return false;
    } else if (setupGiven) {
      error = "only one setup file";
      return false;
    } else {
      options.setupPath = arg;
      setupGiven = true;
    }
  }
  return true;
}

std::string resolveBeside(const std::string& setupPath, const std::string& path) {
  if (path.empty() || path[0] == '/') return path;
  size_t slash = setupPath.rfind('/');
  if (slash == std::string::npos) return path;
  return setupPath.substr(0, slash + 1) + path;
}

std::string mountPointOf(const std::string& urlBase) {
  if (urlBase.find("://") != std::string::npos || urlBase.compare(0, 2, "//") == 0) return "";
  std::string mount = urlBase;
  if (mount.empty() || mount[0] != '/') mount = "/" + mount;
  while (mount.size() > 1 && mount.back() == '/') mount.pop_back();
  return mount == "/" ? "" : mount;
}

ServerSettings readServerSettings(const R_A_Setup& setup, const std::string& setupPath) {
  ServerSettings s;
  auto str = [&setup](int code, const char* fallback) { return std::string(setup.getStr(code, fallback)); };
  s.knowledgeFile = resolveBeside(setupPath, str(R_A_Setup::strKnowledgeFileName, ""));
  s.databaseFile = resolveBeside(setupPath, str(R_A_Setup::strProbandDataFile, ""));
  s.pageDirectory = withSlash(resolveBeside(setupPath, str(R_A_Setup::strPageDirectory, "pages")));
  s.pageDefault = str(R_A_Setup::strPageDefault, "index");
  s.pageExtension = str(R_A_Setup::strPageExtension, ".htm");
  s.graphDirectory = withSlash(resolveBeside(setupPath, str(R_A_Setup::strGraphDirectory, "graphs")));
  s.graphUrlBase = str(R_A_Setup::strGraphUrlBase, "/graphs/");
  std::string images = str(R_A_Setup::strImageDirectory, "");
  s.imageDirectory = images.empty() ? "" : withSlash(resolveBeside(setupPath, images));
  s.imageUrlBase = str(R_A_Setup::strImageUrlBase, "/images/");
  s.dateFormat = str(R_A_Setup::strDateFormat, "%d.%m.%Y");
  s.port = setup.getInt(R_A_Setup::intPortNumber, 8080);
  s.localOnly = setup.getInt(R_A_Setup::intAllowLocalOnly, 0) == 1;
  return s;
}
