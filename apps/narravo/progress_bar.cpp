#include "apps/narravo/progress_bar.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace narravo {
namespace {

constexpr int kCells = 40;

std::string bar(int percent) {
  const int full = percent * kCells / 100;
  std::array<char, 16> number{};
  std::snprintf(number.data(), number.size(), "] %3d %%", percent);
  std::string line = "[";
  line.append(static_cast<std::size_t>(full), '#');
  line.append(static_cast<std::size_t>(kCells - full), '-');
  return line.append(number.data());
}

}  // namespace

std::string progressLine(Seconds elapsed, Seconds expected) {
  const double fraction = elapsed <= Seconds(0) ? 0 : expected > Seconds(0) ? elapsed / expected : 1;
  return bar(static_cast<int>(std::clamp(fraction * 100, 0.0, 99.0))) + " (estimated)";
}

std::string finishedLine() { return bar(100); }

}  // namespace narravo
