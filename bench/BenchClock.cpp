#include "bench/BenchClock.h"

#include "engine/win32/WindowsApi.h"

#include <algorithm>

namespace SASM {

double BenchClock::Seconds() {
  static const LARGE_INTEGER frequency = [] {
    LARGE_INTEGER value;
    QueryPerformanceFrequency(&value);
    return value;
  }();
  LARGE_INTEGER now;
  QueryPerformanceCounter(&now);
  return static_cast<double>(now.QuadPart) / static_cast<double>(frequency.QuadPart);
}

double BenchClock::Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

}  // namespace SASM
