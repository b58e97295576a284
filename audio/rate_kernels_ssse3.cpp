// Compiled for SSSE3.

#include "audio/rate_kernels.inl.h"
#include "audio/rate_kernels_x86.h"
#include "audio/rate_vector128.h"

namespace rate {

using Vector = Vector128<Level::ssse3>;

extern constinit const Kernels kSsse3Small = makeKernels<Vector, 8>();
extern constinit const Kernels kSsse3Large = makeKernels<Vector, 32>();

}  // namespace rate
