// Speech as samples in memory.

#include <cstring>
#include <memory>
#include <vector>

#include "audio/file_io.h"
#include "audio/rate_converter.h"
#include "speech/c_interface/exporting.h"
#include "speech/c_interface/sample_files.h"
#include "speech/c_interface/session.h"
#include "speech/c_interface/text.h"

namespace speech::c_interface {
namespace {

struct Release {
  void operator()(void* memory) const { ExternFree(memory); }
};

/// Samples that can be handed to the caller.
struct Samples {
  std::unique_ptr<void, Release> memory;
  std::uint32_t byteCount = 0;
  std::int32_t rateHz = 0;
};

std::unique_ptr<void, Release> allocated(std::size_t byteCount) {
  std::unique_ptr<void, Release> memory(ExternMalloc(byteCount + 1));  // never an empty block
  if (memory == nullptr) throw Failure(SPEECH_ERROR_MEMORY);
  return memory;
}

Samples fromEngine(OpenEngine& engine, const std::wstring& text, bool isSsml) {
  unsigned char* copy = nullptr;
  const int byteCount = engine.instance().synthesizeToBuffer(text.c_str(), isSsml, &copy);
  Samples samples{std::unique_ptr<void, Release>(copy), 0, engine.product().getSampleRateHz()};
  if (byteCount <= 0 || copy == nullptr) throw Failure(SPEECH_ERROR_REFUSED);
  samples.byteCount = static_cast<std::uint32_t>(byteCount) & ~1u;
  return samples;
}

/// The service makes files; its engine has no samples of its own to give.
Samples fromService(OpenEngine& engine, const std::wstring& text, bool isSsml, std::int32_t rateHz) {
  const int rateIndex = rateIndexOf(engine, rateHz);
  TemporaryOutput file(L".pcm");
  exportToTemporary(engine, text, isSsml, SPEECH_FORMAT_PCM, rateIndex, file);
  const std::vector<unsigned char> content = readFile(file.path());
  const std::size_t byteCount = content.size() & ~std::size_t{1};
  Samples samples{allocated(byteCount), static_cast<std::uint32_t>(byteCount),
                  engine.instance().getSampleRate(rateIndex)};
  std::memcpy(samples.memory.get(), content.data(), byteCount);
  return samples;
}

Samples converted(const Samples& input, std::int32_t rateHz) {
  const std::int64_t inputCount = input.byteCount / 2;
  const std::int64_t outputCount = inputCount * rateHz / input.rateHz;
  if (outputCount > INT32_MAX / 2) throw Failure(SPEECH_ERROR_MEMORY);
  Samples output{allocated(static_cast<std::size_t>(outputCount) * 2), 0, rateHz};
  const RateRequest request{static_cast<const std::int16_t*>(input.memory.get()),
                            static_cast<std::int16_t*>(output.memory.get()),
                            static_cast<std::int32_t>(inputCount),
                            static_cast<std::int32_t>(outputCount),
                            input.rateHz,
                            rateHz,
                            0,
                            kRateQualityLarge};
  const std::int32_t stored = RATEAPI(&request);
  if (stored < 0) throw Failure(SPEECH_ERROR_UNSUPPORTED);
  output.byteCount = static_cast<std::uint32_t>(stored) * 2;
  return output;
}

template <class Char>
std::int32_t synthesize(SpeechEngine handle, const Char* text, std::uint32_t flags, std::int32_t rateHz,
                        SpeechAudio* audio) {
  return answeredBy(handle, [&](OpenEngine& engine) {
    required(audio);
    if ((flags & ~std::uint32_t{SPEECH_FLAG_SSML}) != 0 || rateHz < 0) throw Failure(SPEECH_ERROR_ARGUMENT);
    const std::wstring wide = textOf(text);
    const bool isSsml = flags != 0;
    engine.requireIdle();
    Samples samples =
        engine.isCloud() ? fromService(engine, wide, isSsml, rateHz) : fromEngine(engine, wide, isSsml);
    if (rateHz != 0 && samples.rateHz != rateHz) samples = converted(samples, rateHz);
    *audio = {samples.memory.release(), samples.byteCount, samples.rateHz};
  });
}

}  // namespace
}  // namespace speech::c_interface

using namespace speech::c_interface;

int32_t SPEECH_CALL speech_synthesize(SpeechEngine engine, const char* text, uint32_t flags,
                                      int32_t sample_rate, SpeechAudio* audio) {
  return synthesize(engine, text, flags, sample_rate, audio);
}

int32_t SPEECH_CALL speech_synthesize_w(SpeechEngine engine, const wchar_t* text, uint32_t flags,
                                        int32_t sample_rate, SpeechAudio* audio) {
  return synthesize(engine, text, flags, sample_rate, audio);
}

void SPEECH_CALL speech_audio_free(SpeechAudio* audio) {
  if (audio == nullptr) return;
  ExternFree(audio->samples);
  *audio = {};
}
