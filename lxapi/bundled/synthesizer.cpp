#include "lxapi/bundled/synthesizer.h"

#include <espeak-ng/speak_lib.h>

#include <algorithm>
#include <exception>
#include <mutex>

#include "lxapi/bundled/narrow_path.h"

namespace lxapi {
namespace {

// The callback's size of step; the first sound waits for one of these.
constexpr int kStepMs = 40;

// eSpeak NG's own buffer for the path is shorter than the system's.
constexpr size_t kLongestDataPath = 200;

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

bool markKind(espeak_EVENT_TYPE type, SynthesizerMark::Kind& kind) {
  switch (type) {
    case espeakEVENT_WORD:
      kind = SynthesizerMark::Kind::Word;
      return true;
    case espeakEVENT_SENTENCE:
      kind = SynthesizerMark::Kind::Sentence;
      return true;
    case espeakEVENT_MARK:
      kind = SynthesizerMark::Kind::Bookmark;
      return true;
    case espeakEVENT_END:
      kind = SynthesizerMark::Kind::ClauseEnd;
      return true;
    default:
      return false;
  }
}

/// Passes one step's samples and events to the sink.
bool deliver(Rendering& rendering, std::span<const int16_t> samples, const espeak_EVENT* events) {
  rendering.marks.clear();
  for (; events != nullptr && events->type != espeakEVENT_LIST_TERMINATED; ++events) {
    SynthesizerMark mark{};
    if (!markKind(events->type, mark.kind)) continue;
    // The position in milliseconds that the event also carries would be off by up to 22 samples.
    const int64_t offset = events->sample - rendering.position;
    mark.sample = static_cast<size_t>(std::clamp<int64_t>(offset, 0, static_cast<int64_t>(samples.size())));
    mark.characterPosition = events->text_position;
    mark.characterCount = events->length;
    if (mark.kind == SynthesizerMark::Kind::Bookmark) mark.name = events->id.name;
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

/// SSML names a sound file: no file of this machine is opened at a document's wish, its text is spoken
/// instead.
int refuseSoundFile(int /*type*/, const char* /*uri*/, const char* /*base*/) { return 1; }

}  // namespace

Synthesizer& Synthesizer::instance() {
  // Never destroyed: threads may still be running when the process ends.
  static auto* const synthesizer = new Synthesizer;
  return *synthesizer;
}

bool Synthesizer::start(const std::filesystem::path& folder) {
  const std::lock_guard guard(mutex_);
  if (started_) return true;
  const std::string path = narrowPath(folder, kLongestDataPath);
  if (path.empty()) return false;
  const int rate =
      espeak_Initialize(AUDIO_OUTPUT_SYNCHRONOUS, kStepMs, path.c_str(), espeakINITIALIZE_DONT_EXIT);
  if (rate != static_cast<int>(kSynthesizerRateHz)) return false;
  espeak_SetSynthCallback(onSamples);
  espeak_SetUriCallback(refuseSoundFile);
  listVoices();
  started_ = true;
  return true;
}

/// Reads more than a hundred small files, so it is done once.
void Synthesizer::listVoices() {
  for (const espeak_VOICE** voice = espeak_ListVoices(nullptr); *voice != nullptr; ++voice) {
    const std::string identifier = (*voice)->identifier;
    // Voices of a program that is not here.
    if (identifier.starts_with("mb/") || identifier.starts_with("mb\\")) continue;
    std::string name = (*voice)->name;
    name.erase(name.find_last_not_of(' ') + 1);
    // The first byte of the languages is the voice's priority for the one that follows.
    voices_.push_back({std::move(name), identifier, (*voice)->languages + 1});
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

  const unsigned flags = espeakCHARS_UTF8 | (request.ssml ? espeakSSML : 0U) |
                         (request.phonemes ? espeakPHONEMES : 0U) |
                         (request.pauseAtEnd ? espeakENDPAUSE : 0U);
  Rendering rendering{sink};
  current = &rendering;
  const espeak_ERROR error =
      espeak_Synth(utf8.c_str(), utf8.size() + 1, 0, POS_CHARACTER, 0, flags, nullptr, nullptr);
  current = nullptr;
  // A document may have changed the voice and left it so.
  if (request.ssml) currentVoice_.clear();
  if (rendering.failure) std::rethrow_exception(rendering.failure);
  return error == EE_OK || rendering.aborted;
}

}  // namespace lxapi
