// Speaking through a service on a real socket and a real sound device.

#include "tests/engines/cloud/cloud_engine_test.h"
#include "tests/support/faulty_service.h"
#include "tests/support/recording_engine.h"

namespace speech {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class CloudSpeaking : public test::CloudEngineTest {
 protected:
  bool speak(const std::string& reply, bool isSsml = false) {
    service_.answerNext(reply);
    return engine_->speak(L"<text>", isSsml);
  }

  test::FaultyService service_;
  std::unique_ptr<Skyvo> engine_ = std::make_unique<Skyvo>(&voice_, service_.url());
};

TEST_F(CloudSpeaking, PostsTheStartThenTheEnd) {
  ASSERT_TRUE(speak("speech:5000", true));
  EXPECT_EQ(service_.lastField("ssml"), "<text>");
  engine_->pauseResume();
  EXPECT_TRUE(engine_->stop());
  EXPECT_THAT(host_.takeNotices(), ElementsAre(kStarted, kEnded));
  EXPECT_FALSE(engine_->isSpeaking());
  ASSERT_TRUE(speak("speech:200"));
  EXPECT_EQ(service_.lastField("text"), "<text>");
  EXPECT_FALSE(engine_->isPaused());
  EXPECT_EQ(host_.waitForNotice(), kStarted);
  EXPECT_EQ(host_.waitForNotice(), kEnded);
  EXPECT_TRUE(engine_->isSpeaking()) << "until it is stopped";
}

TEST_F(CloudSpeaking, ARefusedRequestLeavesTheFlagsAndWhatPlays) {
  ASSERT_TRUE(speak("speech:300"));
  Sleep(100);
  engine_->pauseResume();
  EXPECT_FALSE(speak("error:500:out of order"));
  EXPECT_TRUE(engine_->isSpeaking());
  EXPECT_TRUE(engine_->isPaused());
  EXPECT_THAT(host_.copiedTexts(), ElementsAre("out of order\n"));
  EXPECT_THAT(host_.takeNotices(), ElementsAre(kStarted, kFailure));
  engine_->pauseResume();
  EXPECT_EQ(host_.waitForNotice(), kEnded);
}

TEST_F(CloudSpeaking, AReplyThatCannotBePlayedIsRefusedWithoutANotice) {
  for (const char* reply : {"body:audio/wav:something else", "body:audio/wav:"})
    EXPECT_FALSE(speak(reply)) << reply;
  EXPECT_FALSE(engine_->isSpeaking());
  EXPECT_THAT(host_.copiedTexts(), IsEmpty());
  EXPECT_THAT(noticesUntilQuiet(), IsEmpty());
}

TEST_F(CloudSpeaking, LeavesReplyAndHeadersBehindAndEndsSilentlyWhenDeleted) {
  ASSERT_TRUE(speak("speech:5000"));
  EXPECT_THAT(temporaryFiles(L".wav"), SizeIs(1));
  EXPECT_THAT(temporaryFiles(L".txt"), SizeIs(1));
  engine_.reset();
  EXPECT_THAT(noticesUntilQuiet(), ElementsAre(kStarted));
}

TEST_F(CloudSpeaking, HasFixedAnswersWhereItHasNoUse) {
  EXPECT_TRUE(engine_->initialize());
  for (const int answer :
       {engine_->applyOptions(*voice_.getOptions()), int{engine_->loadUserDict("words.csv")},
        engine_->unloadUserDict(0), static_cast<int>(engine_->csvParserInit())})
    EXPECT_EQ(answer, 0);
  for (const int answer : {engine_->getUserDictLimit(0), engine_->checkUserDictTargetNorm(0),
                           engine_->checkUserDictTargetPhon(0), engine_->checkUserDictSubstitution(0),
                           engine_->checkUserDictSourceNorm(0), engine_->checkUserDictSourceLen(0),
                           engine_->csvParserMakeCsv(0, 0, 0, 0), engine_->getPinyinActiveInfo(0, 0),
                           engine_->csvParserParsing(0, 0), engine_->csvParserGetNfields(0)})
    EXPECT_EQ(answer, -1);
  EXPECT_NE(engine_->csvParserGetField(0, 0), nullptr);
}

TEST_F(CloudSpeaking, SynthesizesIntoMemoryWithoutAnEngineAndWithoutAZeroByte) {
  test::recording().reset();
  test::recording().audio.assign(100, 7);
  unsigned char* out = nullptr;
  EXPECT_EQ(engine_->synthesizeToBuffer(L"text", true, &out), 100);
  EXPECT_EQ(_msize(out), 100u);
  std::free(out);
  EXPECT_THAT(test::recording().takeCalls(),
              ElementsAre("LXAPI_SetOutputBuffer(0, 0)", "LXAPI_BufferOpen(0, \"text\", -1, 130, 0)",
                          testing::StartsWith("LXAPI_GetBuffer(0, "),
                          testing::StartsWith("LXAPI_FreeBuffer("), "LXAPI_BufferClose(0)"));
}

}  // namespace
}  // namespace speech
