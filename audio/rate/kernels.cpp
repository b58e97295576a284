#include "audio/rate/kernels.h"

// The SSE2 kernels are made here: every x86 build is for SSE2 at least.
#if defined(__x86_64__) || defined(__i386__) || defined(_M_X64) || defined(_M_IX86)
#define SPEECH_RATE_X86
#include "audio/rate/kernels.inl.h"
#include "audio/rate/vectors.h"
#if defined(_MSC_VER) && !defined(__clang__)
#include <intrin.h>
#endif
#endif

namespace speech::audio::rate {

#if !defined(SPEECH_RATE_X86)

bool hasLevel(Level level) { return level == Level::kPlain; }
const Kernels* kernelsFor(Level, std::int32_t) { return nullptr; }

#else

extern const Kernels kAvx2Small;
extern const Kernels kAvx2Large;

namespace {

constexpr Kernels kSse2Small = makeKernels<Vector128<Level::kSse2>, 8>();
constexpr Kernels kSse2Large = makeKernels<Vector128<Level::kSse2>, 32>();

bool hasAvx2() {
#if defined(_MSC_VER) && !defined(__clang__)
  int leaf[4];
  __cpuid(leaf, 1);
  constexpr int kOsSavesState = 1 << 27;
  if ((leaf[2] & kOsSavesState) == 0 || (_xgetbv(0) & 6) != 6) return false;
  __cpuidex(leaf, 7, 0);
  return (leaf[1] & (1 << 5)) != 0;
#else
  return __builtin_cpu_supports("avx2") != 0;
#endif
}

}  // namespace

bool hasLevel(Level level) { return level != Level::kAvx2 || hasAvx2(); }

const Kernels* kernelsFor(Level level, std::int32_t taps) {
  const bool isSmall = taps <= 8;
  switch (level) {
    case Level::kPlain:
      return nullptr;
    case Level::kSse2:
      return isSmall ? &kSse2Small : &kSse2Large;
    case Level::kAvx2:
      return isSmall ? &kAvx2Small : &kAvx2Large;
  }
  return nullptr;
}

#endif

Level bestLevel() {
  if (hasLevel(Level::kAvx2)) return Level::kAvx2;
  return hasLevel(Level::kSse2) ? Level::kSse2 : Level::kPlain;
}

}  // namespace speech::audio::rate
