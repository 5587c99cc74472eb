#include "tools/auxtool/randomsource.h"

#include <cmath>

uint64_t RandomSource::next() {
  uint64_t z = (state += 0x9E3779B97F4A7C15ULL);
  z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
  z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
  return z ^ (z >> 31);
}

double RandomSource::uniform() { return static_cast<double>(next() >> 11) * (1.0 / 9007199254740992.0); }

int RandomSource::between(int low, int high) {
  uint64_t span = static_cast<uint64_t>(high - low) + 1;
  return low + static_cast<int>(next() % span);
}

double RandomSource::normal() {
  double u1 = uniform();
  double u2 = uniform();
  if (u1 < 1e-300) u1 = 1e-300;
  return sqrt(-2.0 * log(u1)) * cos(2.0 * M_PI * u2);
}
