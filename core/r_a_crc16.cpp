#include "core/r_a_crc16.h"

void R_A_CRC16::update(unsigned char byte) {
  uint32_t w = byte;
  for (int round = 0; round < 8; ++round) {
    state *= 2;
    w *= 2;
    if (w & (1u << 10)) state += 1;
    if (state & (1u << 15)) state ^= 0x1021;
  }
}

void R_A_CRC16::update(const unsigned char* data, int length) {
  for (int i = 0; i < length; ++i) update(data[i]);
}
