#include "output/r_a_safefile.h"

R_A_SafeFile::~R_A_SafeFile() { discard(); }

bool R_A_SafeFile::open(const char* path) {
  if (file != nullptr || path == nullptr || *path == '\0') return false;
  finalPath = path;
  tempPath = finalPath + ".tmp";
  file = std::fopen(tempPath.c_str(), "wb");
  return file != nullptr;
}

bool R_A_SafeFile::commit() {
  if (file == nullptr) return false;
  bool written = std::fflush(file) == 0 && !std::ferror(file);
  written = std::fclose(file) == 0 && written;
  file = nullptr;
  if (written && std::rename(tempPath.c_str(), finalPath.c_str()) == 0) return true;
  std::remove(tempPath.c_str());
  return false;
}

void R_A_SafeFile::discard() {
  if (file == nullptr) return;
  std::fclose(file);
  file = nullptr;
  std::remove(tempPath.c_str());
}
