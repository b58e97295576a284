#pragma once

// The plain producer's samples, computed with vectors. There are two ways, because no single one is fast for
// all rates.

#include <array>
#include <cstdint>
#include <span>

#include "audio/rate/kernels.h"
#include "audio/rate/producers.h"

namespace speech::audio::rate {

/// For rates that visit thousands of phases: a vector holds many taps of one output sample, taken from rows
/// in which the filter entries for a phase lie side by side.
class RowFilter {
 public:
  /// `kernels` is what kernelsFor gives for wingTaps(setting).
  RowFilter(const FilterSetting& setting, const Kernels& kernels);
  RowFilter(const RowFilter&) = delete;
  RowFilter& operator=(const RowFilter&) = delete;

  /// Whether the rows fit. They do for every filter that fits into the work buffer.
  static bool serves(const FilterSetting& setting, const Kernels& kernels);

  /// The same as produceFiltered.
  void produce(const WorkBuffer& work, std::uint32_t clock, std::span<std::int16_t> output);

 private:
  static constexpr std::size_t kTableLength = 32768;
  static constexpr std::int32_t kMostTaps = 2048;  // of one wing

  void makeRows(std::int16_t* to, std::size_t filterEnd) const;
  bool planCarryOver();

  const FilterSetting setting_;
  const Kernels& kernels_;
  PhaseRows rows_;
  Kernels::RowSums rowSums_;
  std::int32_t rowCount_;
  // On the converter's stack, and not cleared: they are written before they are read.
  alignas(64) std::array<std::int16_t, kTableLength> table_;
  alignas(64) std::array<std::int16_t, kWorkLength + kReadAhead> backward_;
  std::array<std::int16_t, kMostTaps> between_;
  std::array<std::uint8_t, kMostTaps / 8> carryOver_;
};

/// For rates in a simple ratio, which visit few phases: a vector holds one tap of many output samples. The
/// coefficients of each phase are computed once, and the input is split into columns so that neighbouring
/// output samples of a phase read neighbouring places. From 48000 to 16000 Hz, for example, there is one
/// phase and output sample i needs the samples around 3 * i, so there are three columns: samples 0, 3, 6,
/// ..., then 1, 4, 7, ..., then 2, 5, 8, ...
class SteadyFilter {
 public:
  /// `kernels` is what kernelsFor gives for wingTaps(setting).
  SteadyFilter(const FilterSetting& setting, const Kernels& kernels);
  SteadyFilter(const SteadyFilter&) = delete;
  SteadyFilter& operator=(const SteadyFilter&) = delete;

  /// Whether the phases are few enough.
  static bool serves(const FilterSetting& setting);

  /// The same as produceFiltered.
  void produce(const WorkBuffer& work, std::uint32_t clock, std::span<std::int16_t> output);

 private:
  static constexpr std::int32_t kMostPhases = 8;
  static constexpr std::int32_t kMostColumns = 8;
  // 64 taps times the larger of phases and columns, with room for coefficients of 16384 or more twice.
  static constexpr std::size_t kMostTaps = 1024;

  struct Phase {
    std::size_t begin = 0;  // of its taps in the tables
    std::int32_t taps = 0;
    std::int32_t unitTaps = 0;
    std::int32_t alignment = -1;  // the centre's column for which `place_` holds
  };

  void addPhase(Phase& phase, std::uint32_t fraction);
  void addTap(Phase& phase, int coef, std::int32_t distance);
  void planCarryOver(const Phase& phase);
  void alignTo(Phase& phase, std::int32_t alignment);

  const FilterSetting setting_;
  const Kernels& kernels_;
  std::int32_t phaseCount_;
  std::int32_t columnCount_;  // input samples from one output sample of a phase to the next
  std::int32_t columnLength_;
  std::array<Phase, kMostPhases> phases_{};
  std::array<std::int16_t, kMostTaps> coef_{};
  std::array<std::int32_t, kMostTaps> distance_{};  // of the tap's sample from the centre
  std::array<std::int32_t, kMostTaps> place_{};     // the same in the columns
  std::array<std::uint8_t, kMostTaps> carryOver_{};
  std::size_t tapCount_ = 0;
  alignas(64) std::array<std::int16_t, kWorkLength + kMostColumns * kReadAhead> columns_{};
};

}  // namespace speech::audio::rate
