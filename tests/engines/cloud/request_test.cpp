// Requests to a service on a real socket, well-behaved or not, on a machine without a sound device.

#include "tests/engines/cloud/cloud_engine_test.h"
#include "tests/support/faulty_service.h"
#include "tests/support/process_figures.h"

namespace speech {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class RequestTest : public test::CloudEngineTest {
 protected:
  bool request(const std::string& reply, const wchar_t* text = L"text", bool isSsml = false) {
    service_.answerNext(reply);
    return engine_.requestSpeech(text, isSsml, output().c_str());
  }

  test::FaultyService service_;
  Skyvo engine_{&voice_, service_.url()};
};

const std::string kLine(1024, 'x');

/// Replies and the text that the host is sent for them; none where it is null.
const std::pair<std::string, const char*> kReplies[] = {
    {"speech", nullptr},
    {"type:audio/wav; rate=22050", nullptr},
    {"type:audio/wave", nullptr},
    {"delay:300", nullptr},
    {"stutter:500:2", nullptr},
    {"chunked", nullptr},
    {"until-close", nullptr},
    {"redirect", nullptr},
    {"redirect-post", nullptr},
    // A sound's first line ends at its first zero byte.
    {"type:audio/mpeg", "RIFF4+"},
    {"type:audio/WAV", "RIFF4+"},
    {"type:audio/x-wav", "RIFF4+"},
    {"type:", "RIFF4+"},
    {"body:text/plain:first line\nsecond line", "first line\n"},
    {"body:text/plain:only one", "only one"},
    {"body:text/plain:" + kLine, kLine.c_str() + 1},
    {"body:text/plain:", ""},
    {"error:500:out of order", "out of order\n"},
    {"redirect:error:404:nothing there", "nothing there\n"},
    {"close", "Empty reply from server"},
    {"cut:1000", "transfer closed with 10068 bytes remaining to read"},
    {"chunked:cut", "transfer closed with outstanding read data remaining"},
    {"cut-header", ""},
    {"garbage", "Received HTTP/0.9 when not allowed"},
};

TEST_F(RequestTest, HoldsTheSoundOrSendsTheErrorsTextAndPostsTheFailureNotice) {
  ASSERT_TRUE(request("speech"));
  const std::string sound = test::readFile(output());
  ASSERT_THAT(sound, StartsWith("RIFF"));
  std::vector<std::string> texts;
  for (const auto& [reply, text] : kReplies) {
    SCOPED_TRACE(reply);
    EXPECT_EQ(request(reply), text == nullptr);
    EXPECT_EQ(service_.lastField("text"), "text");
    if (text != nullptr) {
      texts.emplace_back(text);
      EXPECT_THAT(host_.takeNotices(), ElementsAre(kFailure));
    } else {
      EXPECT_EQ(test::readFile(output()), sound);
      EXPECT_THAT(host_.takeNotices(), IsEmpty());
    }
    EXPECT_EQ(host_.copiedTexts(), texts);
  }
  EXPECT_FALSE(request("body:text/plain:why\nand more"));
  EXPECT_EQ(test::readFile(output()), "why\nand more") << "the body stays in the file";
  EXPECT_TRUE(request("body:audio/wav:"));
  EXPECT_EQ(test::readFile(output()), "");
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

TEST_F(RequestTest, CountsTheHeadersOfEveryReplyOnTheWay) {
  EXPECT_TRUE(request("header:X-Note: once audio/wav stood here"));
  EXPECT_EQ(test::readFile(output()), "no speech\n");
  EXPECT_TRUE(request("redirect-audio:body:text/plain:a text"));
  EXPECT_EQ(test::readFile(output()), "a text");
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
  for (const wchar_t* const empty : {L"", static_cast<const wchar_t*>(nullptr)}) {
    EXPECT_TRUE(request("speech", empty));
    EXPECT_THAT(service_.lastForm(), testing::HasSubstr("&text=&"));
  }
}

TEST_F(RequestTest, DeliversAnyTextUnchanged) {
  const wchar_t halfACharacter[] = {L'a', 0xD83D, L'b', 0};
  for (const std::wstring& text :
       {std::wstring(L"Grüße, 語り手, \xD83D\xDE00, \u202Eright to left"),
        std::wstring(L"line\r\nline\ttab %s %d #f;g?h/i\\j\"k'l"),
        std::wstring(500'000, L'x') + std::wstring(500'000, L'語'), std::wstring(halfACharacter)}) {
    EXPECT_TRUE(request("speech", text.c_str()));
    EXPECT_TRUE(service_.lastField("text") == toUtf8(text)) << toUtf8(text.substr(0, 40));
  }
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

TEST_F(RequestTest, LosesOnlyTheTransferHandleWhateverTheReply) {
  const std::wstring text(20'000, L'ä');
  const auto requestEach = [&] {
    for (const auto& [reply, error] : kReplies) {
      if (!reply.starts_with("delay")) request(reply, text.c_str());
    }
    host_.takeNotices();
  };
  requestEach();
  const auto before = test::ProcessFigures::now();
  requestEach();
  const auto after = test::ProcessFigures::now();
  const std::size_t requests = std::size(kReplies) - 1;
  EXPECT_LT(after.heapBytes, before.heapBytes + requests * 25'000) << "it is 20,700 bytes";
  EXPECT_LT(after.handles, before.handles + requests * 3 / 2) << "it is one";
}

TEST_F(RequestTest, ServesWithoutAWindowAndWithoutASoundDevice) {
  EXPECT_FALSE(engine_.speak(L"text", false));
  EXPECT_FALSE(engine_.isSpeaking());
  EXPECT_TRUE(engine_.pauseResume());
  EXPECT_TRUE(engine_.pauseResume());
  EXPECT_TRUE(engine_.stop());
  WavePlayer player;
  EXPECT_EQ(player.openDevice(), WavePlayer::kNoDevice);
  EXPECT_EQ(player.openDevice(), WavePlayer::kNoDevice);
  g_hostWindow = nullptr;
  EXPECT_FALSE(request("error"));
  EXPECT_THAT(host_.copiedTexts(), IsEmpty());
  EXPECT_THAT(host_.takeNotices(), IsEmpty());
}

}  // namespace
}  // namespace speech
