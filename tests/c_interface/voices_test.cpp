// Voices, languages, options, results.

#include <set>

#include "tests/c_interface/c_interface_fixture.h"

namespace speech::test {
namespace {

using namespace ::testing;

using CVoices = CInterfaceTest;
using COptions = CInterfaceTest;

TEST_F(CVoices, AreDescribedByTextsAndNumbers) {
  std::int32_t count = 0, rate = 0, tts = 0, engine = 0, isCloud = 0, languages = 0;
  expectEach(SPEECH_OK, {speech_voice_count(&count), speech_voice_number(1, SPEECH_VOICE_SAMPLE_RATE, &rate),
                         speech_voice_number(1, SPEECH_VOICE_SYNTHESIS_HANDLE, &tts),
                         speech_voice_number(1, SPEECH_VOICE_ENGINE_HANDLE, &engine),
                         speech_voice_number(2, SPEECH_VOICE_IS_CLOUD, &isCloud),
                         speech_language_count(&languages), speech_language_count(&languages)});
  EXPECT_THAT((std::array{count, rate, tts, engine, isCloud, languages}),
              ElementsAre(3, 16000, 2, 102, 1, 2));

  char name[20] = "", gender[20] = "", language[20] = "", escaped[40] = "";
  wchar_t wide[20] = L"";
  std::uint32_t length = 0, wideLength = 0;
  expectEach(SPEECH_OK, {speech_voice_text(0, SPEECH_VOICE_KEY1, name, sizeof name, &length),
                         speech_voice_text_w(0, SPEECH_VOICE_KEY1, wide, 20, &wideLength),
                         speech_voice_text(1, SPEECH_VOICE_GENDER_CODE, gender, sizeof gender, nullptr),
                         speech_language(1, language, sizeof language, nullptr),
                         speech_escape_xml("a<b & \xC3\xAB", escaped, sizeof escaped, nullptr)});
  EXPECT_THAT((std::array{name, gender, language, escaped}),
              ElementsAre(StrEq("Zo\xC3\xAB"), StrEq("F"), StrEq("de-DE"), StrEq("a&lt;b &amp; \xC3\xAB")));
  EXPECT_STREQ(wide, L"Zo\u00eb");
  EXPECT_THAT((std::array{length, wideLength}), ElementsAre(4, 3));
}

TEST_F(CVoices, WhatFailsHandsOutNothingButTheLengthThatIsNeeded) {
  char text[4] = "xyz";
  std::int32_t value = 7;
  std::uint32_t length = 0, escapedLength = 0;
  expectEach(SPEECH_ERROR_BUFFER, {speech_voice_text(0, SPEECH_VOICE_KEY1, text, sizeof text, &length),
                                   speech_escape_xml_w(L"\"", nullptr, 0, &escapedLength)});
  expectEach(SPEECH_ERROR_VOICE, {speech_voice_text(3, SPEECH_VOICE_KEY1, text, sizeof text, nullptr),
                                  speech_voice_text(-1, SPEECH_VOICE_KEY1, text, sizeof text, nullptr),
                                  speech_voice_number(9, SPEECH_VOICE_INFO9, &value),
                                  speech_language(2, text, sizeof text, nullptr)});
  expectEach(SPEECH_ERROR_ARGUMENT,
             {speech_voice_text(0, 17, text, sizeof text, nullptr), speech_voice_number(0, 5, &value),
              speech_option_get(0, 7, &value), speech_option_get(0, -1, &value),
              speech_voice_text(0, SPEECH_VOICE_KEY1, nullptr, 5, nullptr)});
  EXPECT_STREQ(text, "xyz");
  EXPECT_EQ(value, 7);
  EXPECT_THAT((std::array{length, escapedLength}), ElementsAre(4, 6));
}

TEST_F(COptions, AreBoundedAndReachTheEngineOfTheirVoiceOnceItIsOpen) {
  recording().answerInternal("LX_GetTTSInfo(16)", 50);
  recording().answerInternal("LX_GetTTSInfo(14)", 400);
  recording().answerInternal("LX_GetTTSInfo(15)", 110);
  EXPECT_EQ(speech_release(), SPEECH_OK) << "the voices are asked anew";
  std::int32_t minimum = 0, maximum = 0, standard = 0, changed = 0, unchanged = -1;
  expectEach(SPEECH_OK,
             {speech_option_range(0, SPEECH_OPTION_SPEED, &minimum, &maximum, &standard),
              speech_option_set(0, SPEECH_OPTION_SPEED, 250), speech_option_changed(0, &changed),
              speech_engine_open(0, nullptr, nullptr, &engine_), speech_option_changed(0, &unchanged)});
  EXPECT_THAT((std::array{minimum, maximum, standard, changed, unchanged}), ElementsAre(50, 400, 110, 1, 0));
  EXPECT_THAT(recording().takeCalls(), Contains("LXAPI_SetAttr(4, 1, 250)"));

  expectEach(SPEECH_ERROR_RANGE,
             {speech_option_set(0, SPEECH_OPTION_SPEED, 401), speech_option_set(0, SPEECH_OPTION_SPEED, 49)});
  EXPECT_EQ(speech_option_set(1, SPEECH_OPTION_SPEED, 60), SPEECH_OK);
  EXPECT_THAT(recording().takeCalls(), IsEmpty()) << "the other voice's engine is not open";
  expectEach(SPEECH_OK,
             {speech_option_set(0, SPEECH_OPTION_SPEED, 400), speech_option_changed(0, &unchanged)});
  EXPECT_THAT(recording().takeCalls(), Contains("LXAPI_SetAttr(4, 1, 400)"));
  EXPECT_EQ(unchanged, 0);
  EXPECT_EQ(speech_option_reset(0), SPEECH_OK);
  EXPECT_THAT(recording().takeCalls(), Contains("LXAPI_SetAttr(4, 1, 110)"));
}

TEST_F(COptions, ThoseOfTheProgramTakeAnyNumber) {
  for (const int option : {SPEECH_OPTION_FORMAT, SPEECH_OPTION_ALD}) {
    const int standard = option == SPEECH_OPTION_FORMAT ? 1 : 0;
    std::int32_t lowest = 0, highest = 0, range = -1, reset = -1;
    expectEach(SPEECH_OK, {speech_option_set(0, option, INT32_MIN), speech_option_get(0, option, &lowest),
                           speech_option_set(0, option, INT32_MAX), speech_option_get(0, option, &highest),
                           speech_option_range(0, option, nullptr, nullptr, &range), speech_option_reset(0),
                           speech_option_get(0, option, &reset)});
    EXPECT_THAT((std::array{lowest, highest, range, reset}),
                ElementsAre(INT32_MIN, INT32_MAX, standard, standard));
  }
}

TEST(CResults, CodesAndVersionHaveTexts) {
  std::set<std::string> texts = {speech_error_text(12345)};
  for (std::int32_t error = SPEECH_OK; error >= SPEECH_ERROR_INTERNAL; --error)
    texts.insert(speech_error_text(error));
  EXPECT_EQ(texts.size(), 23u);
  std::ostringstream version;
  version << (speech_version() >> 16) << '.' << (speech_version() >> 8 & 0xFF) << '.'
          << (speech_version() & 0xFF);
  EXPECT_EQ(version.str(), speech_version_text());
}

}  // namespace
}  // namespace speech::test
