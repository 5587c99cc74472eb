#include "core/r_outputstream.h"

#include <gtest/gtest.h>

#include "core/r_bufferoutputstream.h"
#include "tests/support/stored_bytes.h"

namespace {

// What one write call puts into a roomy buffer.
template <class Write>
std::string written(Write write) {
  unsigned char buffer[16];
  R_BufferOutputStream out(buffer, sizeof buffer);
  write(out);
  return hexOf(Bytes(buffer, buffer + out.getCount()));
}

}  // namespace

TEST(OutputStreamTest, WritesLittleEndianValues) {
  EXPECT_EQ("45 23", written([](R_OutputStream& out) { out.writeWord(0x12345); }));
  EXPECT_EQ("FF FF", written([](R_OutputStream& out) { out.writeWord(-1); }));
  EXPECT_EQ("00 00 00 00 00 00 F0 3F", written([](R_OutputStream& out) { out.writeDouble(1.0); }));
  EXPECT_EQ("FE FF FF FF", written([](R_OutputStream& out) { out.writeInt32(-2); }));
  EXPECT_EQ("04 03 02 01", written([](R_OutputStream& out) { out.writeInt32(0x01020304); }));
  const unsigned char bytes[] = {9, 0, 200};
  EXPECT_EQ("09 00 C8", written([&](R_OutputStream& out) { out.writeBytes(bytes, 3); }));
}

TEST(OutputStreamTest, ABufferOutputCountsTheBytesItHasNoRoomFor) {
  unsigned char buffer[6] = {0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA};
  R_BufferOutputStream out(buffer, 4);
  EXPECT_TRUE(out.isOK());
  for (int i = 1; i <= 4; ++i) out.put(i);
  EXPECT_TRUE(out.isOK());
  out.put(5);
  out.put(6);
  EXPECT_EQ(6, out.getCount());
  EXPECT_FALSE(out.isOK());
  EXPECT_EQ("01 02 03 04 AA AA", hexOf(Bytes(buffer, buffer + 6)));
}
