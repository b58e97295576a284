// Compiled for SSE2.

#include "audio/rate_kernels.inl.h"
#include "audio/rate_kernels_x86.h"
#include "audio/rate_vector128.h"

namespace rate {

using Vector = Vector128<Level::sse2>;

extern constinit const Kernels kSse2Small = makeKernels<Vector, 8>();
extern constinit const Kernels kSse2Large = makeKernels<Vector, 32>();

}  // namespace rate
