#include "core/r_a_crc16.h"

#include <gtest/gtest.h>

#include <string>

namespace {

int checksumOf(const std::string& bytes) {
  R_A_CRC16 crc;
  crc.update(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
  return crc.get();
}

}  // namespace

TEST(CRC16Test, ShiftsInEachByteTestedAtBitTenWithoutAMaskAndNeverSeesTheTwoLowestBits) {
  const struct { std::string bytes; int expected; } rows[] = {
      {"", 0},         {"abc", 0x1B7EEE}, {"abcde", 0x70EF2307}, {"xyz", 0x1DA945}, {"\xFF\xFF", 0x3F3F},
      {std::string("\x00\x00\x00\x00\x00\x80", 6), 0x20}, {"\x10", 4}, {"\x04", 1},
      {"\x01\x02\x03", 0}, {"`ab", 0x1B7EEE},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.bytes);
    EXPECT_EQ(row.expected, checksumOf(row.bytes));
  }
}
