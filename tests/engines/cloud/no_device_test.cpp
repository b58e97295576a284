// Run without a sound server: there is no device to play on.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "engines/cloud/wave_player.h"
#include "engines/shared/module_state.h"
#include "tests/engines/cloud/test_sounds.h"
#include "tests/engines/cloud/wav_bytes.h"
#include "tests/support/file_content.h"
#include "tests/support/host_window.h"
#include "tests/support/temporary_folder.h"

namespace speech {
namespace {

TEST(WavePlayerWithoutADevice, RefusesToOpenAndToPlay) {
  test::HostWindow host;
  test::TemporaryFolder folder;
  g_hostWindow = host.handle();
  g_noticeMessage = test::HostWindow::kNoticeMessage;
  test::writeFile(folder / L"sound.wav", test::wavFile(test::murmur(8000, 0.1), 8000));

  WavePlayer player;
  EXPECT_EQ(player.openDevice(), WavePlayer::kNoDevice);
  EXPECT_EQ(player.openDevice(), WavePlayer::kNoDevice);
  EXPECT_FALSE(player.playFile((folder / L"sound.wav").c_str()));
  player.pause();
  player.resume();
  player.stop();
  EXPECT_THAT(host.takeNotices(), testing::IsEmpty());
}

}  // namespace
}  // namespace speech
