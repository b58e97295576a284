// Requests to a service on a real socket, well-behaved or not.

#include "tests/engines/cloud/cloud_engine_test.h"
#include "tests/engines/cloud/faulty_service.h"

namespace speech {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class RequestTest : public test::CloudEngineTest {
 protected:
  bool request(const std::string& reply, const wchar_t* text = L"text", bool useSsml = false) {
    service_.answerNext(reply);
    return engine_.requestSpeech(text, useSsml, output().c_str());
  }

  test::FaultyService service_;
  Skyvo engine_{&voice_, service_.url()};
};

TEST_F(RequestTest, ThatFailsSendsTheErrorsTextAndPostsTheFailureNotice) {
  std::string manyDigits;
  while (manyDigits.size() < 1023) manyDigits += "0123456789";
  manyDigits.resize(1023);
  std::vector<std::string> texts;
  for (const auto& [reply, text] : {
           std::pair{"text", std::string("the service is out of order\n")},
           {"lines", "first line\n"},
           {"lines:only one", "only one"},
           {"long-line:5000", manyDigits},
           {"error:500:the synthesizer failed", "the synthesizer failed\n"},
           {"empty-text", ""},
           // A sound's first line ends at its first zero byte.
           {"content-type:audio/mpeg", "RIFF4+"},
           {"content-type:audio/WAV", "RIFF4+"},
           {"content-type:audio/x-wav", "RIFF4+"},
           {"content-type:", "RIFF4+"},
           {"redirect:error:404:nothing there", "nothing there\n"},
           {"close", "Empty reply from server"},
           {"cut:1000", "transfer closed with 10068 bytes remaining to read"},
           {"chunked:cut", "transfer closed with outstanding read data remaining"},
           {"garbage", "Received HTTP/0.9 when not allowed"},
       }) {
    texts.push_back(text);
    EXPECT_FALSE(request(reply)) << reply;
    EXPECT_EQ(host_.copiedTexts(), texts) << reply;
    EXPECT_THAT(host_.takeNotices(), ElementsAre(kFailure)) << reply;
  }
  EXPECT_FALSE(request("lines:why:and more"));
  EXPECT_EQ(test::readFile(output()), "why\nand more") << "the body stays in the file";
}

TEST_F(RequestTest, ReportsWhatTheSystemSaysOfAConnection) {
  Skyvo unreachable(&voice_, "http://127.0.0.1:1/a/speak");
  EXPECT_FALSE(unreachable.requestSpeech(L"text", false, output().c_str()));
  EXPECT_FALSE(request("reset"));
  EXPECT_FALSE(request("redirect-nowhere"));
  EXPECT_THAT(host_.copiedTexts(), ElementsAre(StartsWith("Failed to connect to 127.0.0.1 port 1 "),
                                               AnyOf(StartsWith("Recv failure: "), "Empty reply from server"),
                                               StartsWith("Failed to connect to 127.0.0.1 port ")));
  EXPECT_THAT(host_.takeNotices(), ElementsAre(kFailure, kFailure, kFailure));
}

TEST_F(RequestTest, WritesAGoodReplyToTheFileWithoutAnyNotice) {
  ASSERT_TRUE(request("speech"));
  const std::string sound = test::readFile(output());
  ASSERT_THAT(sound, StartsWith("RIFF"));
  const int before = service_.requestCount();
  for (const char* const reply :
       {"content-type:audio/wav; rate=22050", "content-type:audio/wave", "delay:300", "stutter:500:2",
        "chunked", "until-close", "redirect", "redirect-post"}) {
    EXPECT_TRUE(request(reply)) << reply;
    EXPECT_EQ(test::readFile(output()), sound) << reply;
    EXPECT_EQ(service_.lastField("text"), "text") << reply;
  }
  EXPECT_EQ(service_.requestCount(), before + 8);
  EXPECT_TRUE(request("empty"));
  EXPECT_EQ(test::readFile(output()), "");
  EXPECT_TRUE(request("not-a-wav"));
  EXPECT_EQ(test::readFile(output()).size(), 1000u);
  EXPECT_THAT(host_.copiedTexts(), IsEmpty());
  EXPECT_THAT(host_.takeNotices(), IsEmpty());
}

TEST_F(RequestTest, CountsTheHeadersOfEveryReplyOnTheWay) {
  EXPECT_TRUE(request("stray-header"));
  EXPECT_EQ(test::readFile(output()), "no speech\n");
  EXPECT_TRUE(request("redirect-audio-header"));
  EXPECT_EQ(test::readFile(output()), "the service is out of order\n");
  EXPECT_THAT(host_.takeNotices(), IsEmpty());
}

TEST_F(RequestTest, SendsTheFormAsItStands) {
  EXPECT_TRUE(request("speech", L"a&b=c+d%e"));
  EXPECT_EQ(service_.lastForm(),
            "streaming=0&key=9e4b1c7a2d6f8e0a3b5c7d9f1e2a4c6b&voice=Vox&lang=en-US&"
            "text=a%26b%3Dc%2Bd%25e&audioformat=pcm");
  voice_.setEngineKey1(L"A & B");
  EXPECT_TRUE(request("speech", L"<speak/>", true));
  EXPECT_EQ(service_.lastForm(),
            "streaming=0&key=9e4b1c7a2d6f8e0a3b5c7d9f1e2a4c6b&voice=A & B&lang=en-US&"
            "ssml=%3Cspeak%2F%3E&audioformat=pcm");
  EXPECT_TRUE(request("speech", L""));
  EXPECT_THAT(service_.lastForm(), testing::HasSubstr("&text=&"));
  EXPECT_TRUE(request("speech", nullptr));
  EXPECT_THAT(service_.lastForm(), testing::HasSubstr("&text=&"));
}

TEST_F(RequestTest, DeliversAnyTextUnchanged) {
  const std::wstring texts[] = {
      L"Grüße, 語り手, \xD83D\xDE00, \u202Eright to left",
      L"a&b=c+d%20e#f;g?h/i\\j\"k'l<m>n",
      L"line\r\nline\ttab %s %d %n",
      std::wstring(500'000, L'x') + std::wstring(500'000, L'語'),
  };
  for (const std::wstring& text : texts) {
    EXPECT_TRUE(request("speech", text.c_str()));
    EXPECT_TRUE(service_.lastField("text") == toUtf8(text)) << toUtf8(text.substr(0, 40));
  }
  const wchar_t halfACharacter[] = {L'a', 0xD83D, L'b', 0};
  EXPECT_TRUE(request("speech", halfACharacter));
  EXPECT_EQ(service_.lastField("text"), toUtf8(L"a\uFFFDb"));
}

TEST_F(RequestTest, LeavesOneHeaderFileOfItsOwnBehind) {
  EXPECT_TRUE(request("speech"));
  EXPECT_FALSE(request("error"));
  const auto files = temporaryFiles(L".txt");
  ASSERT_EQ(files.size(), 2u);
  for (const auto& file : files) EXPECT_THAT(test::readFile(file), StartsWith("HTTP/1.1 "));
}

TEST_F(RequestTest, FailsWithoutATextWhereTheOutputCannotBeOpenedAndLeavesTheHeaderFileOpen) {
  EXPECT_FALSE(engine_.requestSpeech(L"text", false, (temporary_ / L"none" / L"out.wav").c_str()));
  EXPECT_THAT(host_.copiedTexts(), IsEmpty());
  EXPECT_THAT(host_.takeNotices(), ElementsAre(kFailure));
  ASSERT_EQ(temporaryFiles(L".txt").size(), 1u);
  EXPECT_FALSE(DeleteFileW(temporaryFiles(L".txt")[0].c_str()));
  EXPECT_EQ(GetLastError(), DWORD{ERROR_SHARING_VIOLATION});
  EXPECT_EQ(_fcloseall(), 1);
}

TEST_F(RequestTest, PostsNothingToAWindowThatIsNotThere) {
  g_hostWindow = nullptr;
  EXPECT_FALSE(request("error"));
  g_hostWindow = host_.handle();
  EXPECT_THAT(host_.copiedTexts(), IsEmpty());
  EXPECT_THAT(host_.takeNotices(), IsEmpty());
}

}  // namespace
}  // namespace speech
