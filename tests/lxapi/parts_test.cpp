// The small parts: UTF-8, CSV, engines.ini, the settings of a voice, companding, pauses.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/utf8.h"
#include "lxapi/bundled/companding.h"
#include "lxapi/bundled/csv_parser.h"
#include "lxapi/bundled/engines_ini.h"
#include "lxapi/bundled/pause_shaper.h"
#include "lxapi/bundled/voice_settings.h"

namespace speech::lxapi {
namespace {

using namespace testing;

TEST(Utf8, WhatNoEncoderWritesIsMalformed) {
  for (const char32_t value : {0x00U, 0x7FU, 0x80U, 0x7FFU, 0x800U, 0xD7FFU, 0xFFFFU, 0x10000U, 0x10FFFFU}) {
    std::string text;
    appendUtf8(text, value);
    EXPECT_TRUE(isValidUtf8(text));
    EXPECT_EQ(decodeAt(text, 0).value, value);
    EXPECT_EQ(decodeAt(text, 0).byteCount, text.size());
  }
  for (const char* malformed :
       {"\x80", "\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xF0\x8F\xBF\xBF",
        "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "a\xC3", "\xE2\x82", "\xC3(", "\xE2\x28\xA1"}) {
    EXPECT_FALSE(isValidUtf8(malformed)) << PrintToString(malformed);
  }
  EXPECT_EQ(utf8Prefix("ab\xE2\x82\xAC", 4), "ab") << "a prefix cuts no character";
}

using Fields = std::vector<std::string>;
using Status = CsvParser::Status;

std::vector<Fields> records(std::string_view text) {
  CsvParser parser(text);
  std::vector<Fields> result;
  for (Fields fields; parser.next(fields) == Status::kRecord;) result.push_back(fields);
  return result;
}

TEST(CsvParser, ReadsRecordsWithQuotesAndEveryLineEnd) {
  EXPECT_THAT(records("\xEF\xBB\xBF\x61\r,b\nc,,d\r\n\n,"),
              ElementsAre(Fields{"a\r", "b"}, Fields{"c", "", "d"}, Fields{""}, Fields{"", ""}));
  EXPECT_THAT(records("\"a,\"\"b\"\"\r\nc\",d\r\n\"\",x\"y"),
              ElementsAre(Fields{"a,\"b\"\r\nc", "d"}, Fields{"", "x\"y"}));
  EXPECT_EQ(makeCsvRecord({"", "a,b", "\"c\"", "d\n", "\xEF\xBB\xBF"}),
            ",\"a,b\",\"\"\"c\"\"\",\"d\n\",\"\xEF\xBB\xBF\"\r\n");
}

TEST(CsvParser, SaysWhatIsMalformedAndOnWhichLine) {
  CsvParser parser("\"a\nb\"c,d\ne,f\n\"g\n");
  Fields fields;
  using Case = std::pair<Status, size_t>;
  for (const auto& [status, line] : {Case(Status::kStrayQuote, 1), Case(Status::kRecord, 3),
                                     Case(Status::kOpenQuote, 4), Case(Status::kEnd, 5)}) {
    EXPECT_EQ(parser.next(fields), status) << line;
    EXPECT_EQ(parser.line(), line);
  }
}

TEST(EnginesIni, ReadsEverySettingInAnyOrderAndCase) {
  const EnginesIni ini = parseEnginesIni(
      "\xEF\xBB\xBF; comment\r\n# another\r\n\r\n  [Fran\xC3\xA7ois]  \r\n RATE = 768000\r\nType=skyvo\r\n"
      "language = fr_fr\r\ngender=M\r\nvariety = Cloud\r\ntext3=three\r\ntext4 = four = 4\r\ntext5=\r\n"
      "text7=seven\n[A]\nlanguage=en\ntype=x\nnovelty=1");
  ASSERT_THAT(ini.engines, SizeIs(2));
  const InstalledEngine &first = ini.engines[0], &second = ini.engines[1];
  EXPECT_THAT((std::vector{first.key1, first.key2, first.language, first.engineType, first.gender,
                           first.text3, first.text4, first.text5, first.text7}),
              ElementsAre(L"Fran\u00E7ois", L"Cloud", L"fr-FR", L"skyvo", L"M", L"three", L"four = 4", L"",
                          L"seven"));
  EXPECT_EQ(first.sampleRateHz, 768000);
  EXPECT_EQ(second.key2, L"Standard");
  EXPECT_EQ(second.sampleRateHz, 22050);
  EXPECT_THAT(ini.complaints, ElementsAre(HasSubstr("line 17:"))) << "an unknown setting harms nothing";
  EXPECT_EQ(formatLanguageCode("cmn-latn-pinyin"), "cmn-Latn-pinyin");
  EXPECT_EQ(formatLanguageCode("EN-gb-x-rp"), "en-GB-x-rp");
}

TEST(EnginesIni, AMalformedEngineIsLeftOutWithAComplaintAndTheOthersStay) {
  const std::string good = "language=en\ntype=x\n", bad = "[Bad]\n" + good;
  for (const std::string& malformed :
       {std::string("[Bad]\nlanguage=en\n"), std::string("[Bad]\ntype=x\n"), bad + "rate=fast\n",
        bad + "rate=999\n", bad + "rate=99999999999\n", bad + "rate=768001\n", bad + "gender=female\n",
        bad + "nonsense\n", bad + "text3=\xFF\n", "[Bad\n" + good, "[]\n" + good}) {
    const EnginesIni ini = parseEnginesIni("[First]\n" + good + malformed + "[Last]\n" + good);
    EXPECT_THAT(ini.engines, SizeIs(2)) << malformed;
    EXPECT_THAT(ini.complaints, SizeIs(1)) << malformed;
  }
  std::string noList;
  for (int line = 0; line < 1000; ++line) noList += "x=y\n";
  EXPECT_THAT(parseEnginesIni(noList).complaints, SizeIs(100));
}

TEST(VoiceSettings, ValuesAreBroughtIntoTheRangesThatHostsAreTold) {
  VoiceSettings settings;
  // The numbers by which hosts ask: the maximum's, then the default's and the minimum's.
  for (const auto& [attribute, setting, maximum] :
       {std::tuple(LX_ATTR_PITCH, &VoiceSettings::pitch, 11),
        std::tuple(LX_ATTR_SPEED, &VoiceSettings::speed, 14),
        std::tuple(LX_ATTR_VOLUME, &VoiceSettings::volume, 17),
        std::tuple(LX_ATTR_SENTENCE_PAUSE, &VoiceSettings::sentencePauseMs, 20)}) {
    EXPECT_EQ(settings.*setting, voiceInformation(maximum + 1));
    EXPECT_EQ(setSynthesisAttribute(settings, attribute, INT32_MIN), LX_OK);
    EXPECT_EQ(settings.*setting, voiceInformation(maximum + 2));
    EXPECT_EQ(setSynthesisAttribute(settings, attribute, INT32_MAX), LX_OK);
    EXPECT_EQ(settings.*setting, voiceInformation(maximum));
  }
  for (const int32_t zeroOnly : {4, 6}) EXPECT_EQ(setSynthesisAttribute(settings, zeroOnly, 0), LX_OK);
  EXPECT_EQ(setSynthesisAttribute(settings, LX_ATTR_COMMA_PAUSE, 0), LX_ERROR_UNKNOWN_ATTRIBUTE);
  EXPECT_EQ(voiceInformation(LX_INFO_COMMA_PAUSE_DEFAULT), 150);
  EXPECT_EQ(voiceInformation(23), std::nullopt);
}

/// The value that the standard's table gives for a code, on the scale of 16-bit samples.
int decodeALaw(int code) {
  const int plain = code ^ 0x55, segment = plain >> 4 & 7, step = plain & 15;
  const int magnitude = segment == 0 ? step * 2 + 1 : (step * 2 + 33) << (segment - 1);
  return (plain & 0x80) != 0 ? magnitude * 8 : -magnitude * 8;
}

int decodeMuLaw(int code) {
  const int plain = ~code & 0xFF;
  const int magnitude = (((plain & 15) * 2 + 33) << (plain >> 4 & 7)) - 33;
  return (plain & 0x80) != 0 ? -magnitude * 4 : magnitude * 4;
}

TEST(Companding, CodesStandForTheNearestValues) {
  for (int sample = -32768; sample <= 32767; ++sample) {
    const auto value = static_cast<int16_t>(sample);
    const int magnitude = std::abs(sample);
    // A step is a sixteenth of its segment, and the lowest segments have the finest steps.
    ASSERT_LE(std::abs(decodeALaw(encodeALaw(value)) - sample), std::max(8, magnitude / 32)) << sample;
    // The highest segment of mu-law ends a little below full scale.
    ASSERT_LE(std::abs(decodeMuLaw(encodeMuLaw(value)) - sample), std::max(4, (magnitude + 132) / 32));
  }
  EXPECT_EQ(encodeMuLaw(-4), 0x7E) << "the first value behind the step of zero";
  EXPECT_EQ(encodeMuLaw(0), 0xFF) << "zero is written in one of its two ways";
}

TEST(PauseShaper, OnlyAClausesQuietEndBecomesThePauseThatWasAskedFor) {
  std::vector<int16_t> output;
  PauseShaper shaper(1000,
                     [&](auto samples) { output.insert(output.end(), samples.begin(), samples.end()); });
  const auto write = [&](const std::vector<int16_t>& samples) { shaper.write(samples); };
  write({500, 3, -2, 0});
  write({1, 1});
  EXPECT_EQ(shaper.position(), 6U) << "what is held back counts";
  shaper.endClause(3);
  write({700, 4, 9});
  write({600});
  shaper.endClause(0);
  write({800, 5});
  shaper.flush();
  EXPECT_EQ(output, (std::vector<int16_t>{500, 0, 0, 0, 700, 4, 9, 600, 800, 5}));
  EXPECT_EQ(shaper.position(), output.size());
}

}  // namespace
}  // namespace speech::lxapi
