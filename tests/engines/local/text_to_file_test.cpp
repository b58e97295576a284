#include <cstdlib>

#include "engines/exporting/log.h"
#include "tests/engines/local/export_fixture.h"

namespace speech::test {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

/// Result and the engine's file code of a format, at the engine's rate and at any other; SoX takes every
/// rate.
struct Format {
  int number;
  int resultAtEngineRate, codeAtEngineRate;
  int resultAtOtherRate, codeAtOtherRate;
  bool throughSox;
};

constexpr int kNoCall = -1;
// clang-format off
constexpr Format kFormats[] = {
    {0, 1, 0, 1, 5, false},         {1, 1, 5, 1, 5, false},         {2, 1, 5, 1, 5, true},
    {3, 1, 5, 1, 5, true},          {4, 1, 5, 1, 5, true},          {5, 1, 5, 1, 5, false},
    {6, 1, 6, -1, kNoCall, false},  {7, 1, 7, -1, kNoCall, false},  {8, 1, 8, -1, kNoCall, false},
    {9, 1, 3, -1, kNoCall, false},  {10, 1, 0, 1, 5, false},        {11, 1, 3, -1, kNoCall, false},
    {12, 1, 3, -1, kNoCall, false}, {13, 1, 3, -1, kNoCall, false}, {14, 1, kNoCall, 1, kNoCall, false},
    {-1, 1, kNoCall, 1, kNoCall, false}};
// clang-format on

TEST_F(Export, EveryFormatAtEveryRateTakesItsRoute) {
  installFakeSox();
  for (const Format& format : kFormats) {
    for (const int rateIndex : {0, 1, 2, 3, 4}) {
      SCOPED_TRACE("format " + std::to_string(format.number) + ", rate index " + std::to_string(rateIndex));
      const bool sameRate = rateIndex == kProductRateIndex;
      const int code = sameRate ? format.codeAtEngineRate : format.codeAtOtherRate;
      const bool writesTemporary = format.throughSox || !sameRate;
      const auto path = destination();

      EXPECT_EQ(engine_->textToFile(L"text", path.c_str(), format.number, false, rateIndex, false),
                sameRate ? format.resultAtEngineRate : format.resultAtOtherRate);

      const auto calls = recording().takeCalls();
      if (code == kNoCall) {
        EXPECT_THAT(calls, IsEmpty());
        EXPECT_THAT(namesIn(results_.path()), IsEmpty());
      } else {
        const std::string target = writesTemporary ? "ULXE" : narrow(path) + "\"";
        ASSERT_THAT(calls, SizeIs(2));
        EXPECT_THAT(calls[0], AllOf(StartsWith("LXAPI_SetOutputFile(1, "), HasSubstr(target),
                                    EndsWith(", " + std::to_string(code) + ")")));
        EXPECT_EQ(calls[1], "LXAPI_TextToFile(1, \"text\", -1, 2)");
        EXPECT_THAT(namesIn(results_.path()), ElementsAre(L"out"));
      }
      EXPECT_THAT(namesIn(temporary_.path()), IsEmpty());
      std::filesystem::remove(path);
    }
  }
}

TEST_F(Export, SsmlGoesWithItsLengthInBytes) {
  engine_->textToFile(L"<speak>\u00E4</speak>", destination().c_str(), 1, true, kProductRateIndex, false);
  EXPECT_THAT(
      recording().takeCalls(),
      ElementsAre(HasSubstr("SetOutputFile"), "LXAPI_TextToFile(1, \"<speak>\u00E4</speak>\", 17, 130)"));
}

TEST_F(Export, RawFormatsHoldExactlyTheSamplesOfTheConvertedWav) {
  ASSERT_EQ(engine_->textToFile(L"text", destination(L"wav").c_str(), 5, false, 1, false), 1);
  const std::string wav = readFile(results_ / "wav");
  EXPECT_EQ(wav.size(), 44 + 2 * 16000u);
  for (const int raw : {0, 10}) {
    ASSERT_EQ(engine_->textToFile(L"text", destination(L"raw").c_str(), raw, false, 1, false), 1);
    EXPECT_EQ(readFile(results_ / "raw"), wav.substr(44)) << "format " << raw;
  }
}

TEST_F(Export, SoxIsCalledWithTheTargetRateGsmsOwnOrAsMp3) {
  installFakeSox();
  const auto path = destination(L"a b.\u00E9");
  for (const int format : {2, 3, 4}) engine_->textToFile(L"text", path.c_str(), format, false, 3, false);
  const auto calls = soxCalls();
  ASSERT_THAT(calls, SizeIs(3));
  EXPECT_THAT(calls[0],
              AllOf(HasSubstr("ULXE"), HasSubstr(".wav\" -r 44100 \""), EndsWith("a b.\xC3\xA9\"")));
  EXPECT_THAT(calls[1], AllOf(HasSubstr(".wav\" -r 8000 \""), EndsWith("a b.\xC3\xA9\"")));
  EXPECT_THAT(calls[2], AllOf(HasSubstr(".wav\" -C 320 \""), EndsWith("a b.\xC3\xA9\"")));
}

TEST_F(Export, Mp3HasTheHighestBitRateThatTheEnginesRateAllows) {
  std::filesystem::copy_file(executableFolder() / "sox.exe", tools_ / "sox.exe");
  struct Case {
    int rateIndex, sampleRateHz;
    const char* frameHeader;  ///< Version, layer and bit rate; 320 kbit/s of version 1, 160 of version 2.
  };
  for (const auto& [rateIndex, sampleRateHz, frameHeader] :
       {Case{1, 16000, "\xFF\xF3\xE8"}, Case{2, 22050, "\xFF\xF3\xE0"}, Case{3, 44100, "\xFF\xFB\xE0"},
        Case{4, 48000, "\xFF\xFB\xE4"}}) {
    const std::string tone = wavFile(sampleRateHz, std::string(20'000, 's'));
    recording().audio.assign(tone.begin(), tone.end());
    const auto path = results_ / (std::to_string(sampleRateHz) + ".mp3");
    EXPECT_EQ(engine_->textToFile(L"text", path.c_str(), 4, false, rateIndex, false), 1);
    std::string header = readFile(path).substr(0, 3);
    header.back() = static_cast<char>(header.back() & 0xFC);  // the last bits say how a frame is padded
    EXPECT_EQ(header, frameHeader) << sampleRateHz;
  }
}

TEST_F(Export, AFailingOrCrashingSoxIsNotReportedAndLeavesNothingBehind) {
  installFakeSox();
  for (const wchar_t* mode : {L"fail", L"crash"}) {
    const ScopedEnvironment behaviour(L"FAKE_SOX_MODE", mode);
    EXPECT_EQ(engine_->textToFile(L"text", destination().c_str(), 2, false, 1, false), 1);
    EXPECT_THAT(namesIn(temporary_.path()), IsEmpty());
    EXPECT_THAT(namesIn(results_.path()), IsEmpty());
  }
}

TEST_F(Export, AFailedSynthesisShowsInTheMissingLogLineOnly) {
  installFakeSox();
  recording().answer("LXAPI_TextToFile", -9);
  EXPECT_EQ(engine_->textToFile(L"text", destination(L"failed").c_str(), 1, false, kProductRateIndex, true),
            1);
  EXPECT_EQ(engine_->textToFile(L"text", destination(L"sox").c_str(), 2, false, kProductRateIndex, true), 1);
  EXPECT_THAT(soxCalls(), SizeIs(1));
  EXPECT_EQ(engine_->textToFile(L"text", destination(L"converted").c_str(), 5, false, 1, true), 1);
  EXPECT_THAT(readFile(results_ / "converted"), SizeIs(44 + 2 * 16000));
  EXPECT_EQ(newLogText(), "");

  recording().answer("LXAPI_TextToFile", 0);
  EXPECT_EQ(engine_->textToFile(L"text", destination(L"100%s").c_str(), 1, false, kProductRateIndex, true),
            1);
  EXPECT_THAT(newLogText(),
              EndsWith("|Speaker : Alex,  Export File Path : " + narrow(destination(L"100%s")) + "  \n"));
}

TEST_F(Export, TheTemporaryFileIsOneOf99AndGoneBeforeTheLineIsLogged) {
  static std::vector<std::wstring> seenByTheLog;
  static std::filesystem::path temporary;
  temporary = temporary_.path();
  setFreeBytesQuestion([](const char*) {
    seenByTheLog = namesIn(temporary);
    return UINT64_MAX;
  });
  for (unsigned seed = 0; seed < 300; ++seed) {
    std::srand(seed);
    const int number = std::rand() % 99;
    if (seed > 2 && number != 0 && number != 98) continue;
    std::srand(seed);
    seenByTheLog = {L"no log"};
    EXPECT_EQ(engine_->textToFile(L"text", destination().c_str(), 5, false, 1, true), 1);
    EXPECT_EQ(recording().takeCalls().front(), "LXAPI_SetOutputFile(1, \"" + narrow(temporary) + "\\ULXE" +
                                                   std::to_string(number) + ".wav\", 5)");
    EXPECT_THAT(seenByTheLog, IsEmpty());
  }
  setFreeBytesQuestion(nullptr);
}

TEST_F(Export, ANameThatTheCodePageLacksIsTheSameInEveryStep) {
  for (const int format : {0, 10}) {  // the nearest relative of \u0100 is A
    EXPECT_EQ(engine_->textToFile(L"text", destination(L"\u0100").c_str(), format, false, 1, false), 1);
    EXPECT_THAT(namesIn(results_.path()), ElementsAre(L"A"));
    EXPECT_THAT(readFile(results_ / "A"), SizeIs(2 * 16000));
  }
  const std::string older(200, 'o');
  writeFile(results_ / L"\u4e2d", older);
  EXPECT_EQ(engine_->textToFile(L"text", destination(L"\u4e2d").c_str(), 0, false, 1, false), 0);
  EXPECT_EQ(readFile(results_ / L"\u4e2d"), older);
}

TEST_F(Export, AMissingSynthesisOrAnUnwritableDestinationFailsTheConversion) {
  const auto missing = destination(L"no folder\\out");
  EXPECT_EQ(engine_->textToFile(L"text", missing.c_str(), 0, false, 1, false), 0);
  EXPECT_EQ(engine_->textToFile(L"text", missing.c_str(), 1, false, 1, false), 1) << "not looked at";
  EXPECT_THAT(namesIn(temporary_.path()), IsEmpty());
  EXPECT_EQ(engine_->textToFile(nullptr, nullptr, 0, false, 1, false), 0);
  EXPECT_EQ(engine_->textToFile(nullptr, nullptr, 1, false, kProductRateIndex, false), 1);
  recording().audio.clear();
  EXPECT_EQ(engine_->textToFile(L"text", destination().c_str(), 1, false, 1, true), 0);
  EXPECT_EQ(newLogText(), "");
}

}  // namespace
}  // namespace speech::test
