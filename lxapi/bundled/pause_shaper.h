#pragma once

// Gives the pauses between clauses the length that the host asked for.
//
// The synthesizer makes pauses of its own, ahead of the point where it reports a clause's end. A run of quiet
// samples is therefore held back until it is known whether a clause ended with it: then it is exchanged for
// silence of the wanted length, else it passes unchanged.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace speech::lxapi {

class PauseShaper {
 public:
  using Output = std::function<void(std::span<const int16_t>)>;

  PauseShaper(uint32_t sampleRateHz, Output output);

  void write(std::span<const int16_t> samples);

  /// A clause has ended with the samples written so far: the pause before this point becomes `pauseMs` long.
  void endClause(int32_t pauseMs);

  /// Passes on what is held back.
  void flush();

  /// How many samples have been passed on or are held back: the place of the next one.
  uint64_t position() const { return passed_ + quiet_.size(); }

 private:
  void pass(std::span<const int16_t> samples);

  const uint32_t sampleRateHz_;
  const Output output_;
  std::vector<int16_t> quiet_;
  uint64_t passed_ = 0;
};

}  // namespace speech::lxapi
