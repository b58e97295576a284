// Synthesis to files and to memory.

#include <new>

#include "lxapi/bundled/exported_call.h"
#include "lxapi/bundled/file_output.h"
#include "lxapi/bundled/library.h"
#include "lxapi/lxapi.h"
#include "win32/text.h"

using namespace speech::lxapi;

namespace {

// Over three hours of speech; a 32-bit process has no room for much more in one piece.
constexpr size_t kMostBufferBytes = 512U << 20;

class BufferSink final : public SpeechSink {
 public:
  bool samples(std::span<const int16_t> samples) override {
    if ((result.size() + samples.size()) * sizeof(int16_t) > kMostBufferBytes) throw std::bad_alloc();
    result.insert(result.end(), samples.begin(), samples.end());
    return true;
  }

  std::vector<int16_t> result;
};

/// Accepts a text and renders it by `render`, one output of the handle at a time. The handle stays free for
/// other calls meanwhile, and LXAPI_Stop ends the rendering.
template <typename Render>
int32_t renderOutput(uint32_t tts, const char* utf8, int32_t length, int32_t flags, const Render& render) {
  return withSynthesis(tts, [&](Synthesis& synthesis) -> int32_t {
    const std::lock_guard outputGuard(synthesis.outputMutex);
    SpeechRequest request;
    std::stop_token stop;
    {
      const std::lock_guard guard(synthesis.mutex);
      const int32_t accepted = synthesis.accept(utf8, length, flags, request);
      if (accepted != LX_OK) return accepted;
      synthesis.stopOutput = std::stop_source();
      stop = synthesis.stopOutput.get_token();
    }
    return render(synthesis, request, stop);
  });
}

}  // namespace

int32_t LXAPI_CALL LXAPI_SetOutputFile(uint32_t tts, const char* path, int32_t fileCode) {
  return withLockedSynthesis(tts, [=](Synthesis& synthesis) -> int32_t {
    if (path == nullptr || *path == '\0') return LX_ERROR_BAD_ARGUMENT;
    // An unserved code is kept too: the next text must not go to the file of an earlier call.
    synthesis.outputPath = speech::fromSystemCodePage(path);
    synthesis.outputCode = fileCode;
    return isServedFileCode(fileCode) ? LX_OK : LX_ERROR_UNSUPPORTED;
  });
}

int32_t LXAPI_CALL LXAPI_TextToFile(uint32_t tts, const char* utf8, int32_t length, int32_t flags) {
  return renderOutput(tts, utf8, length, flags,
                      [](Synthesis& synthesis, const SpeechRequest& request, const std::stop_token& stop) {
                        std::filesystem::path path;
                        int32_t code = -1;
                        {
                          const std::lock_guard guard(synthesis.mutex);
                          path = synthesis.outputPath;
                          code = synthesis.outputCode;
                        }
                        return path.empty() ? static_cast<int32_t>(LX_ERROR_FILE)
                                            : renderToFile(request, path, code, stop);
                      });
}

int32_t LXAPI_CALL LXAPI_SetOutputBuffer(uint32_t tts, int32_t reserved) {
  return withLockedSynthesis(
      tts, [=](Synthesis&) -> int32_t { return reserved == 0 ? LX_OK : LX_ERROR_BAD_ARGUMENT; });
}

int32_t LXAPI_CALL LXAPI_BufferOpen(uint32_t tts, const char* utf8, int32_t length, int32_t flags,
                                    int32_t /*reserved*/) {
  return renderOutput(tts, utf8, length, flags,
                      [](Synthesis& synthesis, const SpeechRequest& request, const std::stop_token& stop) {
                        BufferSink sink;
                        const int32_t result = renderSpeech(request, sink, stop);
                        if (result != LX_OK) return result;
                        const std::lock_guard guard(synthesis.mutex);
                        synthesis.buffer = std::move(sink.result);
                        synthesis.isBufferOpen = true;
                        return result;
                      });
}

int32_t LXAPI_CALL LXAPI_GetBuffer(uint32_t tts, void** buffer) {
  return withLockedSynthesis(tts, [=](Synthesis& synthesis) -> int32_t {
    if (buffer == nullptr) return LX_ERROR_BAD_ARGUMENT;
    *buffer = nullptr;
    if (!synthesis.isBufferOpen) return LX_ERROR_FAILED;
    const auto byteCount = static_cast<int32_t>(synthesis.buffer.size() * sizeof(int16_t));
    *buffer = Library::instance().lend(std::move(synthesis.buffer));
    synthesis.buffer = {};
    return byteCount;
  });
}

int32_t LXAPI_CALL LXAPI_FreeBuffer(void* buffer) {
  return exportedCall([=]() -> int32_t {
    Library& library = Library::instance();
    if (!library.isStarted()) return LX_ERROR_NOT_STARTED;
    // A text without sound has no samples to release.
    return buffer == nullptr || library.release(buffer) ? LX_OK : LX_ERROR_BAD_ARGUMENT;
  });
}

int32_t LXAPI_CALL LXAPI_BufferClose(uint32_t tts) {
  return withLockedSynthesis(tts, [](Synthesis& synthesis) -> int32_t {
    if (!synthesis.isBufferOpen) return LX_ERROR_FAILED;
    synthesis.isBufferOpen = false;
    synthesis.buffer = {};
    return LX_OK;
  });
}
