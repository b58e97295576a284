#include <speech/text_to_speech.h>

#include <gmock/gmock.h>

#include "tests/support/host_window.h"
#include "tests/support/recording_engine.h"

namespace speech::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FacadeTest : public ::testing::Test {
 protected:
  void SetUp() override {
    recording().reset();
    ITextToSpeech::getISOCodeList()->RemoveAll();
    ITextToSpeech::releaseInstance();
    recording().reset();
  }
  void TearDown() override { ITextToSpeech::releaseInstance(); }

  static LXAPIProduct* product(std::intptr_t index) {
    LXAPIProductList* const list = ITextToSpeech::getLXAPIProductList();
    return list->GetAt(list->FindIndex(index));
  }

  ITextToSpeech* start(LXAPIProduct* chosen) {
    return ITextToSpeech::getInstance(window_.handle(), HostWindow::kNoticeMessage, chosen);
  }

  static std::vector<std::wstring> languages() {
    std::vector<std::wstring> codes;
    for (int i = 0; i < ITextToSpeech::getISOListCount(); ++i)
      codes.emplace_back(ITextToSpeech::getISOListAt(i));
    return codes;
  }

  HostWindow window_;
};

TEST_F(FacadeTest, OnlyTheCloudTypeInAnyCaseGetsTheCloudEngine) {
  const std::pair<const wchar_t*, bool> types[] = {{L"skyvo", true},   {L"SKYVO", true}, {L"SkyVo", true},
                                                   {L"skyvo ", false}, {L"sky", false},  {L"", false}};
  for (const auto& [type, isCloud] : types) {
    ITextToSpeech::releaseInstance();
    recording().reset();
    recording().install({.key1 = L"A", .type = type});
    LXAPIProduct* const chosen = product(0);
    recording().takeCalls();
    ASSERT_NE(start(chosen), nullptr);
    // The cloud engine needs nothing of the engine library.
    EXPECT_EQ(recording().takeCalls().empty(), isCloud) << testing::PrintToString(type);
    EXPECT_EQ(ITextToSpeech::getCurrentProduct(), chosen);
  }
}

TEST_F(FacadeTest, AnotherInstanceReplacesTheFirstInOrder) {
  recording().install({.key1 = L"A"});
  recording().install({.key1 = L"B"});
  start(product(0));
  recording().takeCalls();
  ASSERT_NE(start(product(1)), nullptr);
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_UnloadUserDict(101, 0)", "LXAPI_UnloadEngine(101)",
                          "LXAPI_UnloadEngine(101)", "LXAPI_SetEvent(2, procedure, 19)",
                          "LXAPI_SetEngineHandle(2, 102)", "LXAPI_LoadEngine(102)"));
  EXPECT_EQ(ITextToSpeech::getCurrentProduct(), product(1));
}

TEST_F(FacadeTest, AnEngineThatFailsToInitialiseStaysForTheNextCallToDisposeOf) {
  recording().install({.key1 = L"A"});
  recording().install({.key1 = L"B"});
  start(product(0));
  recording().answer("LXAPI_LoadEngine(102)", -5);
  HostWindow other;
  EXPECT_EQ(ITextToSpeech::getInstance(other.handle(), HostWindow::kNoticeMessage + 1, product(1)), nullptr);
  EXPECT_EQ(ITextToSpeech::getCurrentProduct(), product(0));

  // The failed engine's events still reach the window and message of the last success.
  recording().raise(2, 2);
  EXPECT_THAT(window_.takeNotices(), ElementsAre(Notice{3858, 1}));
  EXPECT_THAT(other.takeNotices(), IsEmpty());

  recording().takeCalls();
  ASSERT_NE(start(product(0)), nullptr);
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_UnloadUserDict(102, 0)", "LXAPI_UnloadEngine(102)",
                          "LXAPI_UnloadEngine(102)", "LXAPI_SetEvent(1, procedure, 19)",
                          "LXAPI_SetEngineHandle(1, 101)", "LXAPI_LoadEngine(101)"));
}

TEST_F(FacadeTest, AFailedBindingIsNotFollowedByALoadAndANullProductChangesNothing) {
  recording().install({.key1 = L"A"});
  LXAPIProduct* const chosen = product(0);
  recording().answer("LXAPI_SetEngineHandle", -2);
  recording().takeCalls();
  EXPECT_EQ(start(chosen), nullptr);
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_SetEvent(1, procedure, 19)", "LXAPI_SetEngineHandle(1, 101)"));
  EXPECT_EQ(start(nullptr), nullptr);
  EXPECT_THAT(recording().takeCalls(), IsEmpty());
  EXPECT_TRUE(ITextToSpeech::reloadEngine()) << "there still is an engine";
}

TEST_F(FacadeTest, ReleasingStopsThenEndsTheEngineLibraryAndItsListAndLeavesTheRest) {
  recording().install({.key1 = L"A", .language = L"en-US"});
  LXAPIProductList* const list = ITextToSpeech::getLXAPIProductList();
  EXPECT_EQ(list->GetCount(), 1);
  LXAPIProduct* const former = product(0);
  start(former);
  EXPECT_EQ(ITextToSpeech::getISOListCount(), 1);
  recording().takeCalls();
  EXPECT_EQ(ITextToSpeech::getLXAPIProductList(), list) << "built once";
  ITextToSpeech::releaseInstance();
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_Stop(1)", "LXAPI_UnloadEngine(101)", "LXAPI_Exit()"));
  ITextToSpeech::releaseInstance();
  EXPECT_THAT(recording().takeCalls(), IsEmpty());
  EXPECT_EQ(ITextToSpeech::getCurrentProduct(), former);
  EXPECT_EQ(ITextToSpeech::getISOCodeList()->GetSize(), 2) << "one of before, one of now";

  // An engine that fails to initialise changes neither window nor message.
  recording().install({.key1 = L"B"});
  ITextToSpeech::releaseInstance();
  recording().answer("LXAPI_LoadEngine", -5);
  EXPECT_EQ(ITextToSpeech::getInstance(nullptr, 0, product(1)), nullptr);
  recording().raise(recording().lastHandle, 2);
  EXPECT_THAT(window_.takeNotices(), ElementsAre(Notice{3858, 1}));
}

TEST_F(FacadeTest, ReloadingNeedsAnInstanceAndStopsAtAFailedUnload) {
  EXPECT_FALSE(ITextToSpeech::reloadEngine());
  recording().install({.key1 = L"A"});
  start(product(0));
  recording().takeCalls();
  EXPECT_TRUE(ITextToSpeech::reloadEngine());
  EXPECT_THAT(recording().takeCalls(), ElementsAre("LXAPI_UnloadEngine(101)", "LXAPI_LoadEngine(101)"));
  recording().answer("LXAPI_LoadEngine", -1);
  EXPECT_FALSE(ITextToSpeech::reloadEngine());
  recording().answer("LXAPI_UnloadEngine", -5);
  recording().takeCalls();
  EXPECT_FALSE(ITextToSpeech::reloadEngine());
  EXPECT_THAT(recording().takeCalls(), ElementsAre("LXAPI_UnloadEngine(101)"));
}

TEST_F(FacadeTest, TheEventWindowCanBeChangedAndWithoutOneNoticesAreDropped) {
  recording().install({.key1 = L"A"});
  ITextToSpeech* const engine = start(product(0));
  ITextToSpeech::setEventHandle(nullptr);
  recording().answer("LXAPI_Speak", -6);
  EXPECT_FALSE(engine->speak(L"", false));
  MSG message;
  EXPECT_FALSE(
      PeekMessageW(&message, nullptr, HostWindow::kNoticeMessage, HostWindow::kNoticeMessage, PM_REMOVE))
      << "posted to this thread's own queue";
  HostWindow other;
  ITextToSpeech::setEventHandle(other.handle());
  recording().raise(1, 2);
  EXPECT_THAT(other.takeNotices(), ElementsAre(Notice{3858, 1}));
  EXPECT_THAT(window_.takeNotices(), IsEmpty());
}

TEST_F(FacadeTest, LanguageCodesAreDistinctAndAppendedOnceMoreByEveryCallForTheList) {
  EXPECT_EQ(ITextToSpeech::getISOListCount(), 0) << "without engines";
  ITextToSpeech::releaseInstance();
  recording().install({.key1 = L"A", .language = L"en-US"});
  recording().install({.key1 = L"B", .language = L"ko-KR"});
  recording().install({.key1 = L"C", .language = L"EN-us"});
  EXPECT_THAT(languages(), ElementsAre(L"en-US", L"ko-KR"));
  EXPECT_EQ(ITextToSpeech::getISOCodeList()->GetSize(), 4);
  EXPECT_THAT(languages(), ElementsAre(L"en-US", L"ko-KR", L"en-US", L"ko-KR"));
}

TEST_F(FacadeTest, ALanguageOutOfRangeThrowsTheFrameworksException) {
  recording().install({.key1 = L"A", .language = L"en-US"});
  for (const int index : {0, -1}) {  // asking by place builds nothing
    try {
      ITextToSpeech::getISOListAt(index);
      FAIL() << "no exception for " << index;
    } catch (CInvalidArgException* exception) {
      exception->Delete();
    }
  }
  EXPECT_EQ(ITextToSpeech::getISOListCount(), 1);
  EXPECT_STREQ(ITextToSpeech::getISOListAt(0), L"en-US");
}

}  // namespace
}  // namespace speech::test
