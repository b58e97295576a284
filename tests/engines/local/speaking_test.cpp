#include "tests/engines/local/local_engine_test.h"

namespace speech::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using LocalSpeaking = LocalEngineTest;

TEST_F(LocalSpeaking, TextGoesToTheEngineAsUtf8WithFlags) {
  EXPECT_TRUE(engine_->speak(L"caf\u00e9", false));
  EXPECT_TRUE(engine_->speak(L"<speak/>", true));
  EXPECT_TRUE(engine_->speak(L"", false));
  EXPECT_TRUE(engine_->speak(nullptr, false));
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_Speak(1, \"caf\xc3\xa9\", -1, 2)", "LXAPI_Speak(1, \"<speak/>\", -1, 130)",
                          "LXAPI_Speak(1, \"\", -1, 2)", "LXAPI_Speak(1, \"\", -1, 2)"));
  EXPECT_THAT(window_.takeNotices(), IsEmpty());
}

TEST_F(LocalSpeaking, ACapitalNInTheSecondKeyChoosesTheAsynchronousCall) {
  start({.key1 = L"A", .key2 = L"fooN"});
  engine_->speak(L"x", false);
  engine_->speak(L"x", true);
  EXPECT_THAT(recording().takeCalls(), ElementsAre("LXAPI_SynthesizeAsync(1, \"x\", -1, 2, -1)",
                                                   "LXAPI_SynthesizeAsync(1, \"x\", -1, 130, -1)"));
  start({.key1 = L"A", .key2 = L"Na"});
  engine_->speak(L"x", false);
  EXPECT_THAT(recording().takeCalls(), ElementsAre("LXAPI_SynthesizeAsync(1, \"x\", -1, 2, -1)"));
  start({.key1 = L"N", .key2 = L"an"});
  engine_->speak(L"x", false);
  EXPECT_THAT(recording().takeCalls(), ElementsAre("LXAPI_Speak(1, \"x\", -1, 2)"));
}

TEST_F(LocalSpeaking, PauseResumeFlipsWhateverTheEngineAnswers) {
  recording().answer("LXAPI_Pause", -1);
  recording().answer("LXAPI_Resume", -1);
  EXPECT_TRUE(engine_->pauseResume());
  EXPECT_TRUE(engine_->isPaused());
  EXPECT_TRUE(engine_->pauseResume());
  EXPECT_FALSE(engine_->isPaused());
  EXPECT_THAT(recording().takeCalls(), ElementsAre("LXAPI_Pause(1)", "LXAPI_Resume(1)"));
  recording().answer("LXAPI_Speak", 1);
  EXPECT_FALSE(engine_->speak(L"x", false)) << "only 0 is a success";
}

TEST_F(LocalSpeaking, SpeakSyncStopsThenSpeaksAndTellsNoWindow) {
  engine_->pauseResume();
  recording().takeCalls();
  recording().answer("LXAPI_Speak", -6);
  EXPECT_TRUE(engine_->speakSync(HostWindow::kNoticeMessage, "caf\xe9"));
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_Stop(1)", "LXAPI_Speak(1, \"caf\xc3\xa9\", -1, 2)"));
  EXPECT_TRUE(engine_->isSpeaking());
  EXPECT_FALSE(engine_->isPaused());
  EXPECT_THAT(window_.takeNotices(), IsEmpty());
  EXPECT_TRUE(engine_->speakSync(0, nullptr));
}

TEST_F(LocalSpeaking, WordsAndTheEndReachTheHostAndTheEndDoesNotEndSpeaking) {
  engine_->speak(L"x", false);
  recording().raise(1, 16, 7, 42);
  recording().raise(1, 32, 0xFFFFFFFF, 0);
  recording().raise(1, 2, 7, 42);
  recording().raise(1, 1, 7, 42, "chapter");              // a bookmark posts nothing
  recording().raise(1, 8, 7, 42, std::string(400, 'x'));  // no terminator within the record
  for (const int unknown : {0, 4}) recording().raise(1, unknown, 7, 42);
  for (const int number : {1, 2, 8, 16, 32}) recording().raiseWithoutRecord(1, number);
  EXPECT_THAT(window_.takeNotices(),
              ElementsAre(Notice{7, 42}, Notice{0xFFFFFFFF, 0}, Notice{3858, 1}, Notice{3858, 1}));
  EXPECT_TRUE(engine_->isSpeaking());
}

TEST_F(LocalSpeaking, OnlyTheLastBuiltEnginesEventsReachTheHost) {
  recording().install({.key1 = L"B"});
  ITextToSpeech::releaseInstance();
  LXAPIProductList* const products = ITextToSpeech::getLXAPIProductList();
  const std::uint32_t first = products->GetHead()->getSynthHandle();
  const std::uint32_t second = products->GetTail()->getSynthHandle();
  ITextToSpeech::getInstance(window_.handle(), HostWindow::kNoticeMessage, products->GetHead());
  ITextToSpeech::getInstance(window_.handle(), HostWindow::kNoticeMessage, products->GetTail());
  recording().raise(first, 2);
  recording().raise(0, 2);
  recording().raise(second, 16, 1, 2);
  EXPECT_THAT(window_.takeNotices(), ElementsAre(Notice{1, 2}));
}

TEST_F(LocalSpeaking, ForwardingIsOffUntilItIsTurnedOnOrTheNextEngineIsBuilt) {
  engine_->setEventNotify(false);
  recording().raise(1, 2);
  recording().raise(1, 16, 1, 2);
  EXPECT_THAT(window_.takeNotices(), IsEmpty());
  recording().answer("LXAPI_Speak", -6);
  EXPECT_FALSE(engine_->speak(L"x", false));
  EXPECT_THAT(window_.takeNotices(), ElementsAre(Notice{3858, 1})) << "a refusal is no event";
  engine_->setEventNotify(true);
  recording().raise(1, 2);
  EXPECT_THAT(window_.takeNotices(), ElementsAre(Notice{3858, 1}));
  engine_->setEventNotify(false);
  start({.key1 = L"A"});
  recording().raise(1, 2);
  EXPECT_THAT(window_.takeNotices(), ElementsAre(Notice{3858, 1}));
}

}  // namespace
}  // namespace speech::test
