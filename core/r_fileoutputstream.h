// Output stream into a file opened in binary mode ("wb"), which replaces an
// existing file. A file that does not open makes every put a no-op.
#ifndef CORE_R_FILEOUTPUTSTREAM_H
#define CORE_R_FILEOUTPUTSTREAM_H

#include <cstdio>

#include "core/r_outputstream.h"

class R_FileOutputStream : public R_OutputStream {
 public:
  // Requires: `path` is not empty.
  explicit R_FileOutputStream(const char* path);
  ~R_FileOutputStream() override;

  void put(int byte) override {
    if (file && putc_unlocked(byte, file) == EOF) write_error = true;
  }
  // A file is open and no write error occurred so far.
  bool isOK() const { return file != nullptr && !write_error && !ferror(file); }
  // Flushes and closes; answers whether everything reached the file.
  bool close();

 private:
  FILE* file;
  bool write_error;
};

#endif
