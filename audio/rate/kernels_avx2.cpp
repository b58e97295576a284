// Compiled for AVX2.

#include "audio/rate/kernels.inl.h"
#include "audio/rate/vectors.h"

namespace speech::audio::rate {

// A wing of 6 taps would leave most of a wider vector empty.
extern constinit const Kernels kAvx2Small = makeKernels<Vector128<Level::kAvx2>, 8>();
extern constinit const Kernels kAvx2Large = makeKernels<Vector256, 32>();

}  // namespace speech::audio::rate
