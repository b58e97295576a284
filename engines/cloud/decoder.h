#pragma once

// CDecoder: turns an audio file into what the sound device needs, the PCM payload in memory and its format.
//
//   CDecoder decoder;
//   if (decoder.openWav(path) == CDecoder::kOpened) play(decoder.format(), decoder.sharedPayload());
//
// A decoder belongs to one thread at a time. Only one decodeMp3ToWav may run in the process at once.

#include <windows.h>

#include <mmreg.h>

#include <cstddef>
#include <cstdio>
#include <memory>

#include "base/memory.h"
#include "framework/framework.h"

namespace speech {

class CDecoder {
 public:
  /// What openWav answers.
  enum OpenResult {
    kOpened = 0,
    kNoPath = -1,
    kNotOpened = -2,
    kNoWaveData = -3,  ///< Not a WAVE form, or its "data" chunk is missing or cut short.
    kNoFormat = -4,    ///< The "fmt " chunk is missing, cut short, or longer than any format that is known.
    kFormatNotLeft = -5,  ///< The file could not be positioned behind the "fmt " chunk.
    kNoMemory = -6,       ///< The payload is larger than can be allocated.
  };

  /// Releases the bytes of a payload.
  struct ArrayDeleter {
    void operator()(const unsigned char* bytes) const { delete[] bytes; }
  };

  /// Loads a WAV file whole. On failure payload and format stay as they were.
  int openWav(const wchar_t* path);

  /// Decodes an MP3 file into a new temporary WAV file of 16-bit samples, which the caller deletes.
  /// @return its path; empty when `mp3Path` is null. An unreadable MP3 file gives a WAV file without samples.
  static CStringW decodeMp3ToWav(const wchar_t* mp3Path);

  /// Drops payload and format.
  void close();

  /// A further owner of the payload; null when nothing is loaded.
  std::shared_ptr<unsigned char> sharedPayload() const { return payload_; }
  /// Size of the payload in bytes.
  DWORD payloadSize() const { return payloadSize_; }
  /// As it stands in the file; all zero when nothing is loaded. A "fmt " chunk that ends early leaves the
  /// fields behind its end as they were.
  const WAVEFORMATEXTENSIBLE& format() const { return format_; }

  /// Reads an open stream from its beginning to its end.
  /// @param size  receives the number of bytes
  /// @return the bytes; null when the stream's size is unknown or memory is short
  static MallocBlock<unsigned char> loadWholeFile(std::FILE* stream, std::size_t& size);

 private:
  std::shared_ptr<unsigned char> payload_;
  DWORD payloadSize_ = 0;
  WAVEFORMATEXTENSIBLE format_ = {};
};

}  // namespace speech
