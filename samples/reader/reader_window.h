#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "controls.h"
#include "engine.h"
#include "export_job.h"
#include "option_slider.h"
#include "text_view.h"
#include "voice_list.h"

/// The program's one window: what the user does goes to the engine, what the engine tells is shown.
class ReaderWindow {
 public:
  ReaderWindow();

  /// Makes the window, not yet shown. It ends the message loop when it is closed, and must not outlive this
  /// object.
  /// @return null when it could not be made
  HWND create(HINSTANCE instance);

 private:
  enum class Activity {
    kIdle,
    kSpeaking,
    kPaused,
    kRendering,  // an export turns the text into samples, piece by piece
    kWriting,    // an export writes its file: a single call, which cannot be cancelled
  };

  static LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
  LRESULT handle(UINT message, WPARAM wParam, LPARAM lParam);

  void build();
  void setResolution(UINT dpi);
  static void moveFocus(HWND control);
  void obey(int command, int notification);
  void close();

  // in reader_speech.cpp
  void chooseVoice();
  void applySlider(HWND slider);
  void speak();
  void pauseOrResume();
  void stop();
  void onSpeechEvent(const SpeechEvent& event);

  // in reader_export.cpp
  void beginExport();
  void continueExport();
  void endExport(const std::wstring& message);

  /// Enables what can be done now, and keeps the keyboard's focus on something that can be used.
  void setActivity(Activity activity);
  /// The whole text, or nothing where there is none, which is told.
  std::optional<std::wstring> textToSay() const;
  /// Comes last: who reads it, a program too, may go on at once.
  void showStatus(const std::wstring& text) const;
  bool isExporting() const { return activity_ == Activity::kRendering || activity_ == Activity::kWriting; }

  HWND window_ = nullptr;
  HWND focusBefore_ = nullptr;  // the focused control, while another program is in front
  Controls controls_ = {};
  std::vector<OptionSlider> sliders_;
  VoiceList voices_;
  TextView text_;
  Engine engine_;
  std::optional<ExportJob> export_;
  Activity activity_ = Activity::kIdle;
  bool closesWhenWritten_ = false;
};
