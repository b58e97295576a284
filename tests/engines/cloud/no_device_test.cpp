// Run without a sound server: there is no device to play on.

#include "engines/cloud/wave_player.h"
#include "tests/engines/cloud/cloud_engine_test.h"
#include "tests/engines/cloud/faulty_service.h"
#include "tests/engines/cloud/test_sounds.h"
#include "tests/engines/cloud/wav_bytes.h"

namespace speech {
namespace {

using WithoutADevice = test::CloudEngineTest;

TEST_F(WithoutADevice, ThePlayerRefusesToOpenAndToPlay) {
  test::writeFile(output(), test::wavFile(test::murmur(8000), 8000));
  WavePlayer player;
  EXPECT_EQ(player.openDevice(), WavePlayer::kNoDevice);
  EXPECT_EQ(player.openDevice(), WavePlayer::kNoDevice);
  EXPECT_FALSE(player.playFile(output().c_str()));
  player.pause();
  player.resume();
  player.stop();
  EXPECT_THAT(host_.takeNotices(), testing::IsEmpty());
}

TEST_F(WithoutADevice, TheEngineRefusesToSpeakWithoutANotice) {
  const test::FaultyService service;
  Skyvo engine(&voice_, service.url());
  EXPECT_FALSE(engine.speak(L"text", false));
  EXPECT_FALSE(engine.isSpeaking());
  EXPECT_TRUE(engine.pauseResume());
  EXPECT_TRUE(engine.stop());
  EXPECT_THAT(host_.copiedTexts(), testing::IsEmpty());
  EXPECT_THAT(host_.takeNotices(), testing::IsEmpty());
}

}  // namespace
}  // namespace speech
