// The host's own decisions: which voice is meant, what a notice says, what counts as text and as a WAV file.

#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <speech/notices.h>

#include "apps/narravo/commands.h"
#include "apps/narravo/speech_notices.h"
#include "apps/narravo/text_source.h"
#include "apps/narravo/voices.h"
#include "apps/narravo/wav_format.h"
#include "tests/support/wav_files.h"

namespace narravo {
namespace {

using Kind = SpeechProgress::Kind;
using speech::test::Bytes;
using speech::test::PcmFile;

template <class Action>
HostError errorOf(Action action) {
  try {
    action();
  } catch (const HostError& error) {
    return error;
  }
  ADD_FAILURE() << "no error was thrown";
  return HostError(kExitOk, "");
}

Voice voice(const std::string& key, const std::string& variety, const std::string& language) {
  const char* const gender = variety == "F" ? "FEMALE" : "MALE";
  return {key + "-" + variety, key, "Maker " + key + " (v.1)", language, gender, 22050, "espeak", nullptr};
}

const std::vector<Voice> kVoices{
    voice("Afrikaans", "M", "af"),           voice("English (Scotland)", "M", "en-GB-scotland"),
    voice("English", "M", "en-GB"),          voice("English", "F", "en-GB"),
    voice("English (US)", "M", "en-US"),     voice("English (US)", "F", "en-US"),
    voice("French (Belgium)", "M", "fr-BE"), voice("French (France)", "M", "fr-FR"),
};

TEST(ChoosingAVoice, PrefersTheClosestFit) {
  struct Choice {
    const char *wanted, *gender, *userLanguage, *expected;
  };
  for (const auto& [wanted, gender, userLanguage, expected] : {
           Choice{"english-f", "", "de-DE", "English-F"},  // both keys, whatever the case
           Choice{"English", "", "en-US", "English-M"},    // a key beats a part of one
           Choice{"Maker Afrikaans (v.1)", "", "en-US", "Afrikaans-M"},
           Choice{"EN-us", "", "de-DE", "English (US)-M"},  // a language code
           Choice{"en", "", "en-US", "English (US)-M"},     // the user's own country first
           Choice{"en", "female", "de-DE", "English-F"},
           Choice{"fr", "", "de-DE", "French (France)-M"},       // then the language's home
           Choice{"scot", "", "de-DE", "English (Scotland)-M"},  // part of a key
           Choice{"", "", "fr-CA", "French (France)-M"},         // nothing asked for: the user's language
           Choice{"", "", "ja-JP", "English (Scotland)-M"},      // or English
           Choice{"", "Female", "en-US", "English (US)-F"},
       }) {
    EXPECT_EQ(chooseVoice(kVoices, {wanted, gender}, userLanguage).name, expected) << wanted;
  }
}

TEST(ChoosingAVoice, NamesSimilarVoicesWhenNoneMatches) {
  const HostError error = errorOf([] { chooseVoice(kVoices, {"Afrikans", ""}, "en-US"); });
  EXPECT_EQ(error.code(), kExitNoVoice);
  EXPECT_THAT(error.what(), testing::HasSubstr("did you mean Afrikaans?"));
  EXPECT_EQ(errorOf([] { chooseVoice(kVoices, {"af", "female"}, "en-US"); }).code(), kExitNoVoice);
  EXPECT_EQ(errorOf([] { chooseVoice({}, {}, "en-US"); }).code(), kExitNoVoice);
}

TEST(Language, MatchesWholeSubtagsOnly) {
  EXPECT_TRUE(isLanguage("en-GB-scotland", "en-gb"));
  EXPECT_TRUE(isLanguage("EN", "en"));
  EXPECT_FALSE(isLanguage("eng", "en"));
  EXPECT_FALSE(isLanguage("en", "en-GB"));
}

TEST(Progress, ShowsEachWordOnceInItsContextAndThenTheEnd) {
  const std::wstring text = L"Hello, world.";
  SpeechProgress progress(text, false);
  EXPECT_EQ(progress.read(0, 5).word, L"Hello");
  const SpeechProgress::Step second = progress.read(7, 5);
  EXPECT_EQ(second.word, L"world");
  EXPECT_EQ(second.wordInContext, L", world");
  const SpeechProgress::Step earlier = progress.read(0, 5);
  EXPECT_EQ(earlier.word, L"Hello");
  EXPECT_EQ(earlier.wordInContext, L"");
  EXPECT_EQ(progress.rest(), L".");
  EXPECT_EQ(progress.read(speech::kNoticeFinishedOrFailed, speech::kDetailFinishedOrFailed).kind,
            Kind::kEnded);
}

TEST(Progress, KeepsWordsInsideTheText) {
  const std::wstring text = L"Hello";
  SpeechProgress progress(text, false);
  EXPECT_EQ(progress.read(3, 100).word, L"lo");
  for (const auto& [offset, length] : {std::pair{5u, 1}, {0xFFFFFFF0u, 1}, {0u, 0}, {0u, -1}}) {
    EXPECT_EQ(progress.read(offset, length).kind, Kind::kOther);
  }
}

// The end notice's two numbers are also those of a word of one letter at offset 3858.
TEST(Progress, TellsAOneLetterWordFromTheEnd) {
  const std::size_t offset = speech::kNoticeFinishedOrFailed;
  const std::wstring text = std::wstring(offset - 1, L'x') + L" a tail";
  SpeechProgress progress(text, false);
  EXPECT_EQ(progress.read(offset - 3, 2).word, L"xx") << "right before it";
  EXPECT_EQ(progress.read(offset, 1).word, L"a");
  EXPECT_EQ(progress.read(offset + 2, 4).word, L"tail");
  EXPECT_EQ(progress.read(offset, 1).kind, Kind::kEnded);

  const std::wstring withoutSuchAWord(2 * offset, L'x');
  SpeechProgress other(withoutSuchAWord, false);
  EXPECT_EQ(other.read(offset, 1).kind, Kind::kEnded);
}

TEST(Progress, KnowsTheServicesNotices) {
  SpeechProgress progress(L"Hello", true);
  EXPECT_EQ(progress.read(speech::kNoticePlaybackStarted, 0).kind, Kind::kStarted);
  EXPECT_EQ(progress.read(speech::kNoticePlaybackEnded, 1).kind, Kind::kEnded);
  EXPECT_EQ(progress.read(speech::kNoticeFinishedOrFailed, 1).kind, Kind::kFailed);
}

TEST(Text, IsUtf8WithOrWithoutAMark) {
  EXPECT_EQ(decodeText("\xEF\xBB\xBFGr\xC3\xBC\xC3\x9F\x65", "x"), L"Gr\u00FC\u00DFe");
  EXPECT_EQ(decodeText("\xF0\x9F\x98\x80", "x"), L"\U0001F600");
}

TEST(Text, RefusesWhatItWouldHaveToGuessOrLose) {
  for (const std::string& bytes :
       {std::string("Gr\xFC\xDF\x65"), std::string("\xC3"), std::string("\xED\xA0\x80"),
        std::string("a\0b", 3), std::string("\xFF\xFEH\0i\0", 6), std::string(), std::string("\xEF\xBB\xBF"),
        std::string(" \t\r\n")}) {
    EXPECT_EQ(errorOf([&] { decodeText(bytes, "x"); }).code(), kExitFile) << testing::PrintToString(bytes);
  }
}

WavFormat formatOf(const Bytes& bytes) {
  std::istringstream file(std::string(bytes.begin(), bytes.end()));
  return readWavFormat(file, "in.wav");
}

TEST(WavFile, IsTakenByItsHeader) {
  const Bytes twoSeconds(2 * 22050 * 4, 0);
  const WavFormat format = formatOf(PcmFile{.channels = 2, .sampleRate = 22050, .data = twoSeconds}.bytes());
  EXPECT_EQ(format.channels, 2);
  EXPECT_EQ(format.bitsPerSample, 16);
  EXPECT_EQ(format.sampleRateHz, 22050);
  EXPECT_EQ(format.seconds(), 2);
}

TEST(WavFile, IsRefusedWithTheReason) {
  const Bytes data(20, 0);
  const Bytes whole = PcmFile{.data = data}.bytes();
  Bytes longFormat = whole, otherChunk = whole;
  longFormat[16] = 18;
  otherChunk[36] = 'L';
  for (const auto& [file, reason] : std::vector<std::pair<Bytes, std::string>>{
           {{}, "not a WAV file"},
           {Bytes(whole.begin(), whole.begin() + 43), "not a WAV file"},
           {PcmFile{.data = data, .dataSize = 0x7FFFFFFF}.bytes(), "shorter than its header says"},
           {PcmFile{.tag = 6, .bits = 8, .data = data}.bytes(), "not PCM"},
           {PcmFile{.channels = 3, .data = data}.bytes(), "not PCM"},
           {PcmFile{.sampleRate = 0, .data = data}.bytes(), "no sample rate"},
           {longFormat, "more in its header"},
           {otherChunk, "more in its header"}}) {
    const HostError error = errorOf([&] { formatOf(file); });
    EXPECT_EQ(error.code(), kExitFile);
    EXPECT_THAT(error.what(), testing::AllOf(testing::StartsWith("in.wav "), testing::HasSubstr(reason)));
  }
}

}  // namespace
}  // namespace narravo
