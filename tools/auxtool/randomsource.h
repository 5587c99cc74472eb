// A small deterministic generator (splitmix64), so that a seed gives the
// same synthetic database on every machine.
#ifndef TOOLS_AUXTOOL_RANDOMSOURCE_H
#define TOOLS_AUXTOOL_RANDOMSOURCE_H

#include <cstdint>

class RandomSource {
 public:
  explicit RandomSource(uint64_t seed) : state(seed) {}

  uint64_t next();
  // Uniform in [0, 1).
  double uniform();
  // Uniform integer in [low, high]. Requires: low <= high.
  int between(int low, int high);
  // Standard normal, by the Box-Muller transform.
  double normal();

 private:
  uint64_t state;
};

#endif
