// Measures one piece of work for the tests of resource limits: the time it
// took and how far it raised the process's peak resident memory. The peak
// is process-wide, so growth below a peak reached earlier does not show:
// a bound checked with it is an upper bound, which is what those tests need.
#ifndef TESTS_SUPPORT_RESOURCE_METER_H
#define TESTS_SUPPORT_RESOURCE_METER_H

#include <sys/resource.h>

#include <chrono>

class ResourceMeter {
 public:
  ResourceMeter() : start(std::chrono::steady_clock::now()), start_peak_kb(peakKB()) {}

  double seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  }
  long peakGrowthMB() const { return (peakKB() - start_peak_kb) / 1024; }

 private:
  static long peakKB() {
    struct rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;  // kilobytes on Linux
  }

  std::chrono::steady_clock::time_point start;
  long start_peak_kb;
};

#endif
