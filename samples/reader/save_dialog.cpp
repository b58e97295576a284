#include "save_dialog.h"

#include <commdlg.h>
#include <speech/speech_c.h>

#include <array>
#include <string_view>

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
  // A folder that is not there is told of by the export, in the window's own place for errors.
  dialog.Flags = OFN_EXPLORER | OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
  if (!GetSaveFileNameW(&dialog)) return std::nullopt;
  path.resize(path.find(L'\0'));

  for (const FileType& type : kFileTypes) {
    if (endsWith(path, type.extension)) return ExportTarget{path, type.format};
  }
  const FileType& chosen = kFileTypes[dialog.nFilterIndex - 1];
  return ExportTarget{path.append(chosen.extension), chosen.format};
}
