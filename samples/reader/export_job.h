#pragma once

#include <speech/speech_c.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "save_dialog.h"

/// The export of a text, in steps short enough for a window to stay alive between them: first one piece of
/// the text after the other is turned into samples, then all of them are written into a file. Dropping the
/// job cancels it.
class ExportJob {
 public:
  ExportJob(SpeechEngine engine, std::wstring text, ExportTarget target);

  /// Takes the next piece. @return SPEECH_OK or a SpeechError
  std::int32_t renderNext();

  /// Whether every piece has been taken.
  bool isRendered() const { return position_ == text_.size(); }

  /// Writes the file, complete or not at all. Dispatches messages while a compressed file is made.
  /// @return SPEECH_OK or a SpeechError
  std::int32_t write() const;

  /// How far the text has been taken, and its length, both in UTF-16 units.
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

/// Length of the piece that a text begins with: a paragraph, or so many sentences of it as make a piece of
/// some hundred units.
std::size_t firstPiece(std::wstring_view text);
