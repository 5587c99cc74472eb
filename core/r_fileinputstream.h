// Input stream over a file opened in binary mode. Reads through a block
// buffer of its own, which is the stream's window: the per-byte path is a
// bounds check and a load, without a call.
#ifndef CORE_R_FILEINPUTSTREAM_H
#define CORE_R_FILEINPUTSTREAM_H

#include <cstdio>

#include "core/r_inputstream.h"

class R_FileInputStream : public R_InputStream {
 public:
  // A file that does not open leaves the stream failed at once.
  explicit R_FileInputStream(const char* path);
  ~R_FileInputStream() override;

 protected:
  int read() override;

 private:
  int refill();

  FILE* file;
  unsigned char block[65536];
};

#endif
