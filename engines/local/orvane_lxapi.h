#pragma once

#include <array>
#include <cstdint>

#include <speech/text_to_speech.h>

#include "engines/shared/user_message.h"

namespace speech {

/// The local engine: drives an installed synthesis engine through the engine library. It borrows its two
/// handles and its product from the catalogue, which outlives it.
class OrvaneLXAPI final : public ITextToSpeech {
 public:
  /// Registers the engine's events and makes them the ones that reach the host.
  explicit OrvaneLXAPI(LXAPIProduct* chosenProduct);
  OrvaneLXAPI(const OrvaneLXAPI&) = delete;
  OrvaneLXAPI& operator=(const OrvaneLXAPI&) = delete;

  bool initialize() override;
  bool speak(const wchar_t* text, bool flag) override;
  bool speakSync(UINT message, const char* text) override;
  int textToFile(const wchar_t* text, const wchar_t* path, int format, bool flag, int rateIndex,
                 bool logExport) override;
  bool stop() override;
  bool pauseResume() override;
  bool isSpeaking() override;
  bool isPaused() override;
  void reserved8() override;
  void reserved9() override;
  void reserved10() override;
  void setToolFolder(const wchar_t* folder) override;
  int applyOptions(const TextToSpeech_Options& values) override;
  bool runUserDictEditor(const wchar_t* dictionary, const wchar_t* extra) override;
  /// Unloads the engine, loaded or not.
  ~OrvaneLXAPI() override;
  int getUserDictLimit(intptr_t a) override;
  unsigned short loadUserDict(const char* path) override;
  /// The same with failures reported otherwise than in a message box.
  unsigned short loadUserDict(const char* path, const UserReport& report);
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
  int synthesizeToBuffer(const wchar_t* text, bool flag, unsigned char** out) override;
  int exportAudio(const wchar_t* source, CStringW& destination, int format, int dataSize,
                  int rateIndex) override;
  int makeWavHeader(const wchar_t* path, int dataSize, int sampleRateHz, int bitsPerSample,
                    int channels) override;
  int getSampleRate(int index) override;
  CStringW escapeXml(const CStringW& text) override;
  int convertWavRate(const wchar_t* input, int rateHz, int bits, int channels,
                     const wchar_t* output) override;

 private:
  template <class... Arguments>
  int callInternal(const char* name, Arguments... arguments) const;
  unsigned short loadWordList(const char* path, const UserReport& report);
  unsigned short loadLexicon(const char* path, const UserReport& report) const;

  TextToSpeech_Options options;
  /// The product's engine, which dictionaries and the comma pause belong to.
  std::uint32_t engineHandle;
  /// The product's synthesis handle: speak, stop, attributes and buffers go to it.
  std::uint32_t ttsHandle;
  bool paused = false;
  bool idle = true;
  /// Holds sox.exe; ends in a backslash.
  CStringW toolFolder;
  /// Not owned.
  LXAPIProduct* product;
  /// The text of the last csvParserGetField. The engine fills at most kFieldSize bytes; the last one stays 0.
  static constexpr std::size_t kFieldSize = 1000;
  std::array<char, kFieldSize + 1> field{};
};

}  // namespace speech
