#include "core/r_outputstream.h"

#include <gtest/gtest.h>

#include "core/r_bufferoutputstream.h"
#include "tests/support/stored_bytes.h"

TEST(OutputStreamTest, AWordKeepsTheLowSixteenBitsLowByteFirst) {
  EXPECT_EQ("45 23 FF FF", hexOf(bytesSavedBy([](R_OutputStream& out) {
              out.writeWord(0x12345);
              out.writeWord(-1);
            })));
}

TEST(OutputStreamTest, ABufferOutputCountsTheBytesItHasNoRoomFor) {
  unsigned char buffer[6] = {0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA};
  R_BufferOutputStream out(buffer, 4);
  for (int i = 1; i <= 4; ++i) out.put(i);
  EXPECT_TRUE(out.isOK());
  out.put(5);
  out.put(6);
  EXPECT_EQ(6, out.getCount());
  EXPECT_FALSE(out.isOK());
  EXPECT_EQ("01 02 03 04 AA AA", hexOf(Bytes(buffer, buffer + 6)));
}
