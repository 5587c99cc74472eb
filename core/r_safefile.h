// A file replaced whole or not at all, and on the disk before it replaces
// anything. The bytes go to a temporary file created new in the target's
// folder (exclusively: never through an existing file or link of that
// name); commit() writes out the buffer, flushes it to the disk, closes it
// and renames it over the target. Until commit() succeeds the target is
// untouched; on any failure, and when the object goes without a commit,
// the temporary file is removed.
//
// Every writer of the system's files goes through this one class, so that a
// full disk, a file size limit or a crash in the middle never leaves half a
// file where a whole one was. Not copyable.
#ifndef CORE_R_SAFEFILE_H
#define CORE_R_SAFEFILE_H

#include <cstddef>
#include <string>

#include "core/r_outputstream.h"

class R_SafeFile : public R_OutputStream {
 public:
  // The steps that touch the disk. Tests give a set in which one step fails,
  // to see that every failure leaves the target as it was.
  struct Steps {
    // Creates `path` new, for writing; a descriptor, or -1 when it exists
    // or cannot be made.
    int (*create)(const char* path);
    // Writes up to `size` bytes; the count written, or -1.
    long (*write)(int fd, const void* data, size_t size);
    // Brings what was written to the disk; 0 on success.
    int (*sync)(int fd);
    int (*close)(int fd);
    int (*rename)(const char* from, const char* to);
    // Brings the folder's entry of the renamed file to the disk; null skips it.
    void (*syncFolder)(const char* target);
  };
  // The platform's calls.
  static const Steps& systemSteps();
  // The platform's calls without the two syncs: the file still appears whole
  // or not at all, but a crash of the machine may lose it. For files that
  // are made again on demand, such as graph images, where waiting for the
  // disk would halve the pages a server gives.
  static const Steps& unsyncedSteps();

  // Creates the temporary file for `target`. Requires: target != null.
  explicit R_SafeFile(const char* target, const Steps& steps = systemSteps());
  // Without a successful commit(), removes the temporary file.
  ~R_SafeFile() override;

  // The temporary file exists and every step so far worked.
  bool isOK() const { return (fd >= 0 || finished) && !failed; }
  // The temporary file's name; empty when none could be created.
  const std::string& getTemporaryPath() const { return temporary; }

  void put(int byte) override {
    if (used == sizeof buffer) drain();
    buffer[used++] = static_cast<unsigned char>(byte);
  }
  void writeBytes(const unsigned char* bytes, int count) override;
  void write(const char* text);

  // Writes out, syncs and closes the temporary file, which is then whole
  // under getTemporaryPath() for a caller that reads it back before the
  // commit. False, with the temporary file gone, when any step failed.
  bool finish();
  // Puts the file in place of the target, finishing it first if needed;
  // false, with the target untouched and the temporary file gone, when any
  // step failed. Once only.
  bool commit();

 private:
  void createTemporary();
  // Writes out the buffer; a failure marks the file failed.
  void drain();
  void discard();

  const Steps& steps;
  std::string target;
  std::string temporary;
  int fd;
  bool failed;
  bool finished;
  size_t used;
  unsigned char buffer[65536];
};

#endif
