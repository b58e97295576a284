#pragma once

// The plain producer's samples for rates in a simple ratio, which visit few phases of the filter. The
// coefficients of each are worked out once, the input is dealt out into columns so that neighbouring output
// samples of a phase read neighbouring places, and a vector holds one tap of many output samples.

#include <array>
#include <cstdint>
#include <span>

#include "audio/rate_kernels.h"
#include "audio/rate_producers.h"
#include "audio/rate_work_buffer.h"

namespace rate {

class SteadyFilter {
 public:
  /// `kernels` is what kernelsFor gives for wingTaps(setting).
  SteadyFilter(const FilterSetting& setting, const Kernels& kernels);
  SteadyFilter(const SteadyFilter&) = delete;
  SteadyFilter& operator=(const SteadyFilter&) = delete;

  /// Whether the rates visit few enough phases.
  static bool serves(const FilterSetting& setting);

  /// The same as produceFiltered.
  void produce(const WorkBuffer& work, std::uint32_t clock, std::span<std::int16_t> output);

 private:
  static constexpr std::int32_t kMostPhases = 8;
  static constexpr std::int32_t kMostColumns = 8;
  // 64 taps times the larger of phases and columns, the coefficients from 16384 up twice, and odd ends.
  static constexpr std::size_t kMostTaps = 1024;

  struct Phase {
    std::size_t begin = 0;  // of its taps in the tables
    std::int32_t taps = 0;
    std::int32_t wholeTaps = 0;
    std::int32_t alignment = -1;  // the centre's column that `place_` holds for
  };

  void addPhase(Phase& phase, std::uint32_t fraction);
  void addTap(Phase& phase, int coef, std::int32_t distance);
  void planCarryOver(const Phase& phase);
  void alignTo(Phase& phase, std::int32_t alignment);

  const FilterSetting setting_;
  const Kernels& kernels_;
  std::int32_t phaseCount_;
  std::int32_t columnCount_;  // input samples from one output sample of a phase to its next
  std::int32_t columnLength_;
  std::array<Phase, kMostPhases> phases_{};
  std::array<std::int16_t, kMostTaps> coef_{};
  std::array<std::int32_t, kMostTaps> distance_{};  // of the tap's sample from the centre
  std::array<std::int32_t, kMostTaps> place_{};     // the same in the columns
  std::array<std::uint8_t, kMostTaps> carryOver_{};
  std::size_t tapCount_ = 0;
  alignas(64) std::array<std::int16_t, kWorkLength + kMostColumns * kReadAhead> columns_{};
};

}  // namespace rate
