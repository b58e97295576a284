#include "service/speech_request.h"

#include <gtest/gtest.h>

#include <string>

namespace speech::service {
namespace {

const VoiceList& catalogue() {
  static const VoiceList voices =
      VoiceList::fromListing("voice\tEnglish (America)\tgmw/en-US\t2 en-us\nvariety\tf2\n");
  return voices;
}

std::variant<SpeechRequest, Refusal> read(std::string_view body) {
  return readSpeechRequest(body, catalogue(), {"secret", 10});
}

TEST(SpeechRequest, AFormOfTheClientIsUnderstood) {
  const auto result = read(
      "streaming=0&key=secret&voice=English "
      "(America)+f2&lang=en-US&text=%C3%A9%20%26%3D%2B%25&audioformat=pcm");
  const auto* request = std::get_if<SpeechRequest>(&result);
  ASSERT_NE(request, nullptr);
  EXPECT_EQ(request->voice.engine, "gmw/en-US+f2");
  EXPECT_EQ(request->text, "\u00E9 &=+%");
  EXPECT_EQ(request->characterCount, 6U);
  EXPECT_FALSE(request->isSsml);
  EXPECT_EQ(request->format, AudioFormat::kWav);
}

TEST(SpeechRequest, SsmlAndMp3AndALanguageWithoutAVoice) {
  const auto result = read("key=secret&lang=en-US&ssml=<p/>&audioformat=mp3&unknown=1&unknown=2");
  const auto* request = std::get_if<SpeechRequest>(&result);
  ASSERT_NE(request, nullptr);
  EXPECT_EQ(request->voice.engine, "gmw/en-US");
  EXPECT_EQ(request->text, "<p/>");
  EXPECT_TRUE(request->isSsml);
  EXPECT_EQ(request->format, AudioFormat::kMp3);
}

struct RefusalCase {
  const char* body;
  int status;
  const char* message;
};

TEST(SpeechRequest, ARefusedOneGetsItsStatusAndOneClearLine) {
  for (const auto& [body, status, message] :
       {RefusalCase{"", 401, "the field \"key\" does not hold this service's key"},
        {"key=&voice=en-us&text=a", 401, "the field \"key\" does not hold this service's key"},
        {"key=secre&voice=en-us&text=a", 401, "the field \"key\" does not hold this service's key"},
        {"key=secretsecret&text=a", 401, "the field \"key\" does not hold this service's key"},
        {"key=secret&voice=en-us", 400, "exactly one of the fields \"text\" and \"ssml\" must be given"},
        {"key=secret&voice=en-us&text=a&ssml=b", 400,
         "exactly one of the fields \"text\" and \"ssml\" must be given"},
        {"key=secret&voice=en-us&text=a&text=b", 400, "the field \"text\" is given more than once"},
        {"key=secret&streaming=1&voice=en-us&text=a", 400,
         "streaming is not offered; the field \"streaming\" must be 0"},
        {"key=secret&voice=en-us&text=a&audioformat=o%gg", 400,
         "audioformat \"o%gg\" is not offered; there are pcm, wav and mp3"},
        {"key=secret&voice=en-us&text=%", 400, "the field \"text\" has a malformed percent-encoding"},
        {"key=secret&voice=en-us&ssml=%4", 400, "the field \"ssml\" has a malformed percent-encoding"},
        {"key=secret&voice=100%&text=a", 400, "the field \"voice\" has a malformed percent-encoding"},
        {"key=secret&lang=%x&text=a", 400, "the field \"lang\" has a malformed percent-encoding"},
        {"key=secret&voice=en-us&text=%ED%A0%80", 400, "the field \"text\" is not valid UTF-8"},
        {"key=secret&voice=en-us&text=a%00b", 400, "the field \"text\" holds a zero character"},
        {"key=secret&voice=en-us&text=12345678901", 413, "the text has 11 characters; at most 10 are spoken"},
        {"key=secret&text=a", 400, "one of the fields \"voice\" and \"lang\" must be given"},
        {"key=secret&voice=a%0Ab\xE5&text=a", 404, "there is no voice \"a?b?\""},
        {"key=secret&lang=xx-YY&text=a", 404, "there is no voice for the language \"xx-YY\""}}) {
    const auto result = read(body);
    const auto* refusal = std::get_if<Refusal>(&result);
    ASSERT_NE(refusal, nullptr) << body;
    EXPECT_EQ(refusal->status, status) << body;
    EXPECT_EQ(refusal->message, message) << body;
  }
}

TEST(SpeechRequest, MayHaveNoTextAndTheLimitCountsCharactersNotBytes) {
  for (const std::string text : {"", "\u20AC\u20AC\u20AC\u20AC\u20AC\u20AC\u20AC\u20AC\u20AC\u20AC"}) {
    const auto result = read("key=secret&voice=en-us&text=" + text);
    const auto* request = std::get_if<SpeechRequest>(&result);
    ASSERT_NE(request, nullptr);
    EXPECT_EQ(request->text, text);
  }
}

}  // namespace
}  // namespace speech::service
