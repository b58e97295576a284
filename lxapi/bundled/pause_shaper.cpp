#include "lxapi/bundled/pause_shaper.h"

#include <algorithm>
#include <cstdlib>

namespace speech::lxapi {
namespace {

// Some 60 dB below full scale: what remains of a voice there is not heard.
constexpr int kQuiet = 32;

}  // namespace

PauseShaper::PauseShaper(uint32_t sampleRateHz, Output output)
    : sampleRateHz_(sampleRateHz), output_(std::move(output)) {}

void PauseShaper::write(std::span<const int16_t> samples) {
  const auto isLoud = [](int16_t sample) { return std::abs(sample) > kQuiet; };
  const auto lastLoud = std::find_if(samples.rbegin(), samples.rend(), isLoud);
  if (lastLoud != samples.rend()) {
    flush();
    const size_t loudCount = samples.size() - static_cast<size_t>(lastLoud - samples.rbegin());
    pass(samples.first(loudCount));
    samples = samples.subspan(loudCount);
  }
  quiet_.insert(quiet_.end(), samples.begin(), samples.end());
}

void PauseShaper::endClause(int32_t pauseMs) {
  const uint64_t frames = static_cast<uint64_t>(pauseMs) * sampleRateHz_ / 1000;
  quiet_.assign(static_cast<size_t>(frames), 0);
  flush();
}

void PauseShaper::flush() {
  pass(quiet_);
  quiet_.clear();
}

void PauseShaper::pass(std::span<const int16_t> samples) {
  if (samples.empty()) return;
  passed_ += samples.size();
  output_(samples);
}

}  // namespace speech::lxapi
