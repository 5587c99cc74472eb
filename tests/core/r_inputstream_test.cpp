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

TEST(InputStreamTest, ReadsLittleEndianValuesAndFailsForGoodAtTheEnd) {
  Input in("34 12 FE FF FF FF 00 00 00 00 00 00 F0 3F 07 0A 0B");
  EXPECT_EQ(0x1234, in.stream.readWord());
  EXPECT_EQ(-2, in.stream.readInt32());
  EXPECT_EQ(1.0, in.stream.readDouble());
  EXPECT_EQ(7, in.stream.readByte());
  EXPECT_TRUE(in.stream.isOK());
  unsigned char buffer[5] = {0xAA, 0xAA, 0xAA, 0xAA, 0xAA};
  in.stream.readBytes(buffer, 4);
  EXPECT_EQ("0A 0B 00 00 AA", hexOf(Bytes(buffer, buffer + 5))) << "zeros for the bytes past the end";
  EXPECT_FALSE(in.stream.isOK());
  EXPECT_EQ(-1, in.stream.readByte());
  EXPECT_FALSE(in.stream.checkType(0));
}

TEST(InputStreamTest, ShortReadsAnswerZeroAndFailTheStreamWhileAWrongTypeByteDoesNot) {
  Input word("FF"), int32("01 02 03"), number("00 00 00 00 00 00 F0"), types("06 07 08");
  EXPECT_EQ(0, word.stream.readWord());
  EXPECT_EQ(0, int32.stream.readInt32());
  EXPECT_EQ(0.0, number.stream.readDouble());
  EXPECT_FALSE(word.stream.isOK() || int32.stream.isOK() || number.stream.isOK());
  EXPECT_FALSE(types.stream.checkType(5));
  EXPECT_TRUE(types.stream.isOK()) << "the wrong type byte is consumed";
  EXPECT_TRUE(types.stream.checkType(7));
  types.stream.setFailed();
  EXPECT_FALSE(types.stream.checkType(8)) << "a failed stream reads no type byte";
  EXPECT_EQ(-1, types.stream.readByte());
}
