#include "tests/engines/local/local_engine_test.h"

namespace speech::test {
namespace {

using ::testing::ElementsAre;

using LocalSession = LocalEngineTest;

TEST_F(LocalSession, OptionsGoToTheEngineInOrderWhateverItAnswers) {
  TextToSpeech_Options options;
  options.setSpeed(11);
  options.setVolume(80);
  options.setPitch(-3);
  options.setPause(700);
  options.setCommaPause(99999);
  recording().answer("LXAPI_SetAttr", -3);
  recording().answer("LXAPI_SetEngineAttr", -4);
  EXPECT_EQ(engine_->applyOptions(options), -3);
  EXPECT_THAT(recording().takeCalls(),
              ElementsAre("LXAPI_SetAttr(1, 2, 80)", "LXAPI_SetAttr(1, 1, 11)", "LXAPI_SetAttr(1, 0, -3)",
                          "LXAPI_SetEngineAttr(101, 5, 99999)", "LXAPI_SetAttr(1, 3, 700)"));
}

TEST_F(LocalSession, OutputDevicesCountFromOneAndZeroIsTheDefault) {
  start({.key1 = L"A", .sampleRateHz = 16000});
  recording().answer("LXAPI_SetOutputAudio", -10);
  EXPECT_TRUE(engine_->setOutputAudio(0));
  EXPECT_TRUE(engine_->setOutputAudio(1));
  EXPECT_THAT(recording().takeCalls(), ElementsAre("LXAPI_SetOutputAudio(1, {1, 16, 16000, -1})",
                                                   "LXAPI_SetOutputAudio(1, {1, 16, 16000, 0})"));
}

TEST_F(LocalSession, LoadingAndUnloadingReportOnlyTheEnginesAnswer) {
  EXPECT_TRUE(engine_->unloadEngine());
  EXPECT_TRUE(engine_->loadEngine());
  recording().answer("LXAPI_UnloadEngine", -5);
  recording().answer("LXAPI_LoadEngine", 1);
  EXPECT_FALSE(engine_->unloadEngine());
  EXPECT_FALSE(engine_->loadEngine());
  EXPECT_THAT(recording().takeCalls(), ElementsAre("LXAPI_UnloadEngine(101)", "LXAPI_LoadEngine(101)",
                                                   "LXAPI_UnloadEngine(101)", "LXAPI_LoadEngine(101)"));
}

}  // namespace
}  // namespace speech::test
