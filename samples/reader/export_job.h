#pragma once

// Exporting a text: where to, and the work itself.

#include <speech/speech_c.h>
#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Where an export goes, and as what.
struct ExportTarget {
  std::wstring path;
  std::int32_t format;  // SpeechFormat
};

/// Asks for a file. The extension of its name decides the format; a name without a known extension gets that
/// of the type chosen in the dialog. @return empty if the user cancels
std::optional<ExportTarget> askForTarget(HWND owner);

/// The export of a text, in steps short enough for a window to stay alive between them: first the text is
/// turned into samples, piece by piece, then all of them are written to a file. Dropping the job cancels it.
class ExportJob {
 public:
  ExportJob(SpeechEngine engine, std::wstring text, ExportTarget target);

  /// Renders the next piece. @return SPEECH_OK or a SpeechError
  std::int32_t renderNext();

  /// Whether every piece has been rendered.
  bool isRendered() const { return position_ == text_.size(); }

  /// Writes the file, complete or not at all. Dispatches messages while a compressed file is made.
  /// @return SPEECH_OK or a SpeechError
  std::int32_t write() const;

  /// How much of the text has been rendered, and its length, both in UTF-16 units.
  std::size_t position() const { return position_; }
  std::size_t length() const { return text_.size(); }

  const ExportTarget& target() const { return target_; }

 private:
  SpeechEngine engine_;
  std::wstring text_;
  ExportTarget target_;
  std::size_t position_ = 0;
  std::vector<std::byte> samples_;
  std::int32_t sampleRateHz_ = 0;
};
