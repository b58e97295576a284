#include <gtest/gtest.h>

#include "tests/lxapi/session.h"

namespace speech::test {
namespace {

TEST(Device, SpeakingWithoutADeviceIsRefusedAndRaisesNothing) {
  const Session session;
  for (int attempt = 0; attempt < 3; ++attempt) {
    EXPECT_EQ(session.speak("Hello."), LX_ERROR_DEVICE);
    EXPECT_EQ(LXAPI_SynthesizeAsync(session.tts, "Hello.", -1, LX_SPEAK_ASYNC, -1), LX_ERROR_DEVICE);
  }
  EXPECT_EQ(LXAPI_Pause(session.tts), LX_OK);
  EXPECT_EQ(LXAPI_Resume(session.tts), LX_OK);
  EXPECT_EQ(LXAPI_Stop(session.tts), LX_OK);
  EXPECT_TRUE(EventRecord::instance().events().empty());
  EXPECT_GT(milliseconds(session.samples("Hello.")), 300) << "synthesis to memory needs none";
}

TEST(Device, OutputsThatAreNoSoundDeviceAreRefused) {
  const Session session;
  const auto select = [&](LXAUDIOOUT output) { return LXAPI_SetOutputAudio(session.tts, output); };
  EXPECT_EQ(select({1, 16, kSampleRateHz, -1}), LX_OK);
  EXPECT_EQ(select({1, 16, 48000, 0}), LX_OK) << "the system converts";
  EXPECT_EQ(select({0, 16, kSampleRateHz, -1}), LX_ERROR_BAD_ARGUMENT);
  EXPECT_EQ(select({1, 8, kSampleRateHz, -1}), LX_ERROR_BAD_ARGUMENT);
  EXPECT_EQ(select({1, 16, 0, -1}), LX_ERROR_BAD_ARGUMENT);
  EXPECT_EQ(select({1, 16, kSampleRateHz, -2}), LX_ERROR_BAD_ARGUMENT);
}

}  // namespace
}  // namespace speech::test
