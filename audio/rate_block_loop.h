#pragma once

// Walks the input in blocks and asks a producer for each block's samples.

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>

#include "audio/rate_converter.h"
#include "audio/rate_parameters.h"
#include "audio/rate_work_buffer.h"

namespace rate {

inline constexpr std::int32_t kBlockOutputLimit =
    40962;  ///< the most samples that one block may have to store

/// How the index of the last real sample is carried over a block, which decides where the real blocks end.
/// Kept: the two ways differ by a sample of tail.
enum class TailRule { filter, linear };

struct LoopSetting {
  std::uint32_t step;  ///< clock ticks per output sample, Q15, below 2^30
  std::int32_t guard;  ///< samples kept on either side of a block, at most half the work buffer
  TailRule tailRule;
};

/// Reads the input forward into a work buffer.
class InputReader {
 public:
  explicit InputReader(std::span<const std::int16_t> input) : input_(input) {}

  /// Fills `work` from `fillPosition` on.
  /// @return 0 while input is left, else the index in `work` of the input's last sample.
  std::int64_t read(WorkBuffer& work, std::int32_t fillPosition) {
    const auto inputCount = static_cast<std::int64_t>(input_.size());
    const std::int64_t wanted = kWorkLength - fillPosition;
    const std::int64_t start = std::min(readPosition_, inputCount);
    const std::int64_t available = std::min(wanted, inputCount - start);
    work.fill(fillPosition,
              input_.subspan(static_cast<std::size_t>(start), static_cast<std::size_t>(available)));
    const std::int64_t oldPosition = readPosition_;
    readPosition_ += wanted;
    return readPosition_ < inputCount ? 0 : inputCount - oldPosition + fillPosition - 1;
  }

 private:
  std::span<const std::int16_t> input_;
  std::int64_t readPosition_ = 0;
};

/// Converts request.input into request.output. `produce(work, clock, output)` fills `output`, a part of
/// request.output, with samples at `clock`, `clock + step`, and so on.
/// @return the samples stored, or -1 when a block would have to store more than kBlockOutputLimit.
template <typename Produce>
std::int32_t convertBlocks(const LoopSetting& setting, const RateRequest& request, WorkBuffer& work,
                           Produce&& produce) {
  const std::int32_t guard = setting.guard;
  InputReader reader({request.input, static_cast<std::size_t>(request.inputCount)});
  std::uint32_t clock = static_cast<std::uint32_t>(guard) << kPhaseBits;
  auto blockLength = static_cast<std::uint32_t>(kWorkLength - 2 * guard);  // input samples
  std::int32_t fillPosition = guard;
  std::int32_t total = 0;
  std::int64_t last = 0;

  while (total < request.outputCapacity) {
    if (last == 0) last = reader.read(work, fillPosition);
    if (last != 0 && last - guard < static_cast<std::int64_t>(blockLength)) {
      // Kept: an unsigned 16-bit number. After the last real block it wraps below zero and makes one more
      // block, long enough to fill up to any sensible capacity, from what the work buffer then holds.
      blockLength = static_cast<std::uint16_t>(last - guard);
      if (blockLength == 0) return total;
    }

    // Nothing here leaves 32 bits: a block ends below (2048 + 65536) << 15, and a step is below 2^30.
    const std::uint32_t ticks = blockLength << kPhaseBits;
    const auto made = static_cast<std::int32_t>((ticks + setting.step - 1) / setting.step);
    const std::int32_t wanted = request.outputCapacity - total;
    if (std::min(made, wanted) > kBlockOutputLimit) return -1;
    // Kept: a block's count is an unsigned 16-bit number.
    const std::int32_t count = std::min<std::int32_t>(static_cast<std::uint16_t>(made), wanted);
    // Past the end a block that counts as empty would come again for ever.
    if (count == 0 && last != 0) return -1;
    produce(std::as_const(work), clock, std::span(request.output + total, static_cast<std::size_t>(count)));
    total += count;

    clock += static_cast<std::uint32_t>(made) * setting.step - ticks;
    const std::int32_t creep = static_cast<std::int32_t>(clock >> kPhaseBits) - guard;
    clock -= static_cast<std::uint32_t>(creep) << kPhaseBits;
    const std::int32_t readPosition = guard + static_cast<std::int32_t>(blockLength) + creep;
    work.moveDown(readPosition - guard);
    if (last != 0) {
      last -= readPosition;
      if (setting.tailRule == TailRule::filter) ++last;
      if (setting.tailRule == TailRule::linear && last == 0) last = 1;
    }
    fillPosition = kWorkLength - readPosition + guard;
  }
  return total;
}

}  // namespace rate
