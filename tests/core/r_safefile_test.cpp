#include "core/r_safefile.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <set>
#include <string>

#include "tests/support/test_files.h"

namespace {

// Steps over the real ones, of which the one named by `failing` fails; a
// write fails only at its `failing_write`th call, so a failure can land in
// the middle of a file.
enum class Step { none, create, write, sync, close, rename };
Step failing = Step::none;
int failing_write = 1;
int writes = 0;

const R_SafeFile::Steps& real = R_SafeFile::systemSteps();

int fakeCreate(const char* path) {
  if (failing != Step::create) return real.create(path);
  errno = ENOSPC;
  return -1;
}
long fakeWrite(int fd, const void* data, size_t size) {
  if (failing == Step::write && ++writes == failing_write) return -1;
  return real.write(fd, data, size);
}
int fakeSync(int fd) { return failing == Step::sync ? -1 : real.sync(fd); }
int fakeClose(int fd) {
  int result = real.close(fd);
  return failing == Step::close ? -1 : result;
}
int fakeRename(const char* from, const char* to) { return failing == Step::rename ? -1 : real.rename(from, to); }

const R_SafeFile::Steps kFaulty = {fakeCreate, fakeWrite, fakeSync, fakeClose, fakeRename, nullptr};

std::set<std::string> namesIn(const std::string& dir) {
  std::set<std::string> names;
  DIR* handle = opendir(dir.c_str());
  while (dirent* entry = readdir(handle))
    if (entry->d_name[0] != '.') names.insert(entry->d_name);
  closedir(handle);
  return names;
}

class SafeFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    failing = Step::none;
    failing_write = 1;
    writes = 0;
    writeFile(target, "old contents");
  }
  void TearDown() override { failing = Step::none; }

  // Writes `bytes` through the helper; the commit's answer.
  bool save(const std::string& bytes) {
    R_SafeFile file(target.c_str(), kFaulty);
    for (unsigned char c : bytes) file.put(c);
    return file.commit();
  }

  TempDir dir;
  std::string target = dir.file("data.xml");
};

}  // namespace

TEST_F(SafeFileTest, ACommitReplacesTheFileAndLeavesNothingElse) {
  std::string bytes(200000, 'x');
  EXPECT_TRUE(save(bytes));
  EXPECT_EQ(bytes, readFile(target));
  EXPECT_EQ(std::set<std::string>{"data.xml"}, namesIn(dir.path()));
}

// Blocks that cross the 64 KiB buffer's end, between single bytes, keep
// their order.
TEST_F(SafeFileTest, BlocksAndSingleBytesArriveInOrder) {
  std::string bytes(170013, '\0');
  for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i * 7 % 251);
  const unsigned char* data = reinterpret_cast<const unsigned char*>(bytes.data());
  {
    R_SafeFile file(target.c_str());
    for (int i = 0; i < 10; ++i) file.put(data[i]);
    file.writeBytes(data + 10, 100000);
    file.writeBytes(data, 0);
    for (int i = 100010; i < 100013; ++i) file.put(data[i]);
    file.writeBytes(data + 100013, 70000);
    EXPECT_TRUE(file.commit());
  }
  EXPECT_EQ(bytes, readFile(target));
}

TEST_F(SafeFileTest, AFailureAtAnyStepLeavesTheOldFileAndNoTemporaryOne) {
  struct Row {
    Step step;
    int write_call;
    const char* label;
  } rows[] = {
      {Step::create, 1, "create"},         {Step::write, 1, "first block"},
      {Step::write, 3, "a later block"},   {Step::write, 4, "the last block, written at the commit"},
      {Step::sync, 1, "sync"},             {Step::close, 1, "close"},
      {Step::rename, 1, "rename"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.label);
    failing = row.step;
    failing_write = row.write_call;
    writes = 0;
    EXPECT_FALSE(save(std::string(200000, 'y')));  // four blocks of 64 KiB
    EXPECT_EQ("old contents", readFile(target));
    EXPECT_EQ(std::set<std::string>{"data.xml"}, namesIn(dir.path()));
  }
}

TEST_F(SafeFileTest, NoCommitLeavesTheOldFileAndRemovesTheTemporaryOne) {
  {
    R_SafeFile file(target.c_str());
    file.write("new");
    EXPECT_TRUE(file.isOK());
    EXPECT_TRUE(fileExists(file.getTemporaryPath()));
  }
  EXPECT_EQ("old contents", readFile(target));
  EXPECT_EQ(std::set<std::string>{"data.xml"}, namesIn(dir.path()));
}

TEST_F(SafeFileTest, AnExistingTemporaryNameOrLinkIsPassedByNotWrittenThrough) {
  writeFile(dir.file("victim"), "victim");
  writeFile(dir.file("data.xml.tmp"), "left by a crash");
  ASSERT_EQ(0, symlink(dir.file("victim").c_str(), dir.file("data.xml.tmp1").c_str()));
  EXPECT_TRUE(save("new"));
  EXPECT_EQ("new", readFile(target));
  EXPECT_EQ("victim", readFile(dir.file("victim")));
  EXPECT_EQ("left by a crash", readFile(dir.file("data.xml.tmp")));
}

TEST_F(SafeFileTest, AReplacedFileKeepsItsPermissions) {
  ASSERT_EQ(0, chmod(target.c_str(), 0640));
  EXPECT_TRUE(save("new"));
  struct stat info;
  ASSERT_EQ(0, stat(target.c_str(), &info));
  EXPECT_EQ(0640u, info.st_mode & 0777);
}

TEST_F(SafeFileTest, AFolderThatDoesNotExistFailsWithoutAFile) {
  R_SafeFile file(dir.file("missing/data.xml").c_str());
  EXPECT_FALSE(file.isOK());
  EXPECT_FALSE(file.commit());
  EXPECT_EQ(std::set<std::string>{"data.xml"}, namesIn(dir.path()));
}
