#include "export_job.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "window_text.h"

namespace {

constexpr std::size_t kPieceLength = 400;
constexpr std::wstring_view kEndsBeforeSpace = L".!?\u2026";
constexpr std::wstring_view kEndsAnywhere = L"\u3002\uFF01\uFF1F";  // full stops of languages without spaces

struct FreeAudio {
  void operator()(SpeechAudio* audio) const { speech_audio_free(audio); }
};

bool isSentenceEnd(std::wstring_view text, std::size_t at) {
  if (kEndsAnywhere.find(text[at]) != kEndsAnywhere.npos) return true;
  return kEndsBeforeSpace.find(text[at]) != kEndsBeforeSpace.npos && at + 1 < text.size() &&
         kSpaces.find(text[at + 1]) != kSpaces.npos;
}

}  // namespace

std::size_t firstPiece(std::wstring_view text) {
  const std::size_t paragraph = std::min(text.find(L'\n'), text.size() - 1) + 1;
  for (std::size_t at = kPieceLength; at < paragraph; ++at) {
    if (isSentenceEnd(text, at)) return at + 1;
  }
  return paragraph;
}

ExportJob::ExportJob(SpeechEngine engine, std::wstring text, ExportTarget target)
    : engine_(engine), text_(std::move(text)), target_(std::move(target)) {}

std::int32_t ExportJob::renderNext() {
  const std::wstring_view rest = std::wstring_view(text_).substr(position_);
  const std::wstring piece(rest.substr(0, firstPiece(rest)));

  if (!isBlank(piece)) {
    SpeechAudio audio = {};
    const std::unique_ptr<SpeechAudio, FreeAudio> owner(&audio);
    const std::int32_t result = speech_synthesize_w(engine_, piece.c_str(), 0, 0, &audio);
    if (result != SPEECH_OK) return result;
    const auto* bytes = static_cast<const std::byte*>(audio.samples);
    samples_.insert(samples_.end(), bytes, bytes + audio.byte_count);
    sampleRateHz_ = audio.sample_rate;
  }
  position_ += piece.size();
  return SPEECH_OK;
}

std::int32_t ExportJob::write() const {
  return speech_export_samples_w(engine_, samples_.data(), static_cast<std::uint32_t>(samples_.size()),
                                 sampleRateHz_, target_.format, target_.path.c_str());
}
