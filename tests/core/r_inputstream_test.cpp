#include "core/r_inputstream.h"

#include <gtest/gtest.h>

#include "core/r_bufferinputstream.h"
#include "tests/support/stored_bytes.h"

namespace {

// An input over a byte table held by the test.
struct Input {
  explicit Input(const char* hex) : bytes(bytesOf(hex)), stream(bytes.data(), static_cast<int>(bytes.size())) {}
  Bytes bytes;
  R_BufferInputStream stream;
};

}  // namespace

TEST(InputStreamTest, ReadsLittleEndianValues) {
  Input in("34 12 FE FF FF FF 00 00 00 00 00 00 F0 3F 07");
  EXPECT_EQ(0x1234, in.stream.readWord());
  EXPECT_EQ(-2, in.stream.readInt32());
  EXPECT_EQ(1.0, in.stream.readDouble());
  EXPECT_EQ(7, in.stream.readByte());
  EXPECT_TRUE(in.stream.isOK());
  EXPECT_EQ(-1, in.stream.readByte());
  EXPECT_FALSE(in.stream.isOK());
}

TEST(InputStreamTest, AnInt32OnThreeBytesAnswersZeroAndFailsTheStreamForGood) {
  Input in("01 02 03");
  EXPECT_EQ(0, in.stream.readInt32());
  EXPECT_FALSE(in.stream.isOK());
  EXPECT_FALSE(in.stream.checkType(1));
  EXPECT_EQ(-1, in.stream.readByte());
}

TEST(InputStreamTest, ShortReadsAnswerZeroAndFailTheStream) {
  Input word("FF");
  EXPECT_EQ(0, word.stream.readWord());
  EXPECT_FALSE(word.stream.isOK());
  Input number("00 00 00 00 00 00 F0");
  EXPECT_EQ(0.0, number.stream.readDouble());
  EXPECT_FALSE(number.stream.isOK());
}

TEST(InputStreamTest, AWrongTypeByteIsConsumedButDoesNotFailTheStream) {
  Input in("06 07");
  EXPECT_FALSE(in.stream.checkType(5));
  EXPECT_TRUE(in.stream.isOK());
  EXPECT_TRUE(in.stream.checkType(7));
  EXPECT_FALSE(in.stream.checkType(7)) << "the end of the input is no type byte";
  EXPECT_FALSE(in.stream.isOK());
}

TEST(InputStreamTest, ReadBytesPastTheEndStoresZerosForTheRest) {
  Input in("0A 0B");
  unsigned char buffer[5] = {0xAA, 0xAA, 0xAA, 0xAA, 0xAA};
  in.stream.readBytes(buffer, 4);
  EXPECT_EQ("0A 0B 00 00 AA", hexOf(Bytes(buffer, buffer + 5)));
  EXPECT_FALSE(in.stream.isOK());
}

TEST(InputStreamTest, SetFailedStopsAllReading) {
  Input in("01 02");
  in.stream.setFailed();
  EXPECT_FALSE(in.stream.isOK());
  EXPECT_EQ(-1, in.stream.readByte());
  EXPECT_FALSE(in.stream.checkType(1));
}
