// Speech into memory.

#include "engines/shared/buffer_synthesis.h"

#include "engines/local/orvane_lxapi.h"
#include "engines/shared/guarded.h"

namespace speech {

int OrvaneLXAPI::synthesizeToBuffer(const wchar_t* text, bool flag, unsigned char** out) {
  // Kept: hosts rely on one zero byte behind the samples.
  constexpr std::size_t kExtraBytes = 1;
  return guarded(0, [&] { return synthesizeIntoBuffer(ttsHandle, text, flag, kExtraBytes, out); });
}

}  // namespace speech
