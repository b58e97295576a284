#pragma once

#include <speech/speech_c.h>
#include <windows.h>

#include <optional>
#include <string>

#include "engine.h"
#include "export_job.h"
#include "reader_view.h"

/// What the program does: speaks or exports the text of a view, and shows there how it goes.
class Reader {
 public:
  explicit Reader(ReaderView& view);

  void speak();
  void pauseOrResume();
  /// Ends the speech, or cancels the export.
  void stop();

  /// Asks where to, then leaves the work to continueExport.
  /// @param window  its timer messages are to call continueExport
  void beginExport(HWND window);
  void continueExport();

  /// Whether the window may close now. If not, it is closed when the file that is being written is complete.
  bool canClose();
  /// Ends everything, for a window that goes.
  void end();

 private:
  void onSpeechEvent(const SpeechEvent& event);
  /// Makes the engine of the chosen voice the live one. Says so if that fails.
  bool openEngine();
  void endExport(const std::wstring& message);

  ReaderView& view_;
  Engine engine_;
  std::optional<ExportJob> export_;
  HWND window_ = nullptr;  // whose timer drives the export
  bool closesWhenWritten_ = false;
};
