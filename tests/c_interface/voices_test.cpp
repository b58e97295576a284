// Voices, languages, options, results.

#include <array>
#include <set>

#include "tests/c_interface/c_interface_fixture.h"

namespace speech::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

using CVoices = CInterfaceTest;
using COptions = CInterfaceTest;

TEST_F(CVoices, AreToldInBothEncodings) {
  std::int32_t count = 0;
  ASSERT_EQ(speech_voice_count(&count), SPEECH_OK);
  EXPECT_EQ(count, 2);

  char narrow[20] = "";
  std::uint32_t length = 0;
  ASSERT_EQ(speech_voice_text(0, SPEECH_VOICE_KEY1, narrow, sizeof narrow, &length), SPEECH_OK);
  EXPECT_STREQ(narrow, "Zo\xC3\xAB");
  EXPECT_EQ(length, 4u);
  wchar_t wide[20] = L"";
  ASSERT_EQ(speech_voice_text_w(0, SPEECH_VOICE_KEY1, wide, 20, &length), SPEECH_OK);
  EXPECT_STREQ(wide, L"Zo\u00eb");
  EXPECT_EQ(length, 3u);

  std::int32_t rate = 0;
  EXPECT_EQ(speech_voice_number(1, SPEECH_VOICE_SAMPLE_RATE, &rate), SPEECH_OK);
  EXPECT_EQ(rate, 16000);

  EXPECT_EQ(speech_voice_text(1, SPEECH_VOICE_GENDER_CODE, narrow, sizeof narrow, nullptr), SPEECH_OK);
  EXPECT_STREQ(narrow, "F");
  std::int32_t tts = 0, engine = 0;
  EXPECT_EQ(speech_voice_number(1, SPEECH_VOICE_SYNTHESIS_HANDLE, &tts), SPEECH_OK);
  EXPECT_EQ(speech_voice_number(1, SPEECH_VOICE_ENGINE_HANDLE, &engine), SPEECH_OK);
  EXPECT_THAT((std::array{tts, engine}), ElementsAre(2, 102));
}

TEST_F(CVoices, ATextThatDoesNotFitLeavesTheBufferAloneAndTellsItsLength) {
  char buffer[4] = "xyz";
  std::uint32_t length = 0;
  EXPECT_EQ(speech_voice_text(0, SPEECH_VOICE_KEY1, buffer, sizeof buffer, &length), SPEECH_ERROR_BUFFER);
  EXPECT_STREQ(buffer, "xyz");
  EXPECT_EQ(length, 4u);
  EXPECT_EQ(speech_voice_text(0, SPEECH_VOICE_KEY1, nullptr, 0, &length), SPEECH_ERROR_BUFFER);
  EXPECT_EQ(speech_voice_text(0, SPEECH_VOICE_KEY1, nullptr, 5, nullptr), SPEECH_ERROR_ARGUMENT);
}

TEST_F(CVoices, OutOfRangeIsAnError) {
  std::int32_t value = 7;
  char buffer[20];
  EXPECT_EQ(speech_voice_text(2, SPEECH_VOICE_KEY1, buffer, sizeof buffer, nullptr), SPEECH_ERROR_VOICE);
  EXPECT_EQ(speech_voice_text(-1, SPEECH_VOICE_KEY1, buffer, sizeof buffer, nullptr), SPEECH_ERROR_VOICE);
  EXPECT_EQ(speech_voice_text(0, 17, buffer, sizeof buffer, nullptr), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_voice_number(0, 5, &value), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_voice_number(9, SPEECH_VOICE_INFO9, &value), SPEECH_ERROR_VOICE);
  EXPECT_EQ(speech_option_get(0, 7, &value), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(speech_option_get(0, -1, &value), SPEECH_ERROR_ARGUMENT);
  EXPECT_EQ(value, 7);
}

TEST_F(CVoices, LanguagesComeOnceEachHoweverOftenTheyAreAsked) {
  recording().install({.key1 = L"c", .language = L"DE-de"});
  for (int round = 0; round < 2; ++round) {
    std::int32_t count = 0;
    ASSERT_EQ(speech_language_count(&count), SPEECH_OK);
    EXPECT_EQ(count, 2);
  }
  char code[10] = "";
  EXPECT_EQ(speech_language(1, code, sizeof code, nullptr), SPEECH_OK);
  EXPECT_STREQ(code, "de-DE");
  EXPECT_EQ(speech_language(2, code, sizeof code, nullptr), SPEECH_ERROR_VOICE);
}

TEST_F(COptions, AreBoundedAndReachTheOpenEngineOfTheirVoice) {
  recording().answerInternal("LX_GetTTSInfo(16)", 50);
  recording().answerInternal("LX_GetTTSInfo(14)", 400);
  recording().answerInternal("LX_GetTTSInfo(15)", 110);
  std::int32_t minimum = 0, maximum = 0, standard = 0, value = 0;
  ASSERT_EQ(speech_option_range(0, SPEECH_OPTION_SPEED, &minimum, &maximum, &standard), SPEECH_OK);
  EXPECT_THAT((std::array{minimum, maximum, standard}), ElementsAre(50, 400, 110));

  open();
  EXPECT_EQ(speech_option_set(0, SPEECH_OPTION_SPEED, 401), SPEECH_ERROR_RANGE);
  EXPECT_EQ(speech_option_set(0, SPEECH_OPTION_SPEED, 49), SPEECH_ERROR_RANGE);
  EXPECT_THAT(recording().takeCalls(), IsEmpty());
  EXPECT_EQ(speech_option_set(0, SPEECH_OPTION_SPEED, 400), SPEECH_OK);
  EXPECT_THAT(recording().takeCalls(), Contains("LXAPI_SetAttr(1, 1, 400)"));
  EXPECT_EQ(speech_option_get(0, SPEECH_OPTION_SPEED, &value), SPEECH_OK);
  EXPECT_EQ(value, 400);

  EXPECT_EQ(speech_option_set(1, SPEECH_OPTION_SPEED, 60), SPEECH_OK);
  EXPECT_THAT(recording().takeCalls(), IsEmpty()) << "the other voice's engine is not open";

  EXPECT_EQ(speech_option_reset(0), SPEECH_OK);
  EXPECT_THAT(recording().takeCalls(), Contains("LXAPI_SetAttr(1, 1, 110)"));
}

TEST_F(COptions, SurviveClosingTheEngine) {
  recording().answerInternal("LX_GetTTSInfo(17)", 500);
  recording().answerInternal("LX_GetTTSInfo(19)", 0);
  SpeechEngine engine = open();
  ASSERT_EQ(speech_option_set(0, SPEECH_OPTION_VOLUME, 250), SPEECH_OK);
  ASSERT_EQ(speech_engine_close(engine), SPEECH_OK);
  recording().takeCalls();
  ASSERT_EQ(speech_engine_open(0, nullptr, nullptr, &engine), SPEECH_OK);
  EXPECT_THAT(recording().takeCalls(), Contains("LXAPI_SetAttr(1, 2, 250)"));
}

TEST_F(COptions, ThoseOfTheProgramTakeAnyNumber) {
  std::int32_t value = 0;
  for (const int option : {SPEECH_OPTION_FORMAT, SPEECH_OPTION_ALD}) {
    const int standard = option == SPEECH_OPTION_FORMAT ? 1 : 0;
    for (const int chosen : {INT32_MIN, INT32_MAX}) {
      EXPECT_EQ(speech_option_set(0, option, chosen), SPEECH_OK);
      EXPECT_EQ(speech_option_get(0, option, &value), SPEECH_OK);
      EXPECT_EQ(value, chosen);
    }
    EXPECT_EQ(speech_option_range(0, option, nullptr, nullptr, &value), SPEECH_OK);
    EXPECT_EQ(value, standard);
    EXPECT_EQ(speech_option_reset(0), SPEECH_OK);
    EXPECT_EQ(speech_option_get(0, option, &value), SPEECH_OK);
    EXPECT_EQ(value, standard);
  }
}

TEST_F(COptions, TellWhetherTheEngineHasThem) {
  recording().answerInternal("LX_GetTTSInfo(14)", 400);
  const auto isChanged = [] {
    std::int32_t changed = -1;
    EXPECT_EQ(speech_option_changed(0, &changed), SPEECH_OK);
    return changed;
  };
  EXPECT_EQ(speech_option_reset(0), SPEECH_OK);
  ASSERT_EQ(speech_option_set(0, SPEECH_OPTION_SPEED, 300), SPEECH_OK);
  EXPECT_EQ(isChanged(), 1);
  open();
  EXPECT_EQ(isChanged(), 0);
  ASSERT_EQ(speech_option_set(0, SPEECH_OPTION_SPEED, 301), SPEECH_OK);
  EXPECT_EQ(isChanged(), 0);
}

TEST(CResults, EveryCodeHasATextOfItsOwn) {
  std::set<std::string> texts;
  for (std::int32_t error = SPEECH_OK; error >= SPEECH_ERROR_INTERNAL; --error)
    texts.insert(speech_error_text(error));
  EXPECT_EQ(texts.size(), 22u);
  EXPECT_THAT(texts, Not(Contains(std::string(speech_error_text(12345)))));
  EXPECT_STREQ(speech_error_text(INT32_MIN), speech_error_text(1));
}

TEST(CResults, TheVersionIsTheSameInBothForms) {
  const std::uint32_t version = speech_version();
  EXPECT_EQ(std::to_string(version >> 16) + "." + std::to_string(version >> 8 & 0xFF) + "." +
                std::to_string(version & 0xFF),
            speech_version_text());
}

TEST(CXml, EscapesWhatMarksUp) {
  char escaped[40] = "";
  std::uint32_t length = 0;
  EXPECT_EQ(speech_escape_xml("a<b & \xC3\xAB", escaped, sizeof escaped, &length), SPEECH_OK);
  EXPECT_STREQ(escaped, "a&lt;b &amp; \xC3\xAB");
  EXPECT_EQ(speech_escape_xml_w(L"\"", nullptr, 0, &length), SPEECH_ERROR_BUFFER);
  EXPECT_EQ(length, 6u);
}

}  // namespace
}  // namespace speech::test
