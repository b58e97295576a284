#include "lxapi/bundled/synthesizer.h"

#include <espeak-ng/speak_lib.h>

#include <algorithm>
#include <exception>
#include <optional>

#include "base/ascii.h"
#include "base/espeak.h"

namespace speech::lxapi {
namespace {

// How much sound one callback brings; the first sound waits for it.
constexpr int kStepMs = 40;

static_assert(kSynthesizerRateHz == kEspeakRateHz);

constexpr int kNormalWordsPerMinute = espeakRATE_NORMAL;

/// The render call that is under way; the callback has no argument of its own. Guarded by the synthesizer's
/// lock.
struct Rendering {
  explicit Rendering(const Synthesizer::Sink& output) : sink(output) {}

  const Synthesizer::Sink& sink;
  int64_t position = 0;
  bool aborted = false;
  std::exception_ptr failure;
  std::vector<SynthesizerMark> marks;
};
Rendering* current = nullptr;

std::optional<SynthesizerMark::Kind> markKind(espeak_EVENT_TYPE type) {
  switch (type) {
    case espeakEVENT_WORD:
      return SynthesizerMark::Kind::kWord;
    case espeakEVENT_SENTENCE:
      return SynthesizerMark::Kind::kSentence;
    case espeakEVENT_MARK:
      return SynthesizerMark::Kind::kBookmark;
    case espeakEVENT_END:
      return SynthesizerMark::Kind::kClauseEnd;
    default:
      return std::nullopt;
  }
}

/// Passes one step's samples and events to the sink.
bool deliver(Rendering& rendering, std::span<const int16_t> samples, const espeak_EVENT* events) {
  rendering.marks.clear();
  for (; events != nullptr && events->type != espeakEVENT_LIST_TERMINATED; ++events) {
    const std::optional<SynthesizerMark::Kind> kind = markKind(events->type);
    if (!kind) continue;
    SynthesizerMark mark{};
    mark.kind = *kind;
    // The position in milliseconds that the event also carries would be off by up to 22 samples.
    const int64_t offset = events->sample - rendering.position;
    mark.sample = static_cast<size_t>(std::clamp<int64_t>(offset, 0, static_cast<int64_t>(samples.size())));
    mark.characterPosition = events->text_position;
    mark.characterCount = events->length;
    if (*kind == SynthesizerMark::Kind::kBookmark) mark.name = events->id.name;
    rendering.marks.push_back(mark);
  }
  rendering.position += static_cast<int64_t>(samples.size());
  return rendering.sink(samples, rendering.marks);
}

int onSamples(short* samples, int count, espeak_EVENT* events) {
  if (current == nullptr || current->aborted) return 1;
  const size_t sampleCount = samples != nullptr && count > 0 ? static_cast<size_t>(count) : 0;
  try {
    current->aborted = !deliver(*current, {samples, sampleCount}, events);
  } catch (...) {
    // No exception can cross the synthesizer's own frames, which are C.
    current->failure = std::current_exception();
    current->aborted = true;
  }
  return current->aborted ? 1 : 0;
}

}  // namespace

Synthesizer& Synthesizer::instance() {
  // Never destroyed: threads may still be running when the process ends.
  static auto* const synthesizer = new Synthesizer;
  return *synthesizer;
}

bool Synthesizer::start(const std::string& folder) {
  const std::lock_guard guard(mutex_);
  if (started_) return true;
  if (folder.empty() || folder.size() > kLongestFolder) return false;
  const int rate =
      espeak_Initialize(AUDIO_OUTPUT_SYNCHRONOUS, kStepMs, folder.c_str(), espeakINITIALIZE_DONT_EXIT);
  if (rate != kEspeakRateHz) return false;
  espeak_SetSynthCallback(onSamples);
  espeak_SetUriCallback(refuseSoundFile);
  listVoices();
  started_ = true;
  return true;
}

/// Reads more than a hundred small files, so it is done once.
void Synthesizer::listVoices() {
  for (const espeak_VOICE* const voice : usableVoices()) {
    // The first byte of the languages is the voice's priority for the one that follows.
    voices_.push_back({std::string(trimmed(voice->name, " ")), voice->identifier, voice->languages + 1});
  }
}

std::vector<SynthesizerVoice> Synthesizer::voices() const {
  const std::lock_guard guard(mutex_);
  return voices_;
}

std::string Synthesizer::version() const {
  const std::lock_guard guard(mutex_);
  if (!started_) return {};
  const char* path = nullptr;
  const std::string text = espeak_Info(&path);
  return text.substr(0, text.find(' '));
}

bool Synthesizer::selectVoice(const std::string& voice) {
  if (voice == currentVoice_) return true;
  currentVoice_.clear();
  if (espeak_SetVoiceByName(voice.c_str()) != EE_OK) return false;
  currentVoice_ = voice;
  return true;
}

bool Synthesizer::render(const std::string& utf8, const SynthesisRequest& request, const Sink& sink) {
  const std::lock_guard guard(mutex_);
  if (!started_ || !selectVoice(request.voice)) return false;
  espeak_SetParameter(espeakRATE, (kNormalWordsPerMinute * request.speed + 50) / 100, 0);
  espeak_SetParameter(espeakPITCH, std::clamp(request.pitch / 2, 0, 99), 0);
  espeak_SetParameter(espeakVOLUME, 100, 0);

  const unsigned flags = espeakCHARS_UTF8 | (request.isSsml ? espeakSSML : 0U) |
                         (request.hasPhonemes ? espeakPHONEMES : 0U) |
                         (request.pauseAtEnd ? espeakENDPAUSE : 0U);
  Rendering rendering{sink};
  current = &rendering;
  const espeak_ERROR error =
      espeak_Synth(utf8.c_str(), utf8.size() + 1, 0, POS_CHARACTER, 0, flags, nullptr, nullptr);
  current = nullptr;
  // A document may have changed the voice and left it so.
  if (request.isSsml) currentVoice_.clear();
  if (rendering.failure) std::rethrow_exception(rendering.failure);
  return error == EE_OK || rendering.aborted;
}

}  // namespace speech::lxapi
