#include "core/r_fileoutputstream.h"

R_FileOutputStream::R_FileOutputStream(const char* path)
    : file((path && *path) ? fopen(path, "wb") : nullptr), write_error(false) {}

R_FileOutputStream::~R_FileOutputStream() { close(); }

bool R_FileOutputStream::close() {
  if (!file) return false;
  bool ok = isOK();
  if (fclose(file) != 0) ok = false;
  file = nullptr;
  return ok;
}
