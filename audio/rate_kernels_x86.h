#pragma once

// The kernel sets that rate_kernels.cpp chooses from: one for wings of up to 8 taps, one for longer ones.

#include "audio/rate_kernels.h"

namespace rate {

extern const Kernels kSse2Small;
extern const Kernels kSse2Large;
extern const Kernels kSsse3Small;
extern const Kernels kSsse3Large;
extern const Kernels kAvx2Small;
extern const Kernels kAvx2Large;

}  // namespace rate
