// What the window does to export.

#include "reader_window.h"

#include <commctrl.h>

#include <utility>

namespace {

constexpr UINT_PTR kExportTimer = 1;

}  // namespace

void ReaderWindow::beginExport() {
  const std::int32_t voice = voices_.chosen();
  if (activity_ != Activity::kIdle || voice == VoiceList::kNone) return;
  std::optional<std::wstring> text = textToSay();
  if (!text) return;
  std::optional<ExportTarget> target = askForTarget(window_);
  if (!target) return;

  const std::int32_t result = engine_.use(voice);
  if (result != SPEECH_OK) return showStatus(describeError(result));
  export_.emplace(engine_.handle(), std::move(*text), std::move(*target));
  SendMessageW(controls_.progress, PBM_SETRANGE32, 0, static_cast<LPARAM>(export_->length()));
  SendMessageW(controls_.progress, PBM_SETPOS, 0, 0);
  setActivity(Activity::kRendering);
  showStatus(L"Exporting to " + export_->target().path);
  // Of all messages those of timers come last: between two pieces the window answers whatever its user
  // has done.
  SetTimer(window_, kExportTimer, USER_TIMER_MINIMUM, nullptr);
}

void ReaderWindow::continueExport() {
  if (activity_ == Activity::kRendering && !export_->isRendered()) {
    const std::int32_t result = export_->renderNext();
    if (result != SPEECH_OK) return endExport(describeError(result));
    SendMessageW(controls_.progress, PBM_SETPOS, export_->position(), 0);
  } else if (activity_ == Activity::kRendering) {
    // The next timer message writes; until then the window shows that it cannot be cancelled any more.
    setActivity(Activity::kWriting);
    showStatus(L"Writing " + export_->target().path);
  } else if (activity_ == Activity::kWriting) {
    KillTimer(window_, kExportTimer);
    const std::int32_t result = export_->write();
    endExport(result == SPEECH_OK ? L"Exported to " + export_->target().path : describeError(result));
    if (closesWhenWritten_ && result == SPEECH_OK) close();
    closesWhenWritten_ = false;
  }
}

void ReaderWindow::endExport(const std::wstring& message) {
  KillTimer(window_, kExportTimer);
  export_.reset();
  setActivity(Activity::kIdle);
  showStatus(message);
}
