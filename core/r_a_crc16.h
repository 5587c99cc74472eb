// The checksum of stored file images. A 32-bit state without a mask; each
// byte is shifted in bit by bit and tested at bit 10, so its two lowest bits
// never reach the state. Stored checksums depend on exactly this rule.
#ifndef CORE_R_A_CRC16_H
#define CORE_R_A_CRC16_H

#include <cstdint>

class R_A_CRC16 {
 public:
  R_A_CRC16() : state(0) {}
  void update(unsigned char byte);
  void update(const unsigned char* data, int length);
  int get() const { return static_cast<int>(state); }

 private:
  uint32_t state;
};

#endif
