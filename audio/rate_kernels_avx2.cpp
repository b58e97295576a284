// Compiled for AVX2.

#include "audio/rate_kernels.inl.h"
#include "audio/rate_kernels_x86.h"
#include "audio/rate_vector128.h"
#include "audio/rate_vector256.h"

namespace rate {

// A wing of 6 taps would leave most of a wider vector empty.
extern constinit const Kernels kAvx2Small = makeKernels<Vector128<Level::avx2>, 8>();
extern constinit const Kernels kAvx2Large = makeKernels<Vector256, 32>();

}  // namespace rate
