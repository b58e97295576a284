#include "engines/engine.h"

#include <cstring>
#include <utility>

#include <speech/audio.h>
#include "base/memory.h"
#include "engines/exporting/log.h"
#include "engines/guarded.h"
#include "win32/paths.h"
#include "win32/run_program.h"
#include "win32/text.h"

namespace speech {
namespace {

constexpr Step kCopied[] = {{Action::kCopy, Place::kDestination}, {Action::kLog}};
constexpr Step kWithHeader[] = {{Action::kAddHeader, Place::kDestination}, {Action::kLog}};
constexpr Step kCompressed[] = {{Action::kCompressRaw, Place::kDestination}, {Action::kLog}};

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

  /// A copy with `extraBytes` zero bytes behind it; null without memory.
  MallocBlock<unsigned char> copy(std::size_t extraBytes) const {
    const auto count = static_cast<std::size_t>(byteCount_);
    MallocBlock<unsigned char> copied(static_cast<unsigned char*>(std::calloc(count + extraBytes, 1)));
    if (copied && count > 0) std::memcpy(copied.get(), bytes_, count);
    return copied;
  }

 private:
  std::uint32_t ttsHandle_;
  void* bytes_ = nullptr;
  int byteCount_;
};

}  // namespace

void Engine::setToolFolder(const wchar_t* folder) {
  guarded([&] { toolFolder_ = textOrEmpty(folder); });
}

int Engine::exportText(const RouteTable& routes, const wchar_t* path, int format, int rateIndex,
                       bool logExport, Synthesize synthesize) const {
  constexpr int kDone = 1, kFailed = 0, kRefused = -1;
  const int rateHz = sampleRateAt(rateIndex);
  if (rateHz == -1) return kFailed;
  const std::wstring destination(textOrEmpty(path));
  const ExportFormat* const row = exportFormat(withoutAlias(format));
  ExportJob job{.format = row,
                .route = routes.find(row, product_->getSampleRateHz() == rateHz),
                .rateHz = rateHz,
                .destination = destination,
                .soxFolder = toolFolder_,
                .synthesize = std::move(synthesize)};
  if (logExport) job.logLine = exportLogLine(product_->getEngineKey1().GetString(), destination);
  const auto endedBy = runExport(job, customs_.textRules);
  if (!endedBy) return kDone;
  return *endedBy == Action::kRefuse ? kRefused : kFailed;
}

int Engine::exportAudio(const wchar_t* source, CStringW& destination, int format, int dataSize,
                        int rateIndex) {
  return guarded(-1, [&] {
    const ExportFormat* const row = exportFormat(format);
    ExportJob job{.format = row,
                  .route = customs_.samplesToNoFormat,
                  .rateHz = sampleRateAt(rateIndex),
                  .source = std::wstring(textOrEmpty(source)),
                  .sourceBytes = dataSize,
                  .soxFolder = customs_.samplesUseToolFolder ? toolFolder_ : moduleFolder(nullptr),
                  .logLine = L""};
    if (row != nullptr && row->kind != FileKind::kOfTheEngine) {
      job.destination = (destination + row->extension).GetString();
      job.logLine = exportLogLine(product_->getEngineKey1().GetString(), job.destination);
      // The host learns the final path of what is written without SoX.
      if (row->kind != FileKind::kCompressed) destination = job.destination.c_str();
      job.route = row->kind == FileKind::kRaw   ? Route(kCopied)
                  : row->kind == FileKind::kWav ? Route(kWithHeader)
                                                : Route(kCompressed);
    }
    return runExport(job, customs_.sampleRules) ? -1 : 0;
  });
}

int Engine::makeWavHeader(const wchar_t* path, int dataSize, int sampleRateHz, int bitsPerSample,
                          int channels) {
  return guarded(-1, [&] {
    return WAVHEADER_MAKER(toNarrow(textOrEmpty(path), customs_.textRules.codePage).c_str(), dataSize,
                           sampleRateHz, bitsPerSample, channels);
  });
}

int Engine::convertWavRate(const wchar_t* input, int rateHz, int bits, int channels, const wchar_t* output) {
  return guarded(-1, [&] {
    const CodePage codePage = customs_.textRules.codePage;
    return RATEAPI_WAV2WAV(toNarrow(textOrEmpty(input), codePage).c_str(), rateHz, bits, channels,
                           toNarrow(textOrEmpty(output), codePage).c_str());
  });
}

int Engine::synthesizeToBuffer(const wchar_t* text, bool isSsml, unsigned char** out) {
  return guarded(0, [&] {
    LXAPI_SetOutputBuffer(ttsHandle_, 0);
    const std::string utf8 = toUtf8(textOrEmpty(text));
    if (LXAPI_BufferOpen(ttsHandle_, utf8.c_str(), -1, speakFlags(isSsml), 0) != LX_OK) return 0;
    const EngineBuffer rendered(ttsHandle_);
    if (rendered.byteCount() < 0) return 0;
    if (out == nullptr) return rendered.byteCount();
    MallocBlock<unsigned char> copied = rendered.copy(customs_.bytesBehindSamples);
    if (!copied) return 0;
    *out = copied.release();
    return rendered.byteCount();
  });
}

CStringW Engine::escapeXml(const CStringW& text) {
  return guarded(CStringW(), [&] { return escapedXml(text); });
}

CStringW Engine::escapedXml(CStringW text) {
  text.Replace(L"&", L"&amp;");
  text.Replace(L"<", L"&lt;");
  text.Replace(L">", L"&gt;");
  text.Replace(L"'", L"&apos;");
  text.Replace(L"\"", L"&quot;");
  return text;
}

bool Engine::runUserDictEditor(const wchar_t* dictionary, const wchar_t* extra) {
  return guarded(false, [&] {
    const bool own = textOrEmpty(dictionary).empty();
    CStringW parameters;
    parameters.Format(L"\"%s\"", own ? product_->getUserDictPath3().GetString() : dictionary);
    parameters += extra;
    return runProgram(product_->getUserDictEditorPath(), parameters);
  });
}

}  // namespace speech
