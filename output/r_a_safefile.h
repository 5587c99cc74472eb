// A binary file that appears under its name only when it is complete. Bytes
// go to "<path>.tmp"; commit() flushes, closes and renames that over `path`.
// Whatever is not committed, a failed write included, is removed again, so a
// reader never sees half a file and a failed write leaves no file behind.
// Not copyable; one object writes one file.
#ifndef OUTPUT_R_A_SAFEFILE_H
#define OUTPUT_R_A_SAFEFILE_H

#include <cstdio>
#include <string>

class R_A_SafeFile {
 public:
  R_A_SafeFile() = default;
  ~R_A_SafeFile();  // discards a file still open
  R_A_SafeFile(const R_A_SafeFile&) = delete;
  R_A_SafeFile& operator=(const R_A_SafeFile&) = delete;

  // Creates the temporary file. False when it cannot be created, or when a
  // file is already open.
  bool open(const char* path);
  bool isOpen() const { return file != nullptr; }
  // The open temporary file, or null.
  FILE* get() const { return file; }

  // Moves the finished file into place. False, with nothing left behind and
  // an old file of the name untouched, when any write, the close or the
  // rename failed.
  bool commit();
  // Closes and removes the temporary file.
  void discard();

 private:
  FILE* file = nullptr;
  std::string finalPath;
  std::string tempPath;
};

#endif
