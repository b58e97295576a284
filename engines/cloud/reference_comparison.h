#pragma once

// ReferenceComparison: how far decoded samples are from those of a reference decoder.

#include <cstdint>
#include <span>

namespace speech {

class ReferenceComparison {
 public:
  /// @param reference  the expected samples, which must outlive the comparison; empty for none
  explicit ReferenceComparison(std::span<const std::int16_t> reference) : remaining_(reference) {}

  /// Compares decoded samples with the next reference samples; those without a counterpart do not count.
  void add(std::span<const std::int16_t> decoded);

  /// 10 · log10(32767² / mean squared difference); 99 when there is no difference.
  double peakSignalToNoiseDecibels() const;

  /// Prints the figures to standard output.
  /// Kept: below 96 dB the process ends with exit code 1.
  void reportAndEnforce(int sampleRateHz) const;

 private:
  std::span<const std::int16_t> remaining_;
  int comparedCount_ = 0;
  int largestDifference_ = 0;
  double squaredSum_ = 0;
};

}  // namespace speech
