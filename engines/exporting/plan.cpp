#include "engines/exporting/plan.h"

#include <windows.h>

#include <algorithm>
#include <vector>

#include <speech/audio.h>
#include "base/file.h"
#include "engines/exporting/log.h"
#include "engines/exporting/sox.h"
#include "win32/move_file.h"
#include "win32/paths.h"

namespace speech {
namespace {

constexpr int kBitsPerSample = 16;
constexpr int kChannels = 1;

/// What the rate converter answers when it has made a file.
constexpr int kConverted = 1;

/// By way of a neighbour: from another disk the move is a copy, which can fail halfway.
bool publish(const std::wstring& path, const std::wstring& destination) {
  const std::wstring folder = destination.substr(0, destination.find_last_of(L"\\/:") + 1);
  const std::wstring neighbour = folder + guidName() + L".tmp";
  if (moveFile(path, neighbour) && moveFile(neighbour, destination)) return true;
  const DWORD error = GetLastError();
  DeleteFileW(neighbour.c_str());
  SetLastError(error);
  return false;
}

class ExportRun {
 public:
  ExportRun(const ExportJob& job, const ExportRules& rules) : job_(job), rules_(rules), file_(job.source) {}
  ExportRun(const ExportRun&) = delete;
  ExportRun& operator=(const ExportRun&) = delete;
  ~ExportRun() { deleteTemporaries(); }

  std::optional<Action> walk() {
    for (const Step& step : job_.route) {
      const std::wstring output = outputOf(step);
      if (!perform(step, output) && !isPassedOver(step.action)) return step.action;
      if (step.to != Place::kNowhere) file_ = output;
    }
    return std::nullopt;
  }

 private:
  std::wstring outputOf(const Step& step) {
    switch (step.to) {
      case Place::kTemporaryWav:
        return temporaries_.emplace_back(rules_.temporaryPath(kWavFiles.extension));
      case Place::kTemporary:
        return temporaries_.emplace_back(rules_.temporaryPath(job_.format->extension));
      case Place::kDestination:
        return takesWideName(step.action) ? job_.destination : named(job_.destination);
      default:
        return {};
    }
  }

  static bool takesWideName(Action action) {
    return action == Action::kCompress || action == Action::kCompressRaw || action == Action::kCopy;
  }

  std::wstring named(const std::wstring& path) const {
    return rules_.usesOneName ? toWide(toNarrow(path, rules_.codePage), rules_.codePage) : path;
  }

  bool perform(const Step& step, const std::wstring& output) {
    switch (step.action) {
      case Action::kRefuse:
        return false;
      case Action::kFindSox:
        return sox::isIn(job_.soxFolder);
      case Action::kSynthesize:
        isSynthesized_ = job_.synthesize(output, step.to == Place::kTemporaryWav ? kWavFiles : *job_.format);
        return isSynthesized_;
      case Action::kConvert:
        return RATEAPI_WAV2WAV(narrow(file_).c_str(), job_.rateHz, kBitsPerSample, kChannels,
                               narrow(output).c_str()) == kConverted;
      case Action::kStripHeader:
        return stripWavHeader(file_.c_str(), output.c_str());
      case Action::kCompress:
        return sox::compress(job_.soxFolder, file_, *job_.format, job_.rateHz, output);
      case Action::kCopy:
        return CopyFileW(file_.c_str(), output.c_str(), FALSE) != FALSE;
      case Action::kAddHeader:
        return addHeader(narrow(output));
      case Action::kCompressRaw:
        return sox::compressRaw(job_.soxFolder, file_, job_.rateHz, output);
      case Action::kRequireContent:
        return hasContent(file_);
      case Action::kPublish:
        return publish(file_, output);
      case Action::kLog:
        log();
        return true;
    }
    return false;
  }

  bool isPassedOver(Action action) const {
    if (action == Action::kConvert && !pathExists(file_.c_str())) return false;
    return std::ranges::find(rules_.passesOver, action) != rules_.passesOver.end();
  }

  std::string narrow(const std::wstring& path) const { return toNarrow(path, rules_.codePage); }

  /// Header and samples go by one name: a character that the code page lacks must not part them.
  bool addHeader(const std::string& output) const {
    WAVHEADER_MAKER(output.c_str(), job_.sourceBytes, job_.rateHz, kBitsPerSample, kChannels);
    const File from = openFile(file_.c_str(), L"rb");
    const File to = openFile(output.c_str(), "ab+");
    if (!from || !to) return false;
    std::fseek(from.get(), 0, SEEK_SET);
    // Kept: without effect, since an appending stream writes at its end.
    std::fseek(to.get(), kWavHeaderSize + 1, SEEK_SET);
    appendSamples(from.get(), to.get(), job_.sourceBytes, rules_.lastFullBlock);
    return true;
  }

  void log() {
    deleteTemporaries();
    if (rules_.deletesSource) DeleteFileW(job_.source.c_str());
    if (job_.logLine && isSynthesized_) writeExportLog(*job_.logLine, rules_.codePage);
  }

  void deleteTemporaries() {
    const DWORD error = GetLastError();  // says why a file could not be published
    if (rules_.deletesTemporaries) {
      for (const std::wstring& path : temporaries_) DeleteFileW(path.c_str());
    }
    temporaries_.clear();
    SetLastError(error);
  }

  const ExportJob& job_;
  const ExportRules& rules_;
  /// What the next step takes.
  std::wstring file_;
  std::vector<std::wstring> temporaries_;
  bool isSynthesized_ = true;
};

}  // namespace

bool hasContent(const std::wstring& path) {
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  return GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) &&
         (data.nFileSizeHigh != 0 || data.nFileSizeLow != 0);
}

std::optional<Action> runExport(const ExportJob& job, const ExportRules& rules) {
  return ExportRun(job, rules).walk();
}

}  // namespace speech
