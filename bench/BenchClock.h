#pragma once
// Timing shared by the benchmarks: a steady clock and the median of a run's rounds.
#include <vector>

namespace SASM {

class BenchClock {
 public:
  // Seconds on the performance counter.
  static double Seconds();
  static double Median(std::vector<double> values);
};

}  // namespace SASM
