#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

#include "engines/cloud/skyvo.h"
#include "engines/host_notices.h"
#include "speech/engine_info.h"
#include "tests/support/file_content.h"
#include "tests/support/host_window.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"
#include "win32/text.h"

namespace speech::test {

/// A cloud voice, a host window that hears its engine, and a temporary folder of its own.
class CloudEngineTest : public ::testing::Test {
 protected:
  static constexpr Notice kStarted = {kNoticePlaybackStarted, kDetailPlaybackStarted};
  static constexpr Notice kEnded = {kNoticePlaybackEnded, kDetailPlaybackEnded};
  static constexpr Notice kFailure = {kNoticeFinishedOrFailed, kDetailFinishedOrFailed};

  CloudEngineTest() {
    g_hostWindow = host_.handle();
    g_noticeMessage = HostWindow::kNoticeMessage;
    g_endNoticeHeld = false;
  }

  std::filesystem::path output() const { return temporary_ / L"output.wav"; }

  /// The files of that kind which the engine has left in the temporary folder.
  std::vector<std::filesystem::path> temporaryFiles(const wchar_t* extension) const {
    std::vector<std::filesystem::path> found;
    for (const auto& entry : std::filesystem::directory_iterator(temporary_.path())) {
      constexpr std::size_t kGuidLength = 36;
      const auto name = entry.path().filename().wstring();
      if (name.find(extension) == kGuidLength) found.push_back(entry.path());
    }
    return found;
  }

  /// Waits longer than anything that might still be under way.
  std::vector<Notice> noticesUntilQuiet() {
    Sleep(300);
    return host_.takeNotices();
  }

  static LXAPIProduct::EngineInfo voiceInfo() {
    LXAPIProduct::EngineInfo info;
    info.engineKey1 = L"Vox";
    info.languageCode = L"en-US";
    info.engineType = L"skyvo";
    info.sampleRateHz = 22050;
    return info;
  }

  TemporaryFolder temporary_{L"cloud"};
  ScopedEnvironment tmp_{L"TMP", temporary_.path().wstring()};
  HostWindow host_;
  LXAPIProduct voice_{voiceInfo()};
};

}  // namespace speech::test
