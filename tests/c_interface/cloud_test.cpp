// A cloud voice through the C interface, with a service on a real socket and a sound device.

#include <thread>

#include <speech/notices.h>

#include "engines/host_notices.h"
#include "tests/c_interface/c_interface_fixture.h"
#include "tests/support/faulty_service.h"
#include "tests/support/file_content.h"
#include "tests/support/temporary_folder.h"

namespace speech::test {
namespace {

using namespace ::testing;

class CCloud : public CInterfaceTest {
 protected:
  void SetUp() override {
    CInterfaceTest::SetUp();
    open(2);
  }

  FaultyService service_;
};

TEST_F(CCloud, AFailedRequestBringsTheServicesWords) {
  service_.answerNext("error:500:out of order");
  EXPECT_EQ(speech_speak(engine_, "hello", 0), SPEECH_ERROR_SERVICE);
  EXPECT_EQ(detail(), "out of order");
  EXPECT_THAT(eventsToTheEnd(), ElementsAre("failed -13 [out of order]"));
}

TEST_F(CCloud, TheEndOfAStoppedSpeechIsNotTakenForTheNextOnes) {
  service_.answerNext("speech:5000");
  ASSERT_EQ(speech_speak(engine_, "long", 0), SPEECH_OK);
  EXPECT_EQ(speech_wait(engine_, 0), SPEECH_ERROR_TIMEOUT);
  ASSERT_EQ(speech_stop(engine_), SPEECH_OK);
  service_.answerNext("delay:300");
  std::thread late([this, before = service_.requestCount()] {
    waitUntil("the next request", [&] { return service_.requestCount() > before; });
    postNotice(kNoticePlaybackEnded, kDetailPlaybackEnded);
  });
  EXPECT_EQ(speech_speak(engine_, "short", 0), SPEECH_OK);
  late.join();
  EXPECT_THAT(eventsToTheEnd(), ElementsAre("started", "started", "finished"));
}

TEST_F(CCloud, FilesAndSamplesComeFromTheService) {
  const TemporaryFolder folder;
  const std::string path = folder.file("x.wav");
  const auto exported = [&](int format) { return speech_export(engine_, "x", 0, format, 0, path.c_str()); };
  EXPECT_EQ(exported(SPEECH_FORMAT_WAV), SPEECH_OK);
  EXPECT_EQ(readFile(path).size(), 44u + 11024u);

  SpeechAudio audio = {};
  ASSERT_EQ(speech_synthesize(engine_, "x", 0, 0, &audio), SPEECH_OK);
  EXPECT_EQ(audio.sample_rate, 22050);
  EXPECT_EQ(audio.byte_count, 11024u);
  speech_audio_free(&audio);

  service_.answerNext("error:500:out of order");
  EXPECT_EQ(exported(SPEECH_FORMAT_WAV), SPEECH_ERROR_SERVICE);
  EXPECT_EQ(detail(), "out of order");
  EXPECT_EQ(readFile(path).size(), 44u + 11024u) << "the file of before";
  expectEach(SPEECH_ERROR_UNSUPPORTED,
             {exported(SPEECH_FORMAT_MULAW), speech_dictionary_load(engine_, path.c_str()),
              speech_dictionary_unload(engine_, 0)});
  EXPECT_THAT(takeEvents(), IsEmpty());
}

}  // namespace
}  // namespace speech::test
