#pragma once

// The plain producer's samples for rates that visit thousands of phases: a vector holds many taps of one
// output sample, from rows in which the filter entries that a phase needs lie side by side.

#include <array>
#include <cstdint>
#include <span>

#include "audio/rate_kernels.h"
#include "audio/rate_producers.h"
#include "audio/rate_work_buffer.h"

namespace rate {

class RowFilter {
 public:
  /// `kernels` is what kernelsFor gives for wingTaps(setting).
  RowFilter(const FilterSetting& setting, const Kernels& kernels);
  RowFilter(const RowFilter&) = delete;
  RowFilter& operator=(const RowFilter&) = delete;

  /// Whether the rows fit. They do for every filter that fits the work buffer.
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
  // These lie on the converter's stack and are written before they are read, so nothing clears them first.
  alignas(64) std::array<std::int16_t, kTableLength> table_;
  alignas(64) std::array<std::int16_t, kWorkLength + kReadAhead> backward_;
  std::array<std::int16_t, kMostTaps> between_;
  std::array<std::uint8_t, kMostTaps / 8> carryOver_;
};

}  // namespace rate
