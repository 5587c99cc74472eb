// The byte streams, over memory and files; R_SafeFile, the one way the system replaces a file; and R_BinaryObject, a
// file carried inside a stored block, in files of them, R_BinaryObjectList.
#include "core/r_safefile.h"

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <set>
#include <string>

#include "core/r_binaryobject.h"
#include "core/r_binaryobjectlist.h"
#include "core/r_bufferinputstream.h"
#include "core/r_bufferoutputstream.h"
#include "core/r_fileinputstream.h"
#include "core/r_fileoutputstream.h"
#include "tests/support/stored_bytes.h"
#include "tests/support/test_files.h"

namespace {

// The object "a.txt" holding abc: type, version, name, length, checksum, bytes.
const char kAbcBlock[] = "99 01 05 00 61 2E 74 78 74 02 03 00 00 00 02 EE 7E 1B 00 61 62 63";
// A list of that object described as "d": type, magic, count, description, the object, magic.
const std::string kOneObjectFile =
    std::string("9A 02 40 30 20 10 02 01 00 00 00 01 01 00 64 ") + kAbcBlock + " 02 40 30 20 10";

std::string asText(const Bytes& bytes) { return std::string(bytes.begin(), bytes.end()); }

std::set<std::string> namesIn(const std::string& dir) {
  std::set<std::string> names;
  DIR* handle = opendir(dir.c_str());
  while (dirent* entry = readdir(handle))
    if (entry->d_name[0] != '.') names.insert(entry->d_name);
  closedir(handle);
  return names;
}

// Steps over the real ones, of which the one named by `failing` fails; a write fails only at its `failing_write`th
// call, so a failure can land in the middle of a file.
enum class Step { none, create, write, sync, close, rename };
Step failing = Step::none;
int failing_write = 1, writes = 0;
const R_SafeFile::Steps& real = R_SafeFile::systemSteps();

int fakeCreate(const char* path) { return failing == Step::create ? (errno = ENOSPC, -1) : real.create(path); }
long fakeWrite(int fd, const void* d, size_t n) {
  return failing == Step::write && ++writes == failing_write ? -1 : real.write(fd, d, n);
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

TEST(StreamTest, StreamsAreLittleEndianAShortReadGivesZeroAndFailsAndAFullBufferCounts) {
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
  EXPECT_TRUE(out.getCount() == 5 && !out.isOK());
  EXPECT_EQ("45 23 FF FF AA AA", hexOf(Bytes(buffer, buffer + 6)));
  // Files: every byte across the input's blocks, and an output that does not open is harmless.
  TempDir dir;
  std::string long_file;
  for (int i = 0; i < 70000; ++i) long_file += static_cast<char>((i * 7) & 0xFF);
  writeFile(dir.file("data.bin"), long_file);
  R_FileInputStream stream(dir.file("data.bin").c_str());
  std::string read;
  for (int c = stream.readByte(); c >= 0; c = stream.readByte()) read += static_cast<char>(c);
  EXPECT_EQ(long_file, read);
  EXPECT_FALSE(stream.isOK() || R_FileInputStream(dir.file("missing.bin").c_str()).isOK());
  R_FileOutputStream file(dir.file("data.bin").c_str()), nowhere(dir.file("no/such/dir/out.bin").c_str());
  file.writeWord(0x0A0D);
  nowhere.writeDouble(2.0);
  EXPECT_TRUE(file.close() && !nowhere.close());
  EXPECT_EQ("\x0D\x0A", readFile(dir.file("data.bin")));
}

// Blocks that cross the 64 KiB buffer's end, between single bytes, keep their order; the replaced file keeps its
// permissions.
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
  struct stat info = {};
  EXPECT_TRUE(stat(target.c_str(), &info) == 0 && (info.st_mode & 0777) == 0640);
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
      EXPECT_TRUE(row.step == Step::none || !file.commit());
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
  EXPECT_EQ("new|victim|left by a crash", readFile(target) + "|" + readFile(dir.file("victim")) + "|" +
                                              readFile(dir.file("data.xml.tmp")));
}

TEST(BinaryObjectTest, LoadFileTakesTheWholeFileWithItsChecksumAndSavesAsABlock) {
  TempDir dir;
  std::string big;
  for (int i = 0; i < 200000; ++i) big += static_cast<char>((i * 31 + i / 256) & 0xFF);
  writeFile(dir.file("abc"), "abc");
  writeFile(dir.file("empty"), "");
  writeFile(dir.file("big"), big);
  R_BinaryObject object;
  EXPECT_FALSE(object.loadFile(dir.file("missing").c_str(), "x") || object.loadFile(dir.file("empty").c_str(), "x"));
  EXPECT_TRUE(object.isEmpty());
  ASSERT_TRUE(object.loadFile(dir.file("abc").c_str(), "a.txt"));
  EXPECT_EQ(kAbcBlock, hexOf(savedBytes(object)));
  EXPECT_EQ(bytesOf(kAbcBlock), reloadAndSave<R_BinaryObject>(bytesOf(kAbcBlock)));
  expectEveryCutFails<R_BinaryObject>(kAbcBlock, [](const R_BinaryObject& o) { return o.isEmpty(); });
  R_BinaryObject large;  // a load wants an empty object
  ASSERT_TRUE(large.loadFile(dir.file("big").c_str(), "big.bmp") && large.saveFile(dir.file("out").c_str()));
  EXPECT_EQ(big, readFile(dir.file("out")));
  EXPECT_FALSE(large.saveFile(dir.file("no/such/dir").c_str()));
}

TEST(BinaryObjectTest, AWrongTypeOrChecksumFailsAndANonPositiveLengthEndsTheBlockEmpty) {
  R_BinaryObject object;
  for (size_t at : {0, 15}) {
    Bytes bytes = bytesOf(kAbcBlock);
    bytes[at] ^= 1;
    EXPECT_FALSE(loadFrom(bytes, &object)) << at;
  }
  const struct { const char* length; bool ok; int next; } rows[] = {
      {"00 00 00 00", true, 0x55}, {"FF FF FF FF", true, 0x55}, {"FF FF FF 7F", false, -1},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.length);
    R_BinaryObject fresh;
    int next = 0;
    Bytes bytes = bytesOf(std::string("99 01 00 00 02 ") + row.length + " 02 00 00 00 00 55");
    EXPECT_EQ(row.ok, loadFrom(bytes, &fresh, &next));
    EXPECT_TRUE(fresh.isEmpty() && row.next == next);
  }
}

TEST(BinaryObjectListTest, SaveFileWritesWhatLoadFileGivesBackAndADamagedFileFails) {
  TempDir dir;
  writeFile(dir.file("abc"), "abc");
  R_BinaryObjectList list;
  list.setDescription("d");
  EXPECT_FALSE(list.add(dir.file("missing").c_str(), "b.txt"));
  ASSERT_TRUE(list.add(dir.file("abc").c_str(), "a.txt") && list.saveFile(dir.file("list").c_str()));
  EXPECT_EQ(asText(bytesOf(kOneObjectFile)), readFile(dir.file("list")));
  R_BinaryObjectList again;
  ASSERT_TRUE(again.loadFile(dir.file("list").c_str()));
  ASSERT_EQ(1, again.getCount());
  EXPECT_EQ("a.txt d", std::string(again.getName(0).get()) + " " + again.getDescription().get());
  ASSERT_TRUE(again.saveObject(0, dir.file("a.txt").c_str()));
  EXPECT_EQ("abc", readFile(dir.file("a.txt")));
  // A cut file fails at every length, and so does a wrong type, magic or checksum.
  const Bytes bytes = bytesOf(kOneObjectFile);
  for (size_t cut = 0; cut < bytes.size(); ++cut) {
    writeFile(dir.file("cut"), asText(Bytes(bytes.begin(), bytes.begin() + static_cast<long>(cut))));
    EXPECT_FALSE(R_BinaryObjectList().loadFile(dir.file("cut").c_str())) << cut;
  }
  EXPECT_FALSE(R_BinaryObjectList().loadFile(dir.file("missing").c_str()));
  const struct { size_t at; int objects_read; } rows[] = {
      {0, 0}, {2, 0} /* first magic: no object is read */, {41, 1} /* last magic */, {30, 1} /* checksum */,
  };
  for (const auto& row : rows) {
    Bytes damaged = bytes;
    damaged[row.at] ^= 1;
    writeFile(dir.file("bad"), asText(damaged));
    R_BinaryObjectList damaged_list;
    EXPECT_FALSE(damaged_list.loadFile(dir.file("bad").c_str())) << row.at;
    EXPECT_EQ(row.objects_read, damaged_list.getCount()) << row.at;
  }
}
