#include "ui/LocaleMetrics.h"

#include <iterator>

namespace SASM {

namespace {

// locale, face, size delta, splash, auto-update, restart note, update choice: texts, first label, second label
constexpr LocaleMetrics kRows[] = {
    {1028, "Mingliu", -3, 3, 3, 1, 3, 1, 1},
    {1041, "Mincho", -2, 3, 3, 1, 3, 0, 1},
    {1042, "Arial", 0, 0, 3, 1, 0, 0, 0},
    {2052, "SimSun", -3, 3, 3, 1, 3, 1, 1},
    {0, "Arial", 0, 0, 0, 0, 0, 0, 0},
};

}  // namespace

const LocaleMetrics& LocaleMetrics::For(uint32_t threadLocale) {
  for (const LocaleMetrics& row : kRows) {
    if (row.locale == threadLocale) return row;
  }
  return kRows[std::size(kRows) - 1];
}

}  // namespace SASM
