#pragma once

// A stand-in for the engine library: it serves all of lxapi.h, keeps every call in order, answers what a test
// tells it to and raises events from a thread of its own.
//
//   recording().reset();
//   recording().install({.key1 = L"alex", .key2 = L"m", .sampleRateHz = 22050});
//   recording().answer("LXAPI_LoadEngine", -5);
//   ...
//   EXPECT_THAT(recording().takeCalls(), ElementsAre("LXAPI_SetEngineHandle(1, 101)",
//   "LXAPI_LoadEngine(101)"));
//
// Calls read as they were made: numbers in decimal, texts in double quotes byte for byte,
// null pointers as 0, and pointers to outputs by their name in lxapi.h. Synthesis handles count from 1;
// engine handles are 101 for the engine that was installed first, 102 for the next; 0 for one that is not
// installed.

#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "lxapi/lxapi.h"

namespace speech::test {

/// What the enumeration says of an engine.
struct InstalledEngine {
  std::wstring key1 = {}, key2 = {};
  std::int32_t engineNumber = 0;
  std::wstring text3 = {}, text4 = {}, text5 = {}, gender = {}, text7 = {};
  std::int32_t sampleRateHz = 22050;
  std::int32_t number9 = 0;
  std::wstring language = {}, type = {};
};

class RecordingEngine {
 public:
  /// Forgets calls, answers, engines and handles.
  void reset();

  void install(InstalledEngine engine) { engines_.push_back(std::move(engine)); }

  /// The calls since the last takeCalls or reset.
  std::vector<std::string> takeCalls();

  /// What a function answers from now on; without it 0, or the next handle. `call` is the function's name
  /// alone or a whole call as it is recorded, which goes first.
  void answer(const std::string& call, std::int32_t value) { answers_[call] = value; }

  /// What an internal function writes: `function` is its name and arguments, as in "LX_GetTTSInfo(16)".
  /// Without it nothing is written.
  void answerInternal(const std::string& function, std::int32_t value) { internalNumbers[function] = value; }
  void answerInternal(const std::string& function, const std::string& text) {
    internalTexts[function] = text;
  }

  /// A function, or a whole call as it is recorded, that throws std::bad_alloc.
  std::string outOfMemoryIn;

  /// What LXAPI_GetTTSInfo hands out.
  LXTTSINFO ttsInfo = {};
  /// What LXAPI_GetBuffer hands out, and LXAPI_TextToFile writes to the path of the last
  /// LXAPI_SetOutputFile; no file when empty.
  std::vector<unsigned char> audio;

  /// Calls the event procedure that was registered last, on a thread of the stand-in's own; returns when it
  /// has returned.
  void raise(std::uint32_t tts, std::int32_t event, std::uint32_t word1 = 0, std::uint32_t word2 = 0,
             const std::string& name = {});
  void raiseWithoutRecord(std::uint32_t tts, std::int32_t event) const;

  // What follows serves the functions of lxapi.h.

  /// Records a call and returns its answer.
  std::int32_t record(const std::string& function, const std::string& arguments, std::int32_t standard = 0);
  const InstalledEngine* installed(std::uint32_t cursor) const;
  std::uint32_t findEngine(const std::string& key1, const std::string& key2) const;
  std::map<std::string, std::int32_t> internalNumbers;
  std::map<std::string, std::string> internalTexts;
  std::uint32_t lastHandle = 0;
  LXEVENTPROC eventProcedure = nullptr;
  std::string outputFile;

 private:
  std::mutex mutex_;
  std::vector<std::string> calls_;
  std::map<std::string, std::int32_t> answers_;
  std::deque<InstalledEngine> engines_;
};

/// The one stand-in of the process.
RecordingEngine& recording();

}  // namespace speech::test
