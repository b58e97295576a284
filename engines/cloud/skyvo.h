#pragma once

#include <speech/text_to_speech.h>

#include "engines/cloud/wave_player.h"

namespace speech {

/// Where the speech service is, unless a test says otherwise. Chosen when the module is built.
extern const char* const kServiceEndpoint;

/// The cloud engine: has an HTTP service make the sound, then plays it or converts it into a file.
class Skyvo final : public ITextToSpeech {
 public:
  /// @param product          not owned, must outlive the engine
  /// @param serviceEndpoint  URL of the speech service; not copied
  explicit Skyvo(LXAPIProduct* product, const char* serviceEndpoint = kServiceEndpoint)
      : product_(product), serviceEndpoint_(serviceEndpoint) {}
  Skyvo(const Skyvo&) = delete;
  Skyvo& operator=(const Skyvo&) = delete;
  /// Silences what plays and closes the sound device.
  ~Skyvo() override = default;

  // Speaking.
  bool speak(const wchar_t* text, bool isSsml) override;
  bool stop() override;
  bool pauseResume() override;
  bool isSpeaking() override { return !stopped_; }
  bool isPaused() override { return paused_; }

  // Files and memory.
  int textToFile(const wchar_t* text, const wchar_t* outputPath, int format, bool isSsml, int rateIndex,
                 bool logExport) override;
  int exportAudio(const wchar_t* pcmPath, CStringW& outputBase, int format, int dataSize,
                  int rateIndex) override;
  int synthesizeToBuffer(const wchar_t* text, bool isSsml, unsigned char** out) override;
  void setToolFolder(const wchar_t* folder) override;
  bool runUserDictEditor(const wchar_t* dictionary, const wchar_t* extra) override;
  int makeWavHeader(const wchar_t* path, int dataSize, int sampleRateHz, int bitsPerSample,
                    int channels) override;
  int getSampleRate(int index) override;
  CStringW escapeXml(const CStringW& text) override;
  int convertWavRate(const wchar_t* input, int rateHz, int bits, int channels,
                     const wchar_t* output) override;

  // What the service does not have: engines to load, options, devices, user dictionaries.
  bool initialize() override { return true; }
  bool speakSync(UINT /*message*/, const char* /*text*/) override { return true; }
  void reserved8() override {}
  void reserved9() override {}
  void reserved10() override {}
  int applyOptions(const TextToSpeech_Options& /*options*/) override { return 0; }
  bool setOutputAudio(int /*device*/) override { return true; }
  void setEventNotify(bool /*on*/) override {}
  bool unloadEngine() override { return true; }
  bool loadEngine() override { return true; }
  int getUserDictLimit(intptr_t /*a*/) override { return kUnsupported; }
  unsigned short loadUserDict(const char* /*path*/) override { return 0; }
  int unloadUserDict(int /*number*/) override { return 0; }
  int checkUserDictTargetNorm(intptr_t /*a*/) override { return kUnsupported; }
  int checkUserDictTargetPhon(intptr_t /*a*/) override { return kUnsupported; }
  int checkUserDictSubstitution(intptr_t /*a*/) override { return kUnsupported; }
  int checkUserDictSourceNorm(intptr_t /*a*/) override { return kUnsupported; }
  int checkUserDictSourceLen(intptr_t /*a*/) override { return kUnsupported; }
  int csvParserMakeCsv(intptr_t /*a*/, intptr_t /*b*/, intptr_t /*c*/, intptr_t /*d*/) override {
    return kUnsupported;
  }
  int getPinyinActiveInfo(intptr_t /*a*/, intptr_t /*b*/) override { return kUnsupported; }
  intptr_t csvParserInit() override { return 0; }
  int csvParserParsing(intptr_t /*a*/, intptr_t /*b*/) override { return kUnsupported; }
  int csvParserGetNfields(intptr_t /*a*/) override { return kUnsupported; }
  const char* csvParserGetField(intptr_t /*a*/, intptr_t /*b*/) override { return ""; }

  /// Has the service speak a text, and writes its reply's body to a file. Blocks until the reply is there;
  /// there is no time-out. The reply's header lines stay behind in a temporary text file.
  /// @return true when the reply is sound. Otherwise the host has been sent the error's text, where there is
  ///   one, and the failure notice.
  bool requestSpeech(const wchar_t* text, bool isSsml, const wchar_t* outputPath);

 private:
  static constexpr int kUnsupported = -1;

  bool exchange(const wchar_t* text, bool isSsml, const wchar_t* outputPath) const;
  /// requestSpeech, and whether there is a file then.
  bool fetch(const wchar_t* text, bool isSsml, const wchar_t* outputPath);
  int writePcm(const wchar_t* text, bool isSsml, const wchar_t* outputPath, int targetRateHz);
  int writeWav(const wchar_t* text, bool isSsml, const wchar_t* outputPath, int targetRateHz);
  template <class MakeLine>
  int writeThroughSox(const wchar_t* text, bool isSsml, MakeLine makeLine);

  bool paused_ = false;
  bool stopped_ = true;
  /// Holds the sox.exe of textToFile; ends in a backslash.
  CStringW toolFolder_;
  LXAPIProduct* product_;
  const char* serviceEndpoint_;
  WavePlayer player_;
};

}  // namespace speech
