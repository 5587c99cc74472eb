#include "core/r_textbuffer.h"

#include <gtest/gtest.h>

#include <string>

namespace {
std::string text(const R_TextBuffer& buffer) { return std::string(buffer.data() ? buffer.data() : "", buffer.size()); }
}  // namespace

// Bytes put one by one and in runs of every length, across many growths,
// come out in order; NUL bytes and bytes above 127 pass as they are.
TEST(TextBufferTest, KeepsEveryByteInOrderAcrossGrowth) {
  R_TextBuffer buffer;
  std::string expected;
  for (int length = 0; length < 700; ++length) {
    std::string run(static_cast<size_t>(length), static_cast<char>('a' + length % 26));
    buffer.put(run.data(), run.size());
    buffer.put(static_cast<char>(length % 256));
    expected += run;
    expected += static_cast<char>(length % 256);
  }
  buffer.put("\xE8\xE1p", 3);
  expected += "\xE8\xE1p";
  EXPECT_EQ(expected, text(buffer));
}

TEST(TextBufferTest, ClearKeepsTheRoomAndStartsAgain) {
  R_TextBuffer buffer;
  EXPECT_EQ(0u, buffer.size());
  buffer.put("first record");
  ASSERT_TRUE(buffer.reserve(1 << 16));
  const char* room = buffer.data();
  buffer.clear();
  EXPECT_EQ(0u, buffer.size());
  buffer.put("second");
  EXPECT_EQ("second", text(buffer));
  EXPECT_EQ(room, buffer.data());
}
