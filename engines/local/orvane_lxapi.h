#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>

#include "engines/engine.h"

namespace speech {

/// Where an operation reports what a user should know.
using UserReport = std::function<void(const wchar_t* text)>;

/// The local engine: drives an installed synthesis engine through the engine library. It borrows its two
/// handles and its product from the catalogue, which outlives it.
class OrvaneLXAPI final : public Engine {
 public:
  /// Registers the engine's events and makes them the ones that reach the host.
  explicit OrvaneLXAPI(LXAPIProduct* product);
  OrvaneLXAPI(const OrvaneLXAPI&) = delete;
  OrvaneLXAPI& operator=(const OrvaneLXAPI&) = delete;
  /// Unloads the engine, loaded or not.
  ~OrvaneLXAPI() override;

  // The session.
  bool initialize() override;
  bool loadEngine() override;
  bool unloadEngine() override;
  int applyOptions(const TextToSpeech_Options& options) override;
  bool setOutputAudio(int device) override;
  void setEventNotify(bool on) override;

  // Speaking.
  bool speak(const wchar_t* text, bool isSsml) override;
  bool speakSync(UINT message, const char* text) override;
  bool stop() override;
  bool pauseResume() override;

  // Files.
  int textToFile(const wchar_t* text, const wchar_t* path, int format, bool isSsml, int rateIndex,
                 bool logExport) override;

  // User dictionaries.
  unsigned short loadUserDict(const char* path) override;
  /// The same with another way of reporting failures than the message box.
  unsigned short loadUserDict(const char* path, const UserReport& report);
  int unloadUserDict(int number) override;

  // The engine's own functions for those who edit dictionaries.
  int getUserDictLimit(intptr_t a) override;
  int checkUserDictSourceLen(intptr_t a) override;
  int checkUserDictSourceNorm(intptr_t a) override;
  int checkUserDictTargetNorm(intptr_t a) override;
  int checkUserDictTargetPhon(intptr_t a) override;
  int checkUserDictSubstitution(intptr_t a) override;
  int getPinyinActiveInfo(intptr_t a, intptr_t b) override;
  intptr_t csvParserInit() override;
  int csvParserParsing(intptr_t a, intptr_t b) override;
  int csvParserGetNfields(intptr_t a) override;
  const char* csvParserGetField(intptr_t a, intptr_t b) override;
  int csvParserMakeCsv(intptr_t a, intptr_t b, intptr_t c, intptr_t d) override;

 private:
  static const EngineCustoms kCustoms;

  template <class... Arguments>
  int callInternal(const char* name, Arguments... arguments) const;
  unsigned short loadWordList(const char* path, const UserReport& report);
  unsigned short loadLexicon(const char* path, const UserReport& report) const;

  /// Turns the engine's events into notices. Runs on a thread of the engine library: it reads values of the
  /// module and posts, nothing else.
  static void LXAPI_CALL onEngineEvent(std::uint32_t handle, std::int32_t event, const LXEVENT* record);

  /// The synthesis handle whose events are forwarded to the host; 0 until the first local engine is built,
  /// then the last-built one's. Never cleared.
  static inline constinit std::atomic<std::uint32_t> eventTtsHandle_ = 0;
  /// Events are forwarded only while it is true; every construction sets it.
  static inline constinit std::atomic<bool> isForwarding_ = false;

  /// The product's engine, which dictionaries and the comma pause belong to.
  const std::uint32_t engineHandle_;
  /// The text of the last csvParserGetField. The engine fills at most kFieldSize bytes; the last one stays 0.
  static constexpr std::size_t kFieldSize = 1000;
  std::array<char, kFieldSize + 1> field_{};
};

}  // namespace speech
