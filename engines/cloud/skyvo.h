#pragma once

#include <speech/text_to_speech.h>

#include "engines/cloud/wave_player.h"

namespace speech {

/// Where the speech service is, unless a test says otherwise. Chosen when the module is built.
extern const char* const kServiceEndpoint;

/// The cloud engine: has an HTTP service make the sound, then plays it or converts it into a file.
class Skyvo final : public ITextToSpeech {
 public:
  /// @param chosenProduct    not owned, must outlive the engine
  /// @param serviceEndpoint  URL of the speech service; not copied
  explicit Skyvo(LXAPIProduct* chosenProduct, const char* serviceEndpoint = kServiceEndpoint)
      : product_(chosenProduct), serviceEndpoint_(serviceEndpoint) {}
  Skyvo(const Skyvo&) = delete;
  Skyvo& operator=(const Skyvo&) = delete;

  bool initialize() override;
  bool speak(const wchar_t* text, bool useSsml) override;
  bool speakSync(UINT message, const char* text) override;
  int textToFile(const wchar_t* text, const wchar_t* outputPath, int format, bool useSsml, int rateIndex,
                 bool logExport) override;
  bool stop() override;
  bool pauseResume() override;
  bool isSpeaking() override;
  bool isPaused() override;
  void reserved8() override;
  void reserved9() override;
  void reserved10() override;
  void setToolFolder(const wchar_t* folder) override;
  int applyOptions(const TextToSpeech_Options& options) override;
  bool runUserDictEditor(const wchar_t* dictionary, const wchar_t* extra) override;
  /// Silences what plays and closes the sound device.
  ~Skyvo() override = default;
  int getUserDictLimit(intptr_t a) override;
  unsigned short loadUserDict(const char* path) override;
  int unloadUserDict(int number) override;
  int checkUserDictTargetNorm(intptr_t a) override;
  int checkUserDictTargetPhon(intptr_t a) override;
  int csvParserMakeCsv(intptr_t a, intptr_t b, intptr_t c, intptr_t d) override;
  int getPinyinActiveInfo(intptr_t a, intptr_t b) override;
  bool setOutputAudio(int device) override;
  void setEventNotify(bool on) override;
  bool unloadEngine() override;
  bool loadEngine() override;
  intptr_t csvParserInit() override;
  int csvParserParsing(intptr_t a, intptr_t b) override;
  int csvParserGetNfields(intptr_t a) override;
  const char* csvParserGetField(intptr_t a, intptr_t b) override;
  int checkUserDictSubstitution(intptr_t a) override;
  int checkUserDictSourceNorm(intptr_t a) override;
  int checkUserDictSourceLen(intptr_t a) override;
  int synthesizeToBuffer(const wchar_t* text, bool useSsml, unsigned char** out) override;
  int exportAudio(const wchar_t* pcmPath, CStringW& outputBase, int format, int dataSize,
                  int rateIndex) override;
  int makeWavHeader(const wchar_t* path, int dataSize, int sampleRateHz, int bitsPerSample,
                    int channels) override;
  int getSampleRate(int index) override;
  CStringW escapeXml(const CStringW& text) override;
  int convertWavRate(const wchar_t* input, int rateHz, int bits, int channels,
                     const wchar_t* output) override;

  /// Has the service speak a text, and writes its reply's body to a file. Blocks until the reply is there;
  /// there is no time-out. The reply's header lines stay behind in a temporary text file.
  /// @return true when the reply is sound. Else the host has been sent the error's text, where there is one,
  ///   and the failure notice.
  bool requestSpeech(const wchar_t* text, bool useSsml, const wchar_t* outputPath);

 private:
  bool exchange(const wchar_t* text, bool useSsml, const wchar_t* outputPath) const;
  CStringW formBody(const wchar_t* escapedText, bool useSsml) const;
  bool fetch(const wchar_t* text, bool useSsml, const wchar_t* outputPath);
  int writePcm(const wchar_t* text, bool useSsml, const wchar_t* outputPath, int targetRateHz);
  int writeWav(const wchar_t* text, bool useSsml, const wchar_t* outputPath, int targetRateHz);
  template <class MakeLine>
  int writeThroughSox(const wchar_t* text, bool useSsml, MakeLine makeLine);

  bool paused_ = false;
  bool stopped_ = true;
  /// Holds the sox.exe of textToFile; ends in a backslash.
  CStringW toolFolder_;
  LXAPIProduct* product_;
  const char* serviceEndpoint_;
  WavePlayer player_;
};

}  // namespace speech
