#include "engines/cloud/reference_comparison.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace speech {
namespace {

constexpr double kSquaredFullScale = 32767.0 * 32767.0;
constexpr double kNoDifferenceDecibels = 99.0;
constexpr double kRequiredDecibels = 96.0;

}  // namespace

void ReferenceComparison::add(std::span<const std::int16_t> decoded) {
  const std::size_t count = std::min(decoded.size(), remaining_.size());
  for (std::size_t i = 0; i < count; ++i) {
    const int difference = std::abs(decoded[i] - remaining_[i]);
    largestDifference_ = std::max(largestDifference_, difference);
    squaredSum_ += static_cast<double>(difference) * difference;
  }
  comparedCount_ += static_cast<int>(count);
  remaining_ = remaining_.subspan(count);
}

double ReferenceComparison::peakSignalToNoiseDecibels() const {
  const double mean = squaredSum_ / std::max(comparedCount_, 1);
  return mean > 0 ? 10 * std::log10(kSquaredFullScale / mean) : kNoDifferenceDecibels;
}

void ReferenceComparison::reportAndEnforce(int sampleRateHz) const {
  const double decibels = peakSignalToNoiseDecibels();
  std::printf("rate=%d samples=%d max_diff=%d PSNR=%f\n", sampleRateHz, comparedCount_, largestDifference_,
              decibels);
  if (decibels < kRequiredDecibels) {
    std::printf("PSNR compliance failed\n");
    std::exit(1);
  }
}

}  // namespace speech
