#include "audio/rate_kernels.h"

#include <initializer_list>

#if defined(__x86_64__) || defined(__i386__) || defined(_M_X64) || defined(_M_IX86)
#define SPEECH_RATE_X86
#include "audio/rate_kernels_x86.h"
#if defined(_MSC_VER) && !defined(__clang__)
#include <immintrin.h>
#include <intrin.h>
#endif
#endif

namespace rate {

#if !defined(SPEECH_RATE_X86)

bool hasLevel(Level level) { return level == Level::plain; }
const Kernels* kernelsFor(Level, std::int32_t) { return nullptr; }

#else

namespace {

#if defined(_MSC_VER) && !defined(__clang__)

bool hasSsse3() {
  int leaf[4];
  __cpuid(leaf, 1);
  return (leaf[2] & (1 << 9)) != 0;
}

bool hasAvx2() {
  int leaf[4];
  __cpuid(leaf, 1);
  constexpr int kOsSavesState = 1 << 27;
  if ((leaf[2] & kOsSavesState) == 0 || (_xgetbv(0) & 6) != 6) return false;
  __cpuidex(leaf, 7, 0);
  return (leaf[1] & (1 << 5)) != 0;
}

#else

bool hasSsse3() { return __builtin_cpu_supports("ssse3") != 0; }
bool hasAvx2() { return __builtin_cpu_supports("avx2") != 0; }

#endif

}  // namespace

bool hasLevel(Level level) {
  switch (level) {
    case Level::plain:
    case Level::sse2:
      return true;
    case Level::ssse3:
      return hasSsse3();
    case Level::avx2:
      return hasSsse3() && hasAvx2();
  }
  return false;
}

const Kernels* kernelsFor(Level level, std::int32_t taps) {
  const bool small = taps <= 8;
  switch (level) {
    case Level::plain:
      return nullptr;
    case Level::sse2:
      return small ? &kSse2Small : &kSse2Large;
    case Level::ssse3:
      return small ? &kSsse3Small : &kSsse3Large;
    case Level::avx2:
      return small ? &kAvx2Small : &kAvx2Large;
  }
  return nullptr;
}

#endif

Level bestLevel() {
  for (const Level level : {Level::avx2, Level::ssse3, Level::sse2}) {
    if (hasLevel(level)) return level;
  }
  return Level::plain;
}

}  // namespace rate
