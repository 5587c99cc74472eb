// The byte streams, over memory and files, and R_SafeFile, the one way the
// system replaces a file.
#include "core/r_safefile.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <set>
#include <string>

#include "core/r_bufferinputstream.h"
#include "core/r_bufferoutputstream.h"
#include "core/r_fileinputstream.h"
#include "core/r_fileoutputstream.h"
#include "tests/support/stored_bytes.h"
#include "tests/support/test_files.h"

namespace {

std::set<std::string> namesIn(const std::string& dir) {
  std::set<std::string> names;
  DIR* handle = opendir(dir.c_str());
  while (dirent* entry = readdir(handle))
    if (entry->d_name[0] != '.') names.insert(entry->d_name);
  closedir(handle);
  return names;
}

// Steps over the real ones, of which the one named by `failing` fails; a
// write fails only at its `failing_write`th call, so a failure can land in
// the middle of a file.
enum class Step { none, create, write, sync, close, rename };
Step failing = Step::none;
int failing_write = 1, writes = 0;
const R_SafeFile::Steps& real = R_SafeFile::systemSteps();

int fakeCreate(const char* path) { return failing == Step::create ? (errno = ENOSPC, -1) : real.create(path); }
long fakeWrite(int fd, const void* data, size_t size) {
  return failing == Step::write && ++writes == failing_write ? -1 : real.write(fd, data, size);
}
int fakeSync(int fd) { return failing == Step::sync ? -1 : real.sync(fd); }
int fakeClose(int fd) { return real.close(fd) < 0 || failing == Step::close ? -1 : 0; }
int fakeRename(const char* from, const char* to) { return failing == Step::rename ? -1 : real.rename(from, to); }
const R_SafeFile::Steps kFaulty = {fakeCreate, fakeWrite, fakeSync, fakeClose, fakeRename, nullptr};

class SafeFileTest : public ::testing::Test {
 protected:
  void SetUp() override { writeFile(target, "old contents"); }
  void TearDown() override { failing = Step::none; }

  TempDir dir;
  std::string target = dir.file("data.xml");
};

}  // namespace

TEST(StreamTest, MemoryStreamsAreLittleEndianAShortReadGivesZeroAndFailsAndAFullBufferCounts) {
  Bytes bytes = bytesOf("34 12 FE FF FF FF 00 00 00 00 00 00 F0 3F 07 06 0A 0B");
  R_BufferInputStream in(bytes.data(), static_cast<int>(bytes.size()));
  EXPECT_EQ(0x1234, in.readWord());
  EXPECT_EQ(-2, in.readInt32());
  EXPECT_EQ(1.0, in.readDouble());
  EXPECT_TRUE(!in.checkType(5) && in.isOK()) << "a wrong type byte is consumed but fails nothing";
  EXPECT_TRUE(in.checkType(6));
  EXPECT_EQ(0, in.readInt32()) << "two bytes short";
  EXPECT_FALSE(in.isOK() || in.checkType(0));
  EXPECT_EQ(-1, in.readByte());
  unsigned char buffer[6] = {0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA};
  R_BufferOutputStream out(buffer, 4);
  out.writeWord(0x12345);
  out.writeWord(-1);
  EXPECT_TRUE(out.isOK());
  out.put(5);
  EXPECT_EQ(5, out.getCount());
  EXPECT_FALSE(out.isOK());
  EXPECT_EQ("45 23 FF FF AA AA", hexOf(Bytes(buffer, buffer + 6)));
}

TEST(StreamTest, FileStreamsReadAndWriteEveryByteAndAFileThatDoesNotOpenIsHarmless) {
  TempDir dir;
  std::string bytes;
  for (int i = 0; i < 70000; ++i) bytes += static_cast<char>((i * 7) & 0xFF);
  writeFile(dir.file("data.bin"), bytes);
  R_FileInputStream stream(dir.file("data.bin").c_str());
  std::string read;
  for (int c = stream.readByte(); c >= 0; c = stream.readByte()) read += static_cast<char>(c);
  EXPECT_EQ(bytes, read);
  EXPECT_FALSE(stream.isOK());
  EXPECT_FALSE(R_FileInputStream(dir.file("missing.bin").c_str()).isOK());
  R_FileOutputStream out(dir.file("data.bin").c_str());
  out.put(0);
  out.writeWord(0x0A0D);
  EXPECT_TRUE(out.close());
  EXPECT_EQ(std::string("\x00\x0D\x0A", 3), readFile(dir.file("data.bin")));
  R_FileOutputStream nowhere(dir.file("no/such/dir/out.bin").c_str());
  EXPECT_FALSE(nowhere.isOK());
  nowhere.writeDouble(2.0);
  EXPECT_FALSE(nowhere.close());
}

// Blocks that cross the 64 KiB buffer's end, between single bytes, keep
// their order; the replaced file keeps its permissions.
TEST_F(SafeFileTest, ACommitReplacesTheFileWithTheBytesInOrderAndLeavesNothingElse) {
  ASSERT_EQ(0, chmod(target.c_str(), 0640));
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
  EXPECT_EQ(std::set<std::string>{"data.xml"}, namesIn(dir.path()));
  struct stat info;
  ASSERT_EQ(0, stat(target.c_str(), &info));
  EXPECT_EQ(0640u, info.st_mode & 0777);
}

TEST_F(SafeFileTest, AFailureAtAnyStepOrNoCommitLeavesTheOldFileAndNoTemporaryOne) {
  const struct { Step step; int write_call; const char* label; } rows[] = {
      {Step::create, 1, "create"},       {Step::write, 1, "first block"},
      {Step::write, 3, "a later block"}, {Step::write, 4, "the last block, written at the commit"},
      {Step::sync, 1, "sync"},           {Step::close, 1, "close"},
      {Step::rename, 1, "rename"},       {Step::none, 1, "no commit"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.label);
    failing = row.step;
    failing_write = row.write_call;
    writes = 0;
    {
      R_SafeFile file(target.c_str(), kFaulty);
      for (int i = 0; i < 200000; ++i) file.put('y');  // four blocks of 64 KiB
      if (row.step != Step::none) {
        EXPECT_FALSE(file.commit());
      }
    }
    EXPECT_EQ("old contents", readFile(target));
    EXPECT_EQ(std::set<std::string>{"data.xml"}, namesIn(dir.path()));
  }
  R_SafeFile file(dir.file("missing/data.xml").c_str());
  EXPECT_FALSE(file.isOK() || file.commit());
  EXPECT_EQ(std::set<std::string>{"data.xml"}, namesIn(dir.path()));
}

TEST_F(SafeFileTest, AnExistingTemporaryNameOrLinkIsPassedByNotWrittenThrough) {
  writeFile(dir.file("victim"), "victim");
  writeFile(dir.file("data.xml.tmp"), "left by a crash");
  ASSERT_EQ(0, symlink(dir.file("victim").c_str(), dir.file("data.xml.tmp1").c_str()));
  R_SafeFile file(target.c_str());
  file.write("new");
  EXPECT_TRUE(file.commit());
  EXPECT_EQ("new", readFile(target));
  EXPECT_EQ("victim", readFile(dir.file("victim")));
  EXPECT_EQ("left by a crash", readFile(dir.file("data.xml.tmp")));
}
