#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "controls.h"
#include "widgets.h"

/// What the program is doing.
enum class Activity {
  kIdle,
  kSpeaking,
  kPaused,
  kRendering,  // an export turns the text into samples, piece by piece
  kWriting,    // an export writes its file: a single call, which cannot be cancelled
};

/// What the window shows. It knows the library's voices, but asks for no speech.
class ReaderView {
 public:
  /// Fills the window with its controls.
  void build(HWND window);
  void setResolution(UINT dpi);
  void arrange() const;

  /// Enables what can be done now, and keeps the keyboard's focus on something that can be used.
  void setActivity(Activity activity);
  Activity activity() const { return activity_; }

  /// Call it last: whoever reads the status, a program too, may act on it at once.
  void showStatus(const std::wstring& text) const;
  void showProgress(std::size_t position, std::size_t length) const;

  /// Shows only the voices that match what is typed above them.
  void filterVoices();
  /// Shows the settings of the chosen voice.
  void showVoice();
  /// Gives a slider's position to the chosen voice.
  void applySlider(HWND slider);
  /// The library's number of the chosen voice, or VoiceList::kNone.
  std::int32_t chosenVoice() const { return voices_.chosen(); }

  /// The whole text. If there is none, the status says so and the result is empty.
  std::optional<std::wstring> textToSay() const;
  const TextView& text() const { return text_; }

  const Controls& controls() const { return controls_; }

 private:
  bool isExporting() const { return activity_ == Activity::kRendering || activity_ == Activity::kWriting; }

  HWND window_ = nullptr;
  Controls controls_ = {};
  std::vector<OptionSlider> sliders_;
  VoiceList voices_;
  TextView text_;
  Activity activity_ = Activity::kIdle;
};
