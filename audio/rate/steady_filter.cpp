#include <algorithm>
#include <bit>
#include <cstdlib>
#include <limits>

#include "audio/rate/vector_filters.h"

namespace speech::audio::rate {
namespace {

// A tap of this coefficient is the sample itself.
constexpr int kUnit = 16384;
constexpr std::int32_t kLongestRun = 64;

/// Output samples after which a conversion with this step returns to the same phase.
std::int32_t phaseCountOf(std::uint32_t step) {
  return static_cast<std::int32_t>(kPhaseOne >> std::min(std::countr_zero(step), kPhaseBits));
}

}  // namespace

bool SteadyFilter::serves(const FilterSetting& setting) {
  const std::int32_t phases = phaseCountOf(setting.step);
  return phases <= kMostPhases &&
         static_cast<std::uint64_t>(setting.step) * static_cast<std::uint32_t>(phases) <=
             static_cast<std::uint64_t>(kMostColumns) << kPhaseBits;
}

SteadyFilter::SteadyFilter(const FilterSetting& setting, const Kernels& kernels)
    : setting_(setting),
      kernels_(kernels),
      phaseCount_(phaseCountOf(setting.step)),
      columnCount_(
          static_cast<std::int32_t>((setting.step * static_cast<std::uint32_t>(phaseCount_)) >> kPhaseBits)),
      columnLength_(kWorkLength / columnCount_ + kReadAhead) {
  const std::uint32_t spacing = kPhaseOne / static_cast<std::uint32_t>(phaseCount_);
  for (std::int32_t i = 0; i < phaseCount_; ++i) {
    addPhase(phases_[static_cast<std::size_t>(i)], static_cast<std::uint32_t>(i) * spacing);
  }
}

void SteadyFilter::addPhase(Phase& phase, std::uint32_t fraction) {
  const Filter& filter = *setting_.filter;
  phase.begin = tapCount_;
  // A coefficient of 16384 or more becomes a unit tap and one with the rest. All unit taps come first.
  for (const bool isUnit : {true, false}) {
    const auto addWing = [&](std::uint32_t wingPhase, std::size_t end, std::int32_t nearest,
                             std::int32_t direction) {
      std::int32_t distance = nearest;
      for (std::uint32_t place = (wingPhase * setting_.coefStep) >> kPhaseBits; (place >> kInterpBits) < end;
           place += setting_.coefStep, distance += direction) {
        const std::size_t entry = place >> kInterpBits;
        const int between = static_cast<int>(place & kInterpMask);
        const int coef = filter.coef[entry] + ((filter.coefDelta[entry] * between) >> kInterpBits);
        if (isUnit && coef >= kUnit) addTap(phase, kUnit, distance);
        if (!isUnit && coef != 0) addTap(phase, coef >= kUnit ? coef - kUnit : coef, distance);
      }
    };
    addWing(fraction, filter.coef.size(), 0, -1);
    // At a phase of zero a whole sample out: the centre belongs to the left wing.
    addWing(kPhaseOne - fraction, filter.coef.size() - 1, 1, 1);
    if (isUnit) phase.unitTaps = phase.taps;
  }
  planCarryOver(phase);
}

void SteadyFilter::addTap(Phase& phase, int coef, std::int32_t distance) {
  coef_[tapCount_] = static_cast<std::int16_t>(coef);
  distance_[tapCount_] = distance;
  ++tapCount_;
  ++phase.taps;
}

/// A tap is at most twice its coefficient.
void SteadyFilter::planCarryOver(const Phase& phase) {
  int load = 0;
  for (std::size_t tap = phase.begin + static_cast<std::size_t>(phase.unitTaps); tap < tapCount_; ++tap) {
    const int most = 2 * std::abs(coef_[tap]);
    const bool full = load + most > std::numeric_limits<std::int16_t>::max();
    carryOver_[tap] = full ? 1 : 0;
    load = full ? most : load + most;
  }
}

void SteadyFilter::alignTo(Phase& phase, std::int32_t alignment) {
  if (phase.alignment == alignment) return;
  phase.alignment = alignment;
  // Counted from far before the centre, so that neither quotient nor remainder is negative.
  const std::int32_t lead = kWorkLength / columnCount_;
  for (std::size_t tap = phase.begin; tap < phase.begin + static_cast<std::size_t>(phase.taps); ++tap) {
    const std::int32_t position = lead * columnCount_ + alignment + distance_[tap];
    place_[tap] = position % columnCount_ * columnLength_ + position / columnCount_ - lead;
  }
}

void SteadyFilter::produce(const WorkBuffer& work, std::uint32_t clock, std::span<std::int16_t> output) {
  const std::int16_t* columns = work.data();
  if (columnCount_ > 1) {
    kernels_.splitIntoColumns(work.data(), kWorkLength, columnCount_, columnLength_, columns_.data());
    columns = columns_.data();
  }
  const auto phaseStride = static_cast<std::size_t>(phaseCount_);
  std::array<std::int32_t, kLongestRun> sums;
  std::array<std::int16_t, kLongestRun> samples;
  for (std::size_t first = 0; first < std::min(phaseStride, output.size()); ++first, clock += setting_.step) {
    const std::uint32_t fraction = clock & kPhaseMask;
    Phase& phase = phases_[fraction * static_cast<std::uint32_t>(phaseCount_) >> kPhaseBits];
    const auto centre = static_cast<std::int32_t>(clock >> kPhaseBits);
    alignTo(phase, centre % columnCount_);
    const SteadyPhase steady{coef_.data() + phase.begin, place_.data() + phase.begin,
                             carryOver_.data() + phase.begin, phase.taps, phase.unitTaps};
    const std::int16_t* place = columns + centre / columnCount_;
    const std::size_t count = (output.size() - first + phaseStride - 1) / phaseStride;
    const auto run = static_cast<std::size_t>(kernels_.steadyRun);
    for (std::size_t made = 0; made < count; made += run, place += run) {
      kernels_.steadySums(steady, place, sums.data());
      kernels_.finish(sums.data(), kernels_.steadyRun, setting_.gain, samples.data());
      std::int16_t* to = output.data() + first + made * phaseStride;
      for (std::size_t i = 0; i < std::min(run, count - made); ++i) to[i * phaseStride] = samples[i];
    }
  }
}

}  // namespace speech::audio::rate
