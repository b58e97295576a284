#pragma once

// Walks over the input in blocks and has a producer make each block's samples.

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>

#include <speech/audio.h>
#include "audio/rate/producers.h"
#include "audio/rate/tables.h"

namespace speech::audio::rate {

/// The most samples that one block may store: ten for every sample of the work buffer, and two to spare.
inline constexpr std::int32_t kBlockOutputLimit = 10 * kWorkLength + 2;

/// How the index of the last real sample is carried over a block.
/// Kept: the filters have one more sample of tail than the linear method, whose index skips 0.
enum class TailRule { kFilter, kLinear };

struct LoopSetting {
  std::uint32_t step;  ///< clock ticks per output sample, Q15, below 2^30
  std::int32_t guard;  ///< samples kept on either side of a block, below half the work buffer
  TailRule tailRule;
};

/// Reads the input into a work buffer, stretch by stretch.
class InputReader {
 public:
  explicit InputReader(std::span<const std::int16_t> input) : input_(input) {}

  /// Fills `work` from `fillPosition` on.
  /// @return 0 while input is left, else the index in `work` of the input's last sample, or where it would be
  ///   if the input ended before `work` begins.
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
/// request.output, with samples at `clock`, `clock + step`, and so on; all that it looks at lies in `work`.
///
/// The work buffer X holds, before and behind each block, `guard` samples for the filter to look at. From
/// 8000 to 16000 Hz with the large filter (step 1/2, guard 43), 4153 input samples are converted like this:
///
///   1. X[0..42] is zero. 4053 samples are read into X[43..4095]. Input is left, so `last` is 0 and the block
///      is X[43..4052], 4010 samples, which make 8020. X[4010..4095] moves down to X[0..85].
///   2. 100 samples are read into X[86..185], followed by zeros, and `last` is 185. That is 142 samples after
///      X[43], so the block is X[43..184] and makes 284. X[142..4095] moves down, and the last sample is now
///      X[43]. X[3954..4095] still has its old samples too.
///   3. 8304 of 8306 samples are stored. The length stays 142, and the next block makes the two missing ones.
///      With a larger capacity there would be more such blocks.
///
/// @return the samples stored; -1 if a block would have to store more than kBlockOutputLimit, or if blocks
///   without samples would follow for ever.
template <typename Produce>
std::int32_t convertBlocks(const LoopSetting& setting, const RateRequest& request, WorkBuffer& work,
                           Produce&& produce) {
  const std::int32_t guard = setting.guard;
  InputReader reader({request.input, static_cast<std::size_t>(request.inputCount)});
  std::uint32_t clock = static_cast<std::uint32_t>(guard) << kPhaseBits;
  std::int32_t blockLength = kWorkLength - 2 * guard;  // input samples
  std::int32_t fillPosition = guard;
  std::int32_t total = 0;
  std::int64_t last = 0;

  while (total < request.outputCapacity) {
    if (last == 0) {
      last = reader.read(work, fillPosition);
      // Only a read sets the length, and only one that found samples: otherwise `last` is below the guard.
      if (last >= guard && last - guard < blockLength) blockLength = static_cast<std::int32_t>(last - guard);
      if (blockLength == 0) return total;
    }

    // Nothing here leaves 32 bits: a block ends below 4096 << 15, and a step is below 2^30.
    const std::uint32_t ticks = static_cast<std::uint32_t>(blockLength) << kPhaseBits;
    const std::uint32_t made = (ticks + setting.step - 1) / setting.step;
    // Kept: a block's count is an unsigned 16-bit number, so that of 65546 samples 10 are stored.
    const std::int32_t count =
        std::min<std::int32_t>(static_cast<std::uint16_t>(made), request.outputCapacity - total);
    if (count > kBlockOutputLimit) return -1;
    produce(std::as_const(work), clock, std::span(request.output + total, static_cast<std::size_t>(count)));
    total += count;

    clock += made * setting.step - ticks;
    // Whole samples by which the clock has passed the block's end.
    const std::int32_t overshoot = static_cast<std::int32_t>(clock >> kPhaseBits) - guard;
    clock -= static_cast<std::uint32_t>(overshoot) << kPhaseBits;
    const std::int32_t readPosition = guard + blockLength + overshoot;
    work.moveDown(readPosition - guard);
    if (last != 0) {
      last -= readPosition;
      if (setting.tailRule == TailRule::kFilter) ++last;
      if (setting.tailRule == TailRule::kLinear && last == 0) last = 1;
      // All further blocks would be like this one.
      if (count == 0 && last != 0) return -1;
    }
    fillPosition = kWorkLength - readPosition + guard;
  }
  return total;
}

}  // namespace speech::audio::rate
