#include "apps/narravo/speech_export.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <utility>

#include <windows.h>

#include "apps/narravo/commands.h"
#include "apps/narravo/console.h"
#include "win32/paths.h"
#include "win32/text.h"

namespace narravo {
namespace {

struct FileType {
  const wchar_t* extension;
  int format;
};

constexpr FileType kFileTypes[] = {{L".pcm", speech::kFormatPcm},
                                   {L".ogg", speech::kFormatOgg},
                                   {L".gsm", speech::kFormatGsm},
                                   {L".mp3", speech::kFormatMp3},
                                   {L".wav", speech::kFormatWav}};
constexpr int kRatesHz[] = {8000, 16000, 22050, 44100, 48000};

const FileType& fileTypeOf(const std::filesystem::path& path) {
  const std::wstring extension = path.extension().wstring();
  const auto type = std::ranges::find_if(
      kFileTypes, [&](const FileType& each) { return _wcsicmp(each.extension, extension.c_str()) == 0; });
  if (type == std::end(kFileTypes)) {
    throw HostError(kExitUsage, "the output's name must end in .wav, .pcm, .ogg, .gsm or .mp3");
  }
  return *type;
}

int rateIndexOf(int rateHz) {
  const auto rate = std::ranges::find(kRatesHz, rateHz);
  if (rate == std::end(kRatesHz)) {
    throw HostError(kExitUsage, "this voice's rate of " + std::to_string(rateHz) +
                                    " Hz cannot be exported; choose one with --rate");
  }
  return static_cast<int>(rate - std::begin(kRatesHz));
}

/// A fresh folder, deleted with what is in it.
class ScratchFolder {
 public:
  ScratchFolder() : path_(speech::newTemporaryPath(L"")) {
    std::error_code error;
    std::filesystem::create_directory(path_, error);
    if (error) throw HostError(kExitFile, "cannot create a temporary folder: " + error.message());
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

/// Keeps the output as it was before and puts it back unless the new file is complete.
class OlderFile {
 public:
  OlderFile(std::filesystem::path path, const ScratchFolder& scratch)
      : path_(std::move(path)), copy_(scratch.path() / L"older") {
    std::error_code error;
    exists_ = std::filesystem::exists(path_, error);
    if (exists_) std::filesystem::copy_file(path_, copy_, error);
    if (exists_ && !error) std::filesystem::remove(path_, error);
    if (error) throw HostError(kExitFile, "cannot replace " + speech::toUtf8(path_.wstring()));
  }
  OlderFile(const OlderFile&) = delete;
  OlderFile& operator=(const OlderFile&) = delete;
  ~OlderFile() {
    if (isReplaced_) return;
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
    if (exists_) std::filesystem::copy_file(copy_, path_, ignored);
  }

  void keepNewFile() { isReplaced_ = true; }

 private:
  std::filesystem::path path_;
  std::filesystem::path copy_;
  bool exists_ = false;
  bool isReplaced_ = false;
};

/// The library does not say whether SoX succeeded; the file does.
bool hasContent(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::file_size(path, error) > 0 && !error;
}

/// The library reports success for a file that was cut off.
bool isDiskFull(const std::filesystem::path& path) {
  constexpr ULONGLONG kLeastFree = 4096;
  ULARGE_INTEGER free{};
  return GetDiskFreeSpaceExW(path.parent_path().c_str(), &free, nullptr, nullptr) &&
         free.QuadPart < kLeastFree;
}

}  // namespace

void requireExportType(const std::string& name) { fileTypeOf(pathOf(name)); }

std::vector<int> exportRatesHz() { return {std::begin(kRatesHz), std::end(kRatesHz)}; }

void exportSpeech(SpeechSession& session, const std::wstring& text, bool isSsml, const std::string& name,
                  std::optional<int> rateHz) {
  const std::filesystem::path output = std::filesystem::absolute(pathOf(name));
  const FileType& type = fileTypeOf(output);
  const int rateIndex = rateIndexOf(rateHz.value_or(session.voice().sampleRateHz));
  session.engine().setToolFolder(speech::moduleFolder(nullptr).c_str());  // sox.exe is beside this program

  const ScratchFolder scratch;
  OlderFile older(output, scratch);
  // The library opens files by names in the code page. A name that does not fit is given to the finished
  // file.
  const bool isDirect = speech::toNarrowExactly(output.wstring(), speech::CodePage::kSystem).has_value();
  const std::filesystem::path made =
      isDirect ? output : scratch.path() / (std::wstring(L"speech") + type.extension);
  const WorkingNotice notice("exporting " + name, WorkingNotice::usualPace());
  const int result =
      session.engine().textToFile(text.c_str(), made.c_str(), type.format, isSsml, rateIndex, true);
  if (isDiskFull(output)) throw HostError(kExitFile, "the disk is full: " + name);
  if (result != 1 || !hasContent(made)) session.reportRefusal("cannot export to " + name);
  std::error_code error;
  if (!isDirect) std::filesystem::copy_file(made, output, error);
  if (error) throw HostError(kExitFile, "cannot write " + name);
  older.keepNewFile();
}

}  // namespace narravo
