#pragma once

// RATEAPI on a level of the caller's choice: tests and benchmarks compare them.

#include <cstdint>

#include <speech/audio.h>
#include "audio/rate/kernels.h"

namespace speech::audio::rate {

/// RATEAPI by the code for `level`, which the processor must have. Every level gives the same samples.
std::int32_t convert(const RateRequest& request, Level level);

}  // namespace speech::audio::rate
