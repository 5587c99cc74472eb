#include "tools/auxserve/graphcleaner.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

#include "core/r_ascii.h"

namespace {

const char* const kGraphExtensions[] = {".bmp", ".pcx", ".wmf"};

}  // namespace

bool GraphCleaner::isGraphName(const char* name) {
  const char* p = name;
  while (R_isDigit(static_cast<unsigned char>(*p))) ++p;
  if (p == name) return false;
  for (const char* extension : kGraphExtensions)
    if (strcmp(p, extension) == 0) return true;
  return false;
}

int GraphCleaner::sweep(time_t now) const {
  DIR* dir = opendir(folder.c_str());
  if (!dir) return 0;
  int removed = 0;
  while (struct dirent* entry = readdir(dir)) {
    if (!isGraphName(entry->d_name)) continue;
    std::string path = folder + entry->d_name;
    struct stat info;
    if (lstat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) continue;
    if (now - info.st_mtime > maxAge && unlink(path.c_str()) == 0) ++removed;
  }
  closedir(dir);
  return removed;
}
