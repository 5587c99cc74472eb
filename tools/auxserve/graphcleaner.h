// Removes old graph files. The engine names each graph file by digits and
// its extension ("1234567.bmp") in the graph folder and never deletes one;
// a page links to its graphs only while it is fresh, so files older than
// a few minutes are garbage. Only files of that form are touched, so a
// graph folder set by mistake to a folder of other files loses nothing
// else. `directory` ends with '/'. The sweep works on the folder, so files left by an earlier run go
// as well.
#ifndef TOOLS_AUXSERVE_GRAPHCLEANER_H
#define TOOLS_AUXSERVE_GRAPHCLEANER_H

#include <ctime>
#include <string>

class GraphCleaner {
 public:
  static const int kDefaultMaxAge = 300;  // seconds

  GraphCleaner(const std::string& directory, int maxAgeSeconds)
      : folder(directory), maxAge(maxAgeSeconds) {}

  // Removes the graph files whose last change lies more than the maximum
  // age before `now`; answers how many went.
  int sweep(time_t now) const;

  // Whether a file name has the form of the engine's graph files.
  static bool isGraphName(const char* name);

 private:
  std::string folder;
  int maxAge;
};

#endif
