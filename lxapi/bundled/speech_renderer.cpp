#include "lxapi/bundled/speech_renderer.h"

#include <cmath>
#include <optional>
#include <vector>

#include "base/utf8.h"
#include "lxapi/bundled/pause_shaper.h"
#include "lxapi/bundled/segmenter.h"
#include "lxapi/bundled/synthesizer.h"

namespace speech::lxapi {
namespace {

// A bookmark's name and its zero byte fill the rest of the event record.
constexpr size_t kLongestName = sizeof(LXEVENT::name) - 1;

// Amplified samples above the knee are bent towards full scale instead of being cut off at it.
constexpr float kKnee = 24000;
constexpr float kFullScale = 32767;

int16_t amplify(int16_t sample, int32_t volume) {
  const float wanted = static_cast<float>(sample) * static_cast<float>(volume) / 100;
  const float magnitude = std::fabs(wanted);
  if (volume <= 100 || magnitude <= kKnee) return static_cast<int16_t>(std::lround(wanted));
  const float room = kFullScale - kKnee;
  return static_cast<int16_t>(
      std::lround(std::copysign(kKnee + room * std::tanh((magnitude - kKnee) / room), wanted)));
}

class Renderer {
 public:
  Renderer(const SpeechRequest& request, SpeechSink& sink)
      : request_(request),
        sink_(sink),
        shaper_(kSynthesizerRateHz, [this](std::span<const int16_t> samples) { pass(samples); }) {}

  int32_t run(const std::stop_token& stop) {
    Segmenter segmenter(request_.text, request_.isSsml, request_.dictionaries);
    while (std::optional<Segment> segment = segmenter.next()) {
      if (stop.stop_requested() || !sink_.wantsMore()) return LX_ERROR_FAILED;
      if (!renderSegment(*segment, stop)) return LX_ERROR_FAILED;
    }
    shaper_.flush();
    return isWanted_ ? LX_OK : LX_ERROR_FAILED;
  }

 private:
  bool renderSegment(const Segment& segment, const std::stop_token& stop) {
    WordTracker words(segment);
    SynthesisRequest piece;
    piece.voice = request_.voice;
    piece.pitch = request_.settings.pitch;
    piece.speed = request_.settings.speed;
    piece.isSsml = request_.isSsml;
    piece.hasPhonemes = segment.hasPhonemes;
    piece.pauseAtEnd = !segment.isLast;
    const bool rendered = Synthesizer::instance().render(
        segment.utf8, piece, [&](std::span<const int16_t> samples, std::span<const SynthesizerMark> marks) {
          size_t done = 0;
          for (const SynthesizerMark& mark : marks) {
            const size_t upTo = std::max(mark.sample, done);
            write(samples.subspan(done, upTo - done));
            done = upTo;
            handle(mark, words);
          }
          write(samples.subspan(done));
          return isWanted_ && !stop.stop_requested();
        });
    raise(words.flush(0, shaper_.position()));
    return rendered && isWanted_ && !stop.stop_requested();
  }

  void handle(const SynthesizerMark& mark, WordTracker& words) {
    const uint64_t frame = shaper_.position();
    switch (mark.kind) {
      case SynthesizerMark::Kind::kWord:
        raise(words.word(mark.characterPosition, mark.characterCount, frame));
        break;
      case SynthesizerMark::Kind::kSentence:
        raise(words.flush(mark.characterPosition, frame));
        if (const auto sentence = words.sentence(mark.characterPosition, frame)) sink_.event(*sentence);
        break;
      case SynthesizerMark::Kind::kBookmark: {
        raise(words.flush(mark.characterPosition, frame));
        SpeechEvent event;
        event.frame = frame;
        event.number = LX_EVENT_BOOKMARK;
        event.name = utf8Prefix(mark.name != nullptr ? mark.name : "", kLongestName);
        sink_.event(event);
        break;
      }
      case SynthesizerMark::Kind::kClauseEnd:
        raise(words.flush(mark.characterPosition, frame));
        endClause(words.pauseAt(mark.characterPosition));
        break;
    }
  }

  void endClause(WordTracker::Pause pause) {
    // A closing tag behind a sentence ends the same clause once more.
    if (!hasSpoken_) return;
    hasSpoken_ = false;
    if (pause == WordTracker::Pause::kSentence) shaper_.endClause(request_.settings.sentencePauseMs);
    if (pause == WordTracker::Pause::kComma) shaper_.endClause(request_.settings.commaPauseMs);
  }

  void write(std::span<const int16_t> samples) {
    if (samples.empty()) return;
    hasSpoken_ = true;
    shaper_.write(samples);
  }

  void raise(const WordTracker::Events& events) {
    for (const SpeechEvent& event : events) sink_.event(event);
  }

  void pass(std::span<const int16_t> samples) {
    if (!isWanted_) return;
    const int32_t volume = request_.settings.volume;
    if (volume == kVolumeRange.normal) {
      isWanted_ = sink_.samples(samples);
      return;
    }
    amplified_.clear();
    for (const int16_t sample : samples) amplified_.push_back(amplify(sample, volume));
    isWanted_ = sink_.samples(amplified_);
  }

  const SpeechRequest& request_;
  SpeechSink& sink_;
  PauseShaper shaper_;
  std::vector<int16_t> amplified_;
  bool hasSpoken_ = false;
  bool isWanted_ = true;
};

}  // namespace

int32_t renderSpeech(const SpeechRequest& request, SpeechSink& sink, const std::stop_token& stop) {
  return Renderer(request, sink).run(stop);
}

}  // namespace speech::lxapi
