#include "core/r_safefile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cassert>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

// Names tried when an earlier temporary file (of a run that crashed, or of
// another writer) is in the way: it is never opened, only passed by.
const int kTemporaryNames = 100;

int createNew(const char* path) { return open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666); }

long writeSome(int fd, const void* data, size_t size) {
  ssize_t written;
  do {
    written = ::write(fd, data, size);
  } while (written < 0 && errno == EINTR);
  return static_cast<long>(written);
}


std::string temporaryName(const std::string& target, int attempt) {
  std::string name = target + ".tmp";
  if (attempt > 0) name += std::to_string(attempt);
  return name;
}

// A replaced file keeps the permissions it had.
void keepMode(int fd, const char* target) {
  struct stat old;
  if (stat(target, &old) == 0) (void)fchmod(fd, old.st_mode & 07777);
}

// The rename itself reaches the disk with the folder's entry; a folder that
// does not sync costs durability, not the file, so it is not a failure.
void syncFolder(const char* target_path) {
  std::string target(target_path);
  size_t slash = target.rfind('/');
  std::string folder = slash == std::string::npos ? "." : (slash == 0 ? "/" : target.substr(0, slash));
  int dir = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (dir < 0) return;
  (void)fsync(dir);
  ::close(dir);
}

int skipSync(int) { return 0; }

const R_SafeFile::Steps kSystemSteps = {createNew, writeSome, fsync, close, rename, syncFolder};
const R_SafeFile::Steps kUnsyncedSteps = {createNew, writeSome, skipSync, close, rename, nullptr};

}  // namespace

const R_SafeFile::Steps& R_SafeFile::systemSteps() { return kSystemSteps; }
const R_SafeFile::Steps& R_SafeFile::unsyncedSteps() { return kUnsyncedSteps; }

R_SafeFile::R_SafeFile(const char* target_path, const Steps& disk_steps)
    : steps(disk_steps), target(target_path ? target_path : ""), fd(-1), failed(false), finished(false), used(0) {
  assert(target_path != nullptr);
  if (!target.empty()) createTemporary();
}

R_SafeFile::~R_SafeFile() { discard(); }

void R_SafeFile::createTemporary() {
  for (int attempt = 0; attempt < kTemporaryNames; ++attempt) {
    std::string name = temporaryName(target, attempt);
    errno = 0;
    fd = steps.create(name.c_str());
    if (fd >= 0) {
      temporary = name;
      keepMode(fd, target.c_str());
      return;
    }
    if (errno != EEXIST) return;
  }
}

void R_SafeFile::write(const char* text) {
  while (*text) put(static_cast<unsigned char>(*text++));
}

void R_SafeFile::writeBytes(const unsigned char* bytes, int count) {
  while (count > 0) {
    if (used == sizeof buffer) drain();
    const size_t room = sizeof buffer - used;
    const size_t n = static_cast<size_t>(count) < room ? static_cast<size_t>(count) : room;
    memcpy(buffer + used, bytes, n);
    used += n;
    bytes += n;
    count -= static_cast<int>(n);
  }
}

void R_SafeFile::drain() {
  size_t done = 0;
  while (!failed && done < used) {
    long written = fd >= 0 ? steps.write(fd, buffer + done, used - done) : -1;
    if (written <= 0)
      failed = true;
    else
      done += static_cast<size_t>(written);
  }
  used = 0;
}

bool R_SafeFile::finish() {
  if (!isOK()) {
    discard();
    return false;
  }
  drain();
  bool ok = !failed && steps.sync(fd) == 0;
  if (steps.close(fd) != 0) ok = false;
  fd = -1;
  if (!ok) {
    failed = true;
    discard();
  }
  finished = ok;
  return ok;
}

bool R_SafeFile::commit() {
  if (!finished && !finish()) return false;
  finished = false;
  if (!failed && !temporary.empty() && steps.rename(temporary.c_str(), target.c_str()) == 0) {
    temporary.clear();
    if (steps.syncFolder != nullptr) steps.syncFolder(target.c_str());
    return true;
  }
  failed = true;
  discard();
  return false;
}

void R_SafeFile::discard() {
  if (fd >= 0) steps.close(fd);
  fd = -1;
  if (!temporary.empty()) unlink(temporary.c_str());
  temporary.clear();
}
