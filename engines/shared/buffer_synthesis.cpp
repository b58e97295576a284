#include "engines/shared/buffer_synthesis.h"

#include <cstdlib>
#include <cstring>

#include "engines/shared/speak_flags.h"
#include "lxapi/lxapi.h"
#include "win32/text.h"

namespace speech {
namespace {

/// What the engine library has rendered, given back to it at the end.
class EngineBuffer {
 public:
  explicit EngineBuffer(std::uint32_t ttsHandle)
      : ttsHandle_(ttsHandle), byteCount_(LXAPI_GetBuffer(ttsHandle, &bytes_)) {}
  EngineBuffer(const EngineBuffer&) = delete;
  EngineBuffer& operator=(const EngineBuffer&) = delete;
  ~EngineBuffer() {
    LXAPI_FreeBuffer(bytes_);
    LXAPI_BufferClose(ttsHandle_);
  }

  /// Negative when the engine failed.
  int byteCount() const { return byteCount_; }

  /// A copy from the C runtime's heap with `extraBytes` zero bytes behind it; null without memory.
  unsigned char* copy(std::size_t extraBytes) const {
    const auto count = static_cast<std::size_t>(byteCount_);
    auto* const copied = static_cast<unsigned char*>(std::calloc(count + extraBytes, 1));
    if (copied != nullptr && count > 0) std::memcpy(copied, bytes_, count);
    return copied;
  }

 private:
  std::uint32_t ttsHandle_;
  void* bytes_ = nullptr;
  int byteCount_;
};

}  // namespace

int synthesizeIntoBuffer(std::uint32_t ttsHandle, const wchar_t* text, bool flag, std::size_t extraBytes,
                         unsigned char** out) {
  LXAPI_SetOutputBuffer(ttsHandle, 0);
  if (LXAPI_BufferOpen(ttsHandle, toUtf8(textOrEmpty(text)).c_str(), -1, speakFlags(flag), 0) != LX_OK)
    return 0;
  const EngineBuffer rendered(ttsHandle);
  if (rendered.byteCount() < 0) return 0;
  if (out == nullptr) return rendered.byteCount();
  unsigned char* const copied = rendered.copy(extraBytes);
  if (copied == nullptr) return 0;
  *out = copied;
  return rendered.byteCount();
}

}  // namespace speech
