#include <speech/text_to_speech.h>

#include <gmock/gmock.h>

#include "tests/support/host_window.h"
#include "tests/support/recording_engine.h"

namespace speech::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Notice kEnd = {3858, 1};

class FacadeTest : public ::testing::Test {
 protected:
  FacadeTest() {
    ITextToSpeech::getISOCodeList()->RemoveAll();
    ITextToSpeech::releaseInstance();
    recording().reset();
    recording().install({.key1 = L"A", .language = L"en-US"});
    recording().install({.key1 = L"B", .language = L"ko-KR"});
    recording().install({.key1 = L"C", .language = L"EN-us"});
  }
  ~FacadeTest() override { ITextToSpeech::releaseInstance(); }

  static LXAPIProduct* product(std::intptr_t index) {
    LXAPIProductList* const list = ITextToSpeech::getLXAPIProductList();
    return list->GetAt(list->FindIndex(index));
  }

  /// An engine that has made no calls yet but those of its start.
  ITextToSpeech* start(std::intptr_t index) {
    LXAPIProduct* const chosen = product(index);
    recording().takeCalls();
    return ITextToSpeech::getInstance(window_.handle(), HostWindow::kNoticeMessage, chosen);
  }

  HostWindow window_;
};

TEST_F(FacadeTest, OnlyTheCloudTypeInAnyCaseGetsTheCloudEngine) {
  const std::pair<const wchar_t*, bool> types[] = {{L"skyvo", true},   {L"SKYVO", true}, {L"SkyVo", true},
                                                   {L"skyvo ", false}, {L"sky", false},  {L"", false}};
  for (const auto& [type, isCloud] : types) {
    ITextToSpeech::releaseInstance();
    product(0)->setEngineType(type);
    ASSERT_NE(start(0), nullptr);
    // The cloud engine needs nothing of the engine library.
    EXPECT_EQ(recording().takeCalls().empty(), isCloud) << testing::PrintToString(type);
    EXPECT_EQ(ITextToSpeech::getCurrentProduct(), product(0));
  }
}

TEST_F(FacadeTest, AnotherInstanceReplacesTheOneBeforeAlsoOneThatFailedToInitialise) {
  start(0);
  recording().takeCalls();
  recording().answer("LXAPI_LoadEngine(102)", -5);
  HostWindow other;
  EXPECT_EQ(ITextToSpeech::getInstance(other.handle(), HostWindow::kNoticeMessage + 1, product(1)), nullptr);
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_UnloadUserDict(101, 0)", "LXAPI_UnloadEngine(101)",
                          "LXAPI_UnloadEngine(101)", "LXAPI_SetEvent(2, procedure, 19)",
                          "LXAPI_SetEngineHandle(2, 102)", "LXAPI_LoadEngine(102)"));
  EXPECT_EQ(ITextToSpeech::getCurrentProduct(), product(0));

  // The failed engine's events still reach the window and message of the last success.
  recording().raise(2, 2);
  EXPECT_THAT(window_.takeNotices(), ElementsAre(kEnd));
  EXPECT_THAT(other.takeNotices(), IsEmpty());

  ASSERT_NE(start(2), nullptr);
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_UnloadUserDict(102, 0)", "LXAPI_UnloadEngine(102)",
                          "LXAPI_UnloadEngine(102)", "LXAPI_SetEvent(3, procedure, 19)",
                          "LXAPI_SetEngineHandle(3, 103)", "LXAPI_LoadEngine(103)"));
  EXPECT_EQ(ITextToSpeech::getCurrentProduct(), product(2));
}

TEST_F(FacadeTest, AFailedBindingIsNotFollowedByALoadAndANullProductChangesNothing) {
  recording().answer("LXAPI_SetEngineHandle", -2);
  EXPECT_EQ(start(0), nullptr);
  EXPECT_EQ(ITextToSpeech::getInstance(nullptr, 0, nullptr), nullptr);
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_SetEvent(1, procedure, 19)", "LXAPI_SetEngineHandle(1, 101)"));
  EXPECT_TRUE(ITextToSpeech::reloadEngine()) << "there still is an engine";
}

TEST_F(FacadeTest, ReleasingStopsThenEndsTheEngineLibraryAndItsListAndLeavesTheRest) {
  LXAPIProductList* const list = ITextToSpeech::getLXAPIProductList();
  LXAPIProduct* const former = product(0);
  start(0);
  EXPECT_EQ(ITextToSpeech::getISOListCount(), 2);
  recording().takeCalls();
  EXPECT_EQ(ITextToSpeech::getLXAPIProductList(), list) << "built once";
  ITextToSpeech::releaseInstance();
  ITextToSpeech::releaseInstance();
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_Stop(1)", "LXAPI_UnloadEngine(101)", "LXAPI_Exit()"));
  EXPECT_EQ(ITextToSpeech::getCurrentProduct(), former);
  EXPECT_EQ(ITextToSpeech::getISOCodeList()->GetSize(), 4) << "two of before, two of now";

  // An engine that fails to initialise changes neither window nor message.
  recording().answer("LXAPI_LoadEngine", -5);
  EXPECT_EQ(ITextToSpeech::getInstance(nullptr, 0, product(1)), nullptr);
  recording().raise(product(1)->getSynthHandle(), 2);
  EXPECT_THAT(window_.takeNotices(), ElementsAre(kEnd));
}

TEST_F(FacadeTest, ReloadingNeedsAnInstanceAndStopsAtAFailedUnload) {
  EXPECT_FALSE(ITextToSpeech::reloadEngine());
  start(0);
  recording().takeCalls();
  EXPECT_TRUE(ITextToSpeech::reloadEngine());
  recording().answer("LXAPI_LoadEngine", -1);
  EXPECT_FALSE(ITextToSpeech::reloadEngine());
  recording().answer("LXAPI_UnloadEngine", -5);
  EXPECT_FALSE(ITextToSpeech::reloadEngine());
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_UnloadEngine(101)", "LXAPI_LoadEngine(101)", "LXAPI_UnloadEngine(101)",
                          "LXAPI_LoadEngine(101)", "LXAPI_UnloadEngine(101)"));
}

TEST_F(FacadeTest, TheEventWindowCanBeChangedAndWithoutOneNoticesAreDropped) {
  ITextToSpeech* const engine = start(0);
  ITextToSpeech::setEventHandle(nullptr);
  recording().answer("LXAPI_Speak", -6);
  EXPECT_FALSE(engine->speak(L"", false));
  MSG message;
  constexpr UINT kNumber = HostWindow::kNoticeMessage;
  EXPECT_FALSE(PeekMessageW(&message, nullptr, kNumber, kNumber, PM_REMOVE)) << "in this thread's own queue";
  HostWindow other;
  ITextToSpeech::setEventHandle(other.handle());
  recording().raise(1, 2);
  EXPECT_THAT(other.takeNotices(), ElementsAre(kEnd));
  EXPECT_THAT(window_.takeNotices(), IsEmpty());
}

TEST_F(FacadeTest, LanguageCodesAreDistinctAndAppendedOnceMoreByEveryCallForTheList) {
  const auto isOutOfRange = [](int index) {
    try {
      ITextToSpeech::getISOListAt(index);
      return false;
    } catch (CInvalidArgException* exception) {
      exception->Delete();
      return true;
    }
  };
  const auto expectCodes = [&](std::initializer_list<const wchar_t*> codes) {
    const int count = static_cast<int>(codes.size());
    EXPECT_EQ(ITextToSpeech::getISOListCount(), count);
    for (int i = 0; const wchar_t* const code : codes) EXPECT_STREQ(ITextToSpeech::getISOListAt(i++), code);
    EXPECT_TRUE(isOutOfRange(-1));
    EXPECT_TRUE(isOutOfRange(count));
  };
  EXPECT_TRUE(isOutOfRange(0)) << "asking by place builds nothing";
  expectCodes({L"en-US", L"ko-KR"});
  EXPECT_EQ(ITextToSpeech::getISOCodeList()->GetSize(), 4);
  expectCodes({L"en-US", L"ko-KR", L"en-US", L"ko-KR"});
  recording().reset();
  ITextToSpeech::releaseInstance();
  ITextToSpeech::getISOCodeList()->RemoveAll();
  expectCodes({});
}

}  // namespace
}  // namespace speech::test
