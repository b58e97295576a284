#include <gtest/gtest.h>

#include "base/utf8.h"
#include "lxapi/bundled/engines_ini.h"
#include "lxapi/bundled/voice_settings.h"

namespace speech::lxapi {
namespace {

TEST(Utf8, AcceptsEveryLengthUpToTheLastCodePoint) {
  EXPECT_TRUE(isValidUtf8(""));
  EXPECT_TRUE(isValidUtf8("a\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"));
}

TEST(Utf8, RefusesWhatNoEncoderWrites) {
  for (const char* malformed : {"\x80", "\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80",
                                "\xED\xBF\xBF", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80",
                                "\xFF", "a\xC3", "\xE2\x82", "\xF0\x9F\x98", "\xC3(", "\xE2\x28\xA1"}) {
    EXPECT_FALSE(isValidUtf8(malformed)) << testing::PrintToString(malformed);
  }
}

TEST(Utf8, EncodesWhatItDecodes) {
  for (const char32_t value : {0x00U, 0x7FU, 0x80U, 0x7FFU, 0x800U, 0xD7FFU, 0xFFFFU, 0x10000U, 0x10FFFFU}) {
    std::string text;
    appendUtf8(text, value);
    ASSERT_TRUE(isValidUtf8(text));
    const CodePoint decoded = decodeAt(text, 0);
    EXPECT_EQ(decoded.value, value);
    EXPECT_EQ(decoded.byteCount, text.size());
  }
}

TEST(Utf8, PrefixesNeverCutACharacter) {
  EXPECT_EQ(utf8Prefix("ab\xE2\x82\xAC", 4), "ab");
  EXPECT_EQ(utf8Prefix("ab\xE2\x82\xAC", 5), "ab\xE2\x82\xAC");
}

TEST(LanguageCode, FollowsTheUsualLetterCase) {
  EXPECT_EQ(formatLanguageCode("en-us"), "en-US");
  EXPECT_EQ(formatLanguageCode("FR_fr"), "fr-FR");
  EXPECT_EQ(formatLanguageCode("cmn-latn-pinyin"), "cmn-Latn-pinyin");
  EXPECT_EQ(formatLanguageCode("en-gb-x-rp"), "en-GB-x-rp");
  EXPECT_EQ(formatLanguageCode("es-419"), "es-419");
  EXPECT_EQ(formatLanguageCode("de"), "de");
}

TEST(VoiceSettings, BringsValuesIntoTheRangesThatItTells) {
  struct Case {
    LxAttribute attribute;
    int32_t VoiceSettings::*setting;
    LxInformation minimum, normal, maximum;
  };
  for (const Case& attribute : {
           Case{LX_ATTR_PITCH, &VoiceSettings::pitch, LX_INFO_PITCH_MINIMUM, LX_INFO_PITCH_DEFAULT,
                LX_INFO_PITCH_MAXIMUM},
           Case{LX_ATTR_SPEED, &VoiceSettings::speed, LX_INFO_SPEED_MINIMUM, LX_INFO_SPEED_DEFAULT,
                LX_INFO_SPEED_MAXIMUM},
           Case{LX_ATTR_VOLUME, &VoiceSettings::volume, LX_INFO_VOLUME_MINIMUM, LX_INFO_VOLUME_DEFAULT,
                LX_INFO_VOLUME_MAXIMUM},
           Case{LX_ATTR_SENTENCE_PAUSE, &VoiceSettings::sentencePauseMs, LX_INFO_PAUSE_MINIMUM,
                LX_INFO_PAUSE_DEFAULT, LX_INFO_PAUSE_MAXIMUM},
       }) {
    VoiceSettings settings;
    EXPECT_EQ(settings.*attribute.setting, voiceInformation(attribute.normal));
    EXPECT_EQ(setSynthesisAttribute(settings, attribute.attribute, INT32_MIN), LX_OK);
    EXPECT_EQ(settings.*attribute.setting, voiceInformation(attribute.minimum));
    EXPECT_EQ(setSynthesisAttribute(settings, attribute.attribute, INT32_MAX), LX_OK);
    EXPECT_EQ(settings.*attribute.setting, voiceInformation(attribute.maximum));
  }
  EXPECT_EQ(voiceInformation(23), std::nullopt);
}

}  // namespace
}  // namespace speech::lxapi
