#pragma once

#include "engines/shared/raw_pcm.h"
#include "framework/framework.h"
#include "win32/text.h"

namespace speech {

/// What the engines do differently when they turn raw PCM into an audio file.
struct PcmExportRules {
  enum class Source {
    kDeleted,  ///< The source is the engine's to delete, whatever became of it, and every attempt is logged.
    kKept      ///< The source is the host's, and only formats that exist are logged.
  };

  CStringW soxFolder;  ///< Holds sox.exe; ends in a backslash.
  CStringW speaker;    ///< For the log.
  CodePage codePage;   ///< Of narrow paths and of the log.
  Source source;
  LastFullBlock lastFullBlock;
};

/// Turns a raw 16-bit mono PCM file into a pcm, wav, ogg, gsm or mp3 file and logs it.
/// Arguments and result are those of ITextToSpeech::exportAudio.
int exportPcm(const PcmExportRules& rules, const CStringW& source, CStringW& destination, int format,
              int dataSize, int rateIndex);

}  // namespace speech
