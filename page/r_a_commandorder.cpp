#include "page/r_a_commandorder.h"

#include "core/r_a_crc16.h"

namespace {
R_A_LocalTime clockNow() {
  R_A_LocalTime now;
  R_A_now(now);
  return now;
}
}  // namespace

R_A_CommandOrder::R_A_CommandOrder() : R_A_CommandOrder(clockNow()) {}

R_A_CommandOrder::R_A_CommandOrder(const R_A_LocalTime& now) : stamp(makeStamp(now)), counter(0) {}

bool R_A_CommandOrder::check(int value) const {
  return (value >> 12) == stamp && (value & 1023) == counter;
}

int R_A_CommandOrder::makeStamp(const R_A_LocalTime& now) {
  const int fields[] = {now.hour, now.day, now.minute, now.month, now.second, now.year};
  R_A_CRC16 crc;
  for (int field : fields) crc.update(static_cast<unsigned char>(field & 0xFF));
  return crc.get() & 0xFFFF;
}
