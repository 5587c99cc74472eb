// The line count of a file input past the range of int: a file of more than
// 2 GB of line feeds, streamed through a pipe so that nothing that large is
// written to disk.
#include "xml/r_xmlinputfile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <climits>
#include <cstdio>
#include <string>
#include <thread>

#include "tests/support/test_files.h"

namespace {

// Writes `blocks` blocks of 1 MB line feeds into the pipe at `path`.
void writeLineFeeds(const std::string& path, long blocks) {
  FILE* pipe = fopen(path.c_str(), "wb");
  if (!pipe) return;
  const std::string block(1 << 20, '\n');
  for (long i = 0; i < blocks; ++i) {
    if (fwrite(block.data(), 1, block.size(), pipe) != block.size()) break;
  }
  fclose(pipe);
}

}  // namespace

TEST(XMLInputFileLimitsTest, TheLineCountStaysAtTheLargestIntPastIt) {
  TempDir dir;
  std::string path = dir.file("feeds");
  ASSERT_EQ(0, mkfifo(path.c_str(), 0600));
  // 2049 MB: more line feeds than an int counts.
  const long blocks = 2049;
  std::thread writer(writeLineFeeds, path, blocks);
  R_XMLInputFile input(path.c_str());
  long bytes = 0;
  int last_line = 0;
  while (input.canRead()) {
    if (input.runBegin() != input.runEnd()) {
      bytes += input.runEnd() - input.runBegin();
      input.takeRun(input.runEnd());
    } else if (input.getChar() == '\n') {
      ++bytes;
    }
    ASSERT_GE(input.getLine(), last_line);
    last_line = input.getLine();
  }
  writer.join();
  EXPECT_EQ(blocks << 20, bytes);
  EXPECT_EQ(INT_MAX, input.getLine());
}
