#pragma once

#include "engines/cloud/wave_player.h"
#include "engines/engine.h"

namespace speech {

/// Where the speech service is, unless a test says otherwise. Chosen when the module is built.
extern const char* const kServiceEndpoint;

/// The cloud engine: has an HTTP service make the sound, then plays it or converts it into a file.
class Skyvo final : public Engine {
 public:
  /// @param product          not owned, must outlive the engine
  /// @param serviceEndpoint  URL of the speech service; not copied
  explicit Skyvo(LXAPIProduct* product, const char* serviceEndpoint = kServiceEndpoint)
      : Engine(product, kNoSynthesisHandle, kCustoms), serviceEndpoint_(serviceEndpoint) {}
  Skyvo(const Skyvo&) = delete;
  Skyvo& operator=(const Skyvo&) = delete;
  /// Silences what plays and closes the sound device.
  ~Skyvo() override = default;

  // Speaking.
  bool speak(const wchar_t* text, bool isSsml) override;
  bool stop() override;
  bool pauseResume() override;

  // Files.
  int textToFile(const wchar_t* text, const wchar_t* path, int format, bool isSsml, int rateIndex,
                 bool logExport) override;

  // What the service does not have: engines to load, options, devices, user dictionaries.
  bool initialize() override { return true; }
  bool loadEngine() override { return true; }
  bool unloadEngine() override { return true; }
  int applyOptions(const TextToSpeech_Options& /*options*/) override { return 0; }
  bool setOutputAudio(int /*device*/) override { return true; }
  void setEventNotify(bool /*on*/) override {}
  bool speakSync(UINT /*message*/, const char* /*text*/) override { return true; }
  unsigned short loadUserDict(const char* /*path*/) override { return 0; }
  int unloadUserDict(int /*number*/) override { return 0; }
  int getUserDictLimit(intptr_t /*a*/) override { return kUnsupported; }
  int checkUserDictSourceLen(intptr_t /*a*/) override { return kUnsupported; }
  int checkUserDictSourceNorm(intptr_t /*a*/) override { return kUnsupported; }
  int checkUserDictTargetNorm(intptr_t /*a*/) override { return kUnsupported; }
  int checkUserDictTargetPhon(intptr_t /*a*/) override { return kUnsupported; }
  int checkUserDictSubstitution(intptr_t /*a*/) override { return kUnsupported; }
  int getPinyinActiveInfo(intptr_t /*a*/, intptr_t /*b*/) override { return kUnsupported; }
  intptr_t csvParserInit() override { return 0; }
  int csvParserParsing(intptr_t /*a*/, intptr_t /*b*/) override { return kUnsupported; }
  int csvParserGetNfields(intptr_t /*a*/) override { return kUnsupported; }
  const char* csvParserGetField(intptr_t /*a*/, intptr_t /*b*/) override { return ""; }
  int csvParserMakeCsv(intptr_t /*a*/, intptr_t /*b*/, intptr_t /*c*/, intptr_t /*d*/) override {
    return kUnsupported;
  }

  /// Has the service speak a text, and writes its reply's body to a file. Blocks until the reply is there;
  /// there is no time-out. The reply's header lines stay behind in a temporary text file.
  /// @return true when the reply is sound. Otherwise the host has been sent the error's text, where there is
  ///   one, and the failure notice.
  bool requestSpeech(const wchar_t* text, bool isSsml, const wchar_t* path);

 private:
  static const EngineCustoms kCustoms;
  static constexpr int kUnsupported = -1;
  /// Kept: synthesizeToBuffer asks the engine library all the same, though no engine is ever opened here.
  static constexpr std::uint32_t kNoSynthesisHandle = 0;

  bool exchange(const wchar_t* text, bool isSsml, const wchar_t* path) const;
  /// requestSpeech, and whether there is a file then.
  bool fetch(const wchar_t* text, bool isSsml, const wchar_t* path);

  const char* serviceEndpoint_;
  WavePlayer player_;
};

}  // namespace speech
