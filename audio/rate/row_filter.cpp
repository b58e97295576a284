#include <algorithm>
#include <limits>

#include "audio/rate/vector_filters.h"

namespace speech::audio::rate {
namespace {

// Output samples whose sums are kept at a time.
constexpr std::size_t kRun = 256;

std::int32_t paddedTaps(const FilterSetting& setting, const Kernels& kernels) {
  return (wingTaps(setting) + kernels.lanes - 1) / kernels.lanes * kernels.lanes;
}

/// The nearest tap of a wing lies up to one sample from the centre, and its fraction may lead into the next
/// row.
std::int32_t rowCount(const FilterSetting& setting) {
  return static_cast<std::int32_t>(setting.coefStep >> kInterpBits) + 2;
}

/// Only the left wing uses the last entry: -1 in the small filter, 0 in the large one.
bool wingsDiffer(const Filter& filter) { return filter.coef.back() != 0; }

}  // namespace

bool RowFilter::serves(const FilterSetting& setting, const Kernels& kernels) {
  const std::int32_t taps = paddedTaps(setting, kernels);
  const std::int32_t tables = wingsDiffer(*setting.filter) ? 2 : 1;
  return taps <= kMostTaps && static_cast<std::size_t>(rowCount(setting) * taps * 2 * tables) <= kTableLength;
}

RowFilter::RowFilter(const FilterSetting& setting, const Kernels& kernels)
    : setting_(setting), kernels_(kernels), rowCount_(rowCount(setting)) {
  const std::size_t filterLength = setting.filter->coef.size();
  rows_ = {
      table_.data(),   table_.data(), between_.data(), carryOver_.data(), paddedTaps(setting, kernels), 0,
      setting.coefStep};
  makeRows(table_.data(), filterLength);
  if (wingsDiffer(*setting.filter)) {
    std::int16_t* right = table_.data() + rowCount_ * rows_.taps * 2;
    makeRows(right, filterLength - 1);
    rows_.right = right;
  }
  for (std::int32_t k = 0; k < rows_.taps; ++k) {
    const std::uint32_t place = static_cast<std::uint32_t>(k) * setting.coefStep;
    between_[static_cast<std::size_t>(k)] = static_cast<std::int16_t>((place & kInterpMask) << 8);
  }
  const bool carries = planCarryOver();
  const bool exact = (setting.coefStep & kInterpMask) == 0;
  const bool unity = setting.coefStep == kPhaseOne && !carries && rows_.taps == kernels.unityTaps &&
                     rows_.wideTaps == kernels.lanes;
  rowSums_ = unity ? kernels.unityRowSums : exact ? kernels.exactRowSums : kernels.rowSums;
}

void RowFilter::makeRows(std::int16_t* to, std::size_t filterEnd) const {
  const Filter& filter = *setting_.filter;
  for (std::int32_t row = 0; row < rowCount_; ++row) {
    std::int16_t* coef = to + row * rows_.taps * 2;
    std::int16_t* delta = coef + rows_.taps;
    std::uint32_t place = static_cast<std::uint32_t>(row) << kInterpBits;
    for (std::int32_t k = 0; k < rows_.taps; ++k, place += setting_.coefStep) {
      const std::size_t entry = place >> kInterpBits;
      const bool within = entry < filterEnd;
      coef[k] = within ? filter.coef[entry] : std::int16_t{0};
      delta[k] = within ? static_cast<std::int16_t>(2 * filter.coefDelta[entry]) : std::int16_t{0};
    }
  }
}

/// Decides which vectors are wide, and where the sums behind them would exceed 16 bits.
/// @return whether any would.
bool RowFilter::planCarryOver() {
  // A tap is at most twice its coefficient, and both wings add to the same sums.
  constexpr int kTapsPerCoefficient = 4;
  constexpr int kMost = std::numeric_limits<std::int16_t>::max();
  // The most that a vector of wide taps leaves in the 16-bit sums.
  constexpr int kWideTapsRest = 8;

  const auto peaks = setting_.filter->peaks;
  int load = 0;
  bool wide = true;
  bool carries = false;
  for (std::int32_t k = 0; k < rows_.taps; k += kernels_.lanes) {
    const std::size_t nearest = (static_cast<std::size_t>(k) * setting_.coefStep) >> kInterpBits;
    const std::size_t place = nearest / kPeakSpacing;
    const int most = place < peaks.size() ? peaks[place] * kTapsPerCoefficient : 0;
    wide = wide && most > kMost;
    std::uint8_t& carryOver = carryOver_[static_cast<std::size_t>(k / kernels_.lanes)];
    carryOver = 0;
    if (wide) {
      rows_.wideTaps += kernels_.lanes;
      load += kWideTapsRest;
    } else if (load + most > kMost) {
      carryOver = 1;
      carries = true;
      load = most;
    } else {
      load += most;
    }
  }
  return carries;
}

void RowFilter::produce(const WorkBuffer& work, std::uint32_t clock, std::span<std::int16_t> output) {
  std::reverse_copy(work.data(), work.data() + kWorkLength, backward_.begin());
  std::fill(backward_.begin() + kWorkLength, backward_.end(), std::int16_t{0});
  const WindowSamples samples{work.data(), backward_.data()};
  std::array<std::int32_t, kRun> sums;
  while (!output.empty()) {
    const std::size_t run = std::min(output.size(), kRun);
    const auto count = static_cast<std::int32_t>(run);
    rowSums_(rows_, samples, clock, setting_.step, count, sums.data());
    kernels_.finish(sums.data(), count, setting_.gain, output.data());
    clock += static_cast<std::uint32_t>(run) * setting_.step;
    output = output.subspan(run);
  }
}

}  // namespace speech::audio::rate
