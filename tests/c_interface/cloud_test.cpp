// A cloud voice through the C interface, with a service on a real socket and a sound device.

#include "tests/c_interface/c_interface_fixture.h"
#include "tests/engines/cloud/faulty_service.h"
#include "tests/support/file_content.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/waiting.h"

namespace speech::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class CCloud : public CInterfaceTest {
 protected:
  void SetUp() override {
    CInterfaceTest::SetUp();
    recording().install({.key1 = L"cirrus", .key2 = L"x", .language = L"en-GB", .type = L"skyvo"});
    engine_ = open(2);
  }

  FaultyService service_;
  TemporaryFolder folder_;
  SpeechEngine engine_ = nullptr;
};

TEST_F(CCloud, TellsStartAndEnd) {
  service_.answerNext("speech:200");
  ASSERT_EQ(speech_speak(engine_, "hello", 0), SPEECH_OK);
  EXPECT_EQ(speech_wait(engine_, kWaitLimitMilliseconds), SPEECH_OK);
  EXPECT_THAT(takeEvents(), ElementsAre("started", "finished"));
}

TEST_F(CCloud, AFailedRequestBringsTheServicesWords) {
  service_.answerNext("error:500:out of order");
  EXPECT_EQ(speech_speak(engine_, "hello", 0), SPEECH_ERROR_SERVICE);
  EXPECT_EQ(detail(), "out of order");
  EXPECT_EQ(speech_wait(engine_, kWaitLimitMilliseconds), SPEECH_OK);
  EXPECT_THAT(takeEvents(), ElementsAre("failed -13 [out of order]"));
}

TEST_F(CCloud, TheEndOfAStoppedSpeechIsNotTakenForTheNextOnes) {
  service_.answerNext("speech:5000");
  service_.answerNext("speech:200");
  ASSERT_EQ(speech_speak(engine_, "long", 0), SPEECH_OK);
  ASSERT_EQ(speech_speak(engine_, "short", SPEECH_FLAG_INTERRUPT), SPEECH_OK);
  EXPECT_EQ(speech_wait(engine_, kWaitLimitMilliseconds), SPEECH_OK);
  EXPECT_THAT(takeEvents(), ElementsAre("started", "finished"));
}

TEST_F(CCloud, FilesAndSamplesComeFromTheService) {
  service_.answerNext("speech:200");
  const std::string path = folder_.file("x.wav");
  ASSERT_EQ(speech_export(engine_, "hello", 0, SPEECH_FORMAT_WAV, 0, path.c_str()), SPEECH_OK);
  EXPECT_EQ(readFile(path).size(), 44u + 8820u);

  service_.answerNext("speech:200");
  SpeechAudio audio = {};
  ASSERT_EQ(speech_synthesize(engine_, "hello", 0, 0, &audio), SPEECH_OK);
  EXPECT_EQ(audio.sample_rate, 22050);
  EXPECT_EQ(audio.byte_count, 8820u);
  speech_audio_free(&audio);

  service_.answerNext("error:500:out of order");
  EXPECT_EQ(speech_export(engine_, "hello", 0, SPEECH_FORMAT_WAV, 0, path.c_str()), SPEECH_ERROR_SERVICE);
  EXPECT_EQ(detail(), "out of order");
  EXPECT_EQ(readFile(path).size(), 44u + 8820u) << "the file of before";
  EXPECT_EQ(speech_export(engine_, "hello", 0, SPEECH_FORMAT_MULAW, 0, path.c_str()),
            SPEECH_ERROR_UNSUPPORTED);
  EXPECT_THAT(takeEvents(), IsEmpty());
}

TEST_F(CCloud, HasNoDictionaries) {
  const std::string csv = folder_.file("x.csv");
  writeFile(csv, "a,b\n");
  std::int32_t answer = 0;
  EXPECT_EQ(speech_dictionary_load(engine_, csv.c_str()), SPEECH_ERROR_UNSUPPORTED);
  EXPECT_EQ(speech_dictionary_unload(engine_, 0), SPEECH_ERROR_UNSUPPORTED);
  EXPECT_EQ(speech_dictionary_ask(engine_, SPEECH_DICTIONARY_LIMIT, 0, &answer), SPEECH_ERROR_UNSUPPORTED);
}

}  // namespace
}  // namespace speech::test
