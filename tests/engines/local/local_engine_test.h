#pragma once

#include <speech/text_to_speech.h>

#include <gmock/gmock.h>
#include <windows.h>

#include "tests/support/host_window.h"
#include "tests/support/recording_engine.h"

namespace speech::test {

/// A local engine over the recording engine library: synthesis handle 1, engine handle 101. The host's thread
/// is a Russian one, so its code page lacks the accents that the system's has.
class LocalEngineTest : public ::testing::Test {
 protected:
  LocalEngineTest() {
    EXPECT_EQ(GetACP(), 1252u);
    SetThreadLocale(MAKELCID(MAKELANGID(LANG_RUSSIAN, SUBLANG_DEFAULT), SORT_DEFAULT));
  }
  ~LocalEngineTest() override { SetThreadLocale(LOCALE_USER_DEFAULT); }
  void SetUp() override { start({.key1 = L"Alex", .key2 = L"M", .type = L"espeak"}); }
  void TearDown() override { ITextToSpeech::releaseInstance(); }

  /// Starts over with another installed engine.
  void start(const InstalledEngine& installed) {
    ITextToSpeech::releaseInstance();
    recording().reset();
    recording().install(installed);
    engine_ = ITextToSpeech::getInstance(window_.handle(), HostWindow::kNoticeMessage,
                                         ITextToSpeech::getLXAPIProductList()->GetHead());
    ASSERT_NE(engine_, nullptr);
    recording().takeCalls();
  }

  HostWindow window_;
  ITextToSpeech* engine_ = nullptr;
};

}  // namespace speech::test
