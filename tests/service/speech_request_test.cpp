#include "service/speech_request.h"

#include <gtest/gtest.h>

namespace speech::service {
namespace {

std::variant<SpeechRequest, Refusal> read(std::string_view body) {
  static const VoiceList voices =
      VoiceList::fromListing("voice\tEnglish (America)\tgmw/en-US\t2 en-us\nvariety\tf2\n");
  return readSpeechRequest(body, voices, {"secret", 10});
}

TEST(SpeechRequest, AFormIsUnderstoodAsTheClientAndAsAnyFormWritesIt) {
  using Understood = std::tuple<std::string, std::string, size_t, bool, AudioFormat>;
  const std::string euros = "\u20AC\u20AC\u20AC\u20AC\u20AC\u20AC\u20AC\u20AC\u20AC\u20AC";
  for (const auto& [body, expected] :
       {std::pair(std::string("streaming=0&key=secret&voice=English (America)+f2&lang=en-US&"
                              "text=%C3%a9%20%26%3D%2B%25&audioformat=pcm"),
                  Understood("gmw/en-US+f2", "\u00E9 &=+%", 6, false, AudioFormat::kWav)),
        {"key=secret&lang=en-US&ssml=<p/>&audioformat=mp3&unknown=1&unknown=2",
         {"gmw/en-US", "<p/>", 4, true, AudioFormat::kMp3}},
        {"&&=x&bare&voice=EN%2Dus&key=secret&text=a+b%2Bc=d",
         {"gmw/en-US", "a b+c=d", 7, false, AudioFormat::kWav}},
        {"key=secret&voice=en-us&text=", {"gmw/en-US", "", 0, false, AudioFormat::kWav}},
        {"key=secret&voice=en-us&text=" + euros, {"gmw/en-US", euros, 10, false, AudioFormat::kWav}}}) {
    const auto result = read(body);
    const auto* const request = std::get_if<SpeechRequest>(&result);
    ASSERT_NE(request, nullptr) << body;
    EXPECT_EQ(Understood(request->voice.engine, request->text, request->characterCount, request->isSsml,
                         request->format),
              expected)
        << body;
  }
}

TEST(SpeechRequest, ARefusedOneGetsItsStatusAndOneClearLine) {
  struct Case {
    std::string body;
    int status;
    const char* message;
  };
  const std::string good = "key=secret&voice=en-us&";
  std::vector<Case> cases{
      {"", 401, "the field \"key\" does not hold this service's key"},
      {"key=secre&voice=en-us&text=a", 401, "the field \"key\" does not hold this service's key"},
      {"key=secretsecret&text=a", 401, "the field \"key\" does not hold this service's key"},
      {good, 400, "exactly one of the fields \"text\" and \"ssml\" must be given"},
      {good + "text=a&ssml=b", 400, "exactly one of the fields \"text\" and \"ssml\" must be given"},
      {good + "text=a&text=b", 400, "the field \"text\" is given more than once"},
      {good + "streaming=1&text=a", 400, "streaming is not offered; the field \"streaming\" must be 0"},
      {good + "text=a&audioformat=o%gg", 400,
       "audioformat \"o%gg\" is not offered; there are pcm, wav and mp3"},
      {good + "ssml=%4", 400, "the field \"ssml\" has a malformed percent-encoding"},
      {"key=secret&voice=100%&text=a", 400, "the field \"voice\" has a malformed percent-encoding"},
      {"key=secret&lang=%x&text=a", 400, "the field \"lang\" has a malformed percent-encoding"},
      {good + "text=%ED%A0%80", 400, "the field \"text\" is not valid UTF-8"},
      {good + "text=a%00b", 400, "the field \"text\" holds a zero character"},
      {good + "text=12345678901", 413, "the text has 11 characters; at most 10 are spoken"},
      {"key=secret&text=a", 400, "one of the fields \"voice\" and \"lang\" must be given"},
      {"key=secret&voice=a%0Ab\xE5&text=a", 404, "there is no voice \"a?b?\""},
      {"key=secret&lang=xx-YY&text=a", 404, "there is no voice for the language \"xx-YY\""}};
  for (const char* const malformed : {"%", "abc%", "%4g", "%g4", "%%41", "% 41", "%+1"})
    cases.push_back({good + "text=" + malformed, 400, "the field \"text\" has a malformed percent-encoding"});
  for (const auto& [body, status, message] : cases) {
    const auto result = read(body);
    const auto* const refusal = std::get_if<Refusal>(&result);
    ASSERT_NE(refusal, nullptr) << body;
    EXPECT_EQ(std::pair(refusal->status, refusal->message), std::pair(status, std::string(message))) << body;
  }
}

}  // namespace
}  // namespace speech::service
