#pragma once

// What both engines do alike. An engine adds how it binds its voice, speaks and synthesizes into a file, and
// says by which routes and rules it exports.

#include <cstddef>
#include <cstdint>
#include <string>

#include <speech/text_to_speech.h>

#include "engines/exporting/plan.h"
#include "lxapi/lxapi.h"

namespace speech {

/// In what the two engines differ where they do the same.
struct EngineCustoms {
  ExportRules textRules;           ///< Of textToFile.
  ExportRules sampleRules;         ///< Of exportAudio.
  Route samplesToNoFormat;         ///< The route of exportAudio to a format that it does not have.
  bool samplesUseToolFolder;       ///< Whether exportAudio takes SoX from there, not from beside the program.
  std::size_t bytesBehindSamples;  ///< Zero bytes that synthesizeToBuffer adds.
};

class Engine : public ITextToSpeech {
 public:
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  // What is going on.
  bool isSpeaking() final { return isSpeaking_; }
  bool isPaused() final { return isPaused_; }

  // Files and samples.
  void setToolFolder(const wchar_t* folder) final;
  int exportAudio(const wchar_t* source, CStringW& destination, int format, int dataSize,
                  int rateIndex) final;
  int makeWavHeader(const wchar_t* path, int dataSize, int sampleRateHz, int bitsPerSample,
                    int channels) final;
  int convertWavRate(const wchar_t* input, int rateHz, int bits, int channels, const wchar_t* output) final;
  int synthesizeToBuffer(const wchar_t* text, bool isSsml, unsigned char** out) final;

  // Helpers for hosts.
  int getSampleRate(int index) final { return sampleRateAt(index); }
  CStringW escapeXml(const CStringW& text) final;
  /// The same without an engine. Throws where memory is short.
  static CStringW escapedXml(CStringW text);
  bool runUserDictEditor(const wchar_t* dictionary, const wchar_t* extra) final;

  // Slots that no operation uses.
  void reserved8() final {}
  void reserved9() final {}
  void reserved10() final {}

 protected:
  /// @param product    not owned, must outlive the engine
  /// @param ttsHandle  synthesis handle of the engine library, or 0
  /// @param customs    not copied
  Engine(LXAPIProduct* product, std::uint32_t ttsHandle, const EngineCustoms& customs)
      : product_(product), ttsHandle_(ttsHandle), customs_(customs) {}
  ~Engine() override = default;

  /// The flags that every text goes to the engine library with.
  static constexpr std::int32_t speakFlags(bool isSsml) {
    return isSsml ? LX_SPEAK_ASYNC | LX_SPEAK_SSML : std::int32_t{LX_SPEAK_ASYNC};
  }

  /// textToFile, but for the sound itself. Exceptions pass through.
  int exportText(const RouteTable& routes, const wchar_t* path, int format, int rateIndex, bool logExport,
                 Synthesize synthesize) const;

  LXAPIProduct* product_;
  /// Speak, stop, attributes and buffers go to it.
  const std::uint32_t ttsHandle_;
  bool isSpeaking_ = false;
  bool isPaused_ = false;

 private:
  const EngineCustoms& customs_;
  /// Holds sox.exe; ends in a backslash.
  std::wstring toolFolder_;
};

}  // namespace speech
