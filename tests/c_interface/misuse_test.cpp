// What callers get wrong.

#include <thread>

#include "tests/c_interface/c_interface_fixture.h"

namespace speech::test {
namespace {

using namespace ::testing;

class CMisuse : public CInterfaceTest {
 protected:
  /// One call for each way through the door.
  static void expectEachCall(std::int32_t wanted, SpeechEngine engine) {
    std::int32_t number = 0;
    expectEach(wanted, {speech_state(engine, &number), speech_wait(engine, 0), speech_stop(engine),
                        speech_speak(engine, "x", 0), speech_csv_field(engine, 1, 0, nullptr, 0, nullptr),
                        speech_engine_close(engine)});
  }
};

TEST_F(CMisuse, NoEngineAnswersAWrongHandle) {
  SpeechEngine const stale = engine_;
  open(0);
  for (SpeechEngine const wrong : {SpeechEngine{nullptr}, stale, SpeechEngine(~std::uintptr_t{0})})
    expectEachCall(SPEECH_ERROR_HANDLE, wrong);
  EXPECT_THAT(recording().takeCalls(), IsEmpty());
}

TEST_F(CMisuse, NullPointersAreErrors) {
  expectEach(SPEECH_ERROR_ARGUMENT,
             {speech_voice_count(nullptr), speech_language_count(nullptr), speech_voice_number(0, 0, nullptr),
              speech_option_get(0, 0, nullptr), speech_option_changed(0, nullptr)});
  expectEach(SPEECH_ERROR_ARGUMENT,
             {speech_engine_open(0, nullptr, nullptr, nullptr), speech_engine_voice(engine_, nullptr),
              speech_set_tool_folder(engine_, nullptr), speech_state(engine_, nullptr)});
  expectEach(SPEECH_ERROR_ARGUMENT, {speech_speak(engine_, nullptr, 0), speech_speak_w(engine_, nullptr, 0),
                                     speech_synthesize(engine_, "x", 0, 0, nullptr)});
  expectEach(SPEECH_ERROR_ARGUMENT,
             {speech_export(engine_, "x", 0, SPEECH_FORMAT_WAV, 0, nullptr),
              speech_export_samples(engine_, nullptr, 8, 8000, SPEECH_FORMAT_WAV, "x"),
              speech_dictionary_load(engine_, nullptr), speech_dictionary_ask(engine_, 0, 0, nullptr)});
  expectEach(SPEECH_ERROR_ARGUMENT,
             {speech_csv_reader(engine_, nullptr), speech_csv_read(engine_, 1, "a,b", nullptr),
              speech_csv_field_count(engine_, 1, nullptr)});
  EXPECT_EQ(speech_option_range(0, 0, nullptr, nullptr, nullptr), SPEECH_OK);
  speech_audio_free(nullptr);
}

TEST_F(CMisuse, UnknownNumbersAndMalformedTextsReachNoEngine) {
  const short samples[4] = {};
  const wchar_t lone[] = {L'a', 0xD83D, L'b', 0};
  SpeechAudio audio;
  std::int32_t number = 0;
  expectEach(SPEECH_ERROR_ARGUMENT,
             {speech_speak(engine_, "x", SPEECH_FLAG_LOG), speech_export(engine_, "x", 0, 14, 0, "x"),
              speech_export(engine_, "x", SPEECH_FLAG_INTERRUPT, SPEECH_FORMAT_WAV, 0, "x")});
  expectEach(SPEECH_ERROR_ARGUMENT,
             {speech_export_samples(engine_, samples, 7, 8000, SPEECH_FORMAT_WAV, "x"),
              speech_export_samples(engine_, samples, 8, 0, SPEECH_FORMAT_WAV, "x"),
              speech_synthesize(engine_, "x", 0, -1, &audio), speech_set_output_device(engine_, -2),
              speech_dictionary_ask(engine_, 7, 0, &number)});
  expectEach(SPEECH_ERROR_UNSUPPORTED,
             {speech_export(engine_, "x", 0, SPEECH_FORMAT_WAV, 11025, "x"),
              speech_export_samples(engine_, samples, 8, 8000, SPEECH_FORMAT_ALAW, "x")});
  for (const char* const text : {"\xFF", "caf\xC3", "\xC0\x80", "\xED\xA0\x80"})
    expectEach(SPEECH_ERROR_TEXT, {speech_speak(engine_, text, 0), speech_speak_w(engine_, lone, 0)});
  EXPECT_THAT(recording().takeCalls(), IsEmpty());
}

TEST_F(CMisuse, OnlyOneEngineIsOpenAndOneThatCannotBeLoadedDoesNotBarTheNext) {
  SpeechEngine none = nullptr;
  EXPECT_EQ(speech_engine_open(1, nullptr, nullptr, &none), SPEECH_ERROR_ENGINE_OPEN);
  recording().answer("LXAPI_LoadEngine(101)", LX_ERROR_FAILED);
  EXPECT_EQ(speech_engine_close(engine_), SPEECH_OK);
  EXPECT_EQ(speech_engine_open(0, nullptr, nullptr, &none), SPEECH_ERROR_LOAD);
  EXPECT_EQ(speech_engine_open(7, nullptr, nullptr, &none), SPEECH_ERROR_VOICE);
  EXPECT_EQ(none, nullptr);
  EXPECT_EQ(speech_engine_open(1, nullptr, nullptr, &engine_), SPEECH_OK);
}

TEST_F(CMisuse, AnotherThreadIsTurnedAway) {
  std::thread([this] {
    expectEachCall(SPEECH_ERROR_WRONG_THREAD, engine_);
    EXPECT_EQ(speech_release(), SPEECH_ERROR_WRONG_THREAD);
  }).join();
  EXPECT_EQ(speech_release(), SPEECH_OK);
  std::thread([] { expectEach(SPEECH_OK, {speech_option_reset(0), speech_release()}); }).join();
}

TEST_F(CMisuse, TheCppInterfacesEngineIsLeftAloneAndMakesHandlesStale) {
  ITextToSpeech::releaseInstance();
  expectEachCall(SPEECH_ERROR_HANDLE, engine_);
  for (int i = 0; i < 10; ++i) open(0);  // so that the next engine gets the same address
  ITextToSpeech::getInstance(nullptr, 0, ITextToSpeech::getLXAPIProductList()->GetHead());
  expectEachCall(SPEECH_ERROR_HANDLE, engine_);
  expectEach(SPEECH_ERROR_ENGINE_OPEN, {speech_engine_open(0, nullptr, nullptr, &engine_), speech_release()});
  EXPECT_TRUE(ITextToSpeech::reloadEngine());
  ITextToSpeech::releaseInstance();
}

}  // namespace
}  // namespace speech::test
