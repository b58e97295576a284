#include "export_job.h"

#include <commdlg.h>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "widgets.h"

namespace {

struct FileType {
  std::wstring_view description;
  std::wstring_view extension;
  SpeechFormat format;
};

constexpr std::array<FileType, 5> kFileTypes = {{{L"WAV sound", L".wav", SPEECH_FORMAT_WAV},
                                                 {L"Ogg Vorbis", L".ogg", SPEECH_FORMAT_OGG},
                                                 {L"MP3", L".mp3", SPEECH_FORMAT_MP3},
                                                 {L"GSM 06.10", L".gsm", SPEECH_FORMAT_GSM},
                                                 {L"Samples without a header", L".pcm", SPEECH_FORMAT_PCM}}};

/// Pairs of a description and a pattern, each text zero-terminated, and a zero at the end.
std::wstring dialogFilter() {
  std::wstring filter;
  for (const FileType& type : kFileTypes) {
    const std::wstring pattern = L"*" + std::wstring(type.extension);
    filter.append(type.description).append(L" (").append(pattern).append(L")").push_back(L'\0');
    filter.append(pattern).push_back(L'\0');
  }
  return filter;
}

bool endsWith(std::wstring_view path, std::wstring_view extension) {
  if (path.size() < extension.size()) return false;
  const std::wstring_view end = path.substr(path.size() - extension.size());
  return CompareStringOrdinal(end.data(), static_cast<int>(end.size()), extension.data(),
                              static_cast<int>(extension.size()), TRUE) == CSTR_EQUAL;
}

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

/// Length of the piece that a text begins with: a paragraph, or the first sentences of a long one.
std::size_t firstPiece(std::wstring_view text) {
  const std::size_t paragraph = std::min(text.find(L'\n'), text.size() - 1) + 1;
  for (std::size_t at = kPieceLength; at < paragraph; ++at) {
    if (isSentenceEnd(text, at)) return at + 1;
  }
  return paragraph;
}

}  // namespace

std::optional<ExportTarget> askForTarget(HWND owner) {
  constexpr std::size_t kLongestPath = 32768;
  std::wstring path = L"speech";
  path.resize(kLongestPath);
  const std::wstring filter = dialogFilter();

  OPENFILENAMEW dialog = {};
  dialog.lStructSize = sizeof dialog;
  dialog.hwndOwner = owner;
  dialog.lpstrTitle = L"Export speech";
  dialog.lpstrFilter = filter.c_str();
  dialog.nFilterIndex = 1;
  dialog.lpstrFile = path.data();
  dialog.nMaxFile = static_cast<DWORD>(path.size());
  // A missing folder is reported by the export, in the window's own place for errors.
  dialog.Flags = OFN_EXPLORER | OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
  if (!GetSaveFileNameW(&dialog)) return std::nullopt;
  path.resize(path.find(L'\0'));

  for (const FileType& type : kFileTypes) {
    if (endsWith(path, type.extension)) return ExportTarget{path, type.format};
  }
  const FileType& chosen = kFileTypes[dialog.nFilterIndex - 1];
  return ExportTarget{path.append(chosen.extension), chosen.format};
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
