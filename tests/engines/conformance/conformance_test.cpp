// What the interface promises of every engine: the same assertions over the local engine, on the recording
// engine library, and over the cloud engine, on a service on a real socket.

#include <algorithm>
#include <utility>

#include "tests/engines/cloud/cloud_engine_test.h"
#include "tests/support/faulty_service.h"
#include "tests/support/recording_engine.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/wav_files.h"
#include "win32/paths.h"

namespace speech {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr int kAt16000 = 1, kAt22050 = 2, kNoRate = 5;

/// One kind of engine and how a test has it succeed or fail.
class EngineUnderTest {
 public:
  virtual ~EngineUnderTest() = default;
  virtual ITextToSpeech& engine() = 0;
  virtual LXAPIProduct& product() = 0;
  /// Has the next speech or synthesis accepted; its sound is 200 ms at 22050 Hz.
  virtual void acceptNext() = 0;
  virtual void refuseNext() = 0;
  /// Whether anything has been synthesized since the last call.
  virtual bool takeWork() = 0;
};

class LocalUnderTest final : public EngineUnderTest {
 public:
  explicit LocalUnderTest(HWND window) {
    test::recording().reset();
    test::recording().install(
        {.key1 = L"Vox", .sampleRateHz = 22050, .language = L"en-US", .type = L"espeak"});
    const std::string wav = test::wavFile(std::vector<std::int16_t>(4410, 1000), 22050);
    test::recording().audio.assign(wav.begin(), wav.end());
    engine_ = ITextToSpeech::getInstance(window, test::HostWindow::kNoticeMessage,
                                         ITextToSpeech::getLXAPIProductList()->GetHead());
    test::recording().takeCalls();
  }
  ~LocalUnderTest() override { ITextToSpeech::releaseInstance(); }

  ITextToSpeech& engine() override { return *engine_; }
  LXAPIProduct& product() override { return *ITextToSpeech::getCurrentProduct(); }
  void acceptNext() override { test::recording().answer("LXAPI_Speak", LX_OK); }
  void refuseNext() override { test::recording().answer("LXAPI_Speak", LX_ERROR_FAILED); }
  bool takeWork() override {
    const auto calls = test::recording().takeCalls();
    return std::ranges::any_of(calls,
                               [](const std::string& call) { return call.starts_with("LXAPI_TextToFile"); });
  }

 private:
  ITextToSpeech* engine_ = nullptr;
};

class CloudUnderTest final : public EngineUnderTest {
 public:
  explicit CloudUnderTest(LXAPIProduct& voice) : voice_(voice), engine_(&voice, service_.url()) {}

  ITextToSpeech& engine() override { return engine_; }
  LXAPIProduct& product() override { return voice_; }
  void acceptNext() override { service_.answerNext("speech:200"); }
  void refuseNext() override { service_.answerNext("error:500:refused"); }
  bool takeWork() override {
    return service_.requestCount() != std::exchange(seen_, service_.requestCount());
  }

 private:
  LXAPIProduct& voice_;
  test::FaultyService service_;
  Skyvo engine_;
  int seen_ = service_.requestCount();
};

enum class Kind { kLocal, kCloud };

class Conformance : public test::CloudEngineTest, public testing::WithParamInterface<Kind> {
 protected:
  Conformance() {
    if (GetParam() == Kind::kLocal) {
      subject_ = std::make_unique<LocalUnderTest>(host_.handle());
    } else {
      subject_ = std::make_unique<CloudUnderTest>(voice_);
    }
    subject_->acceptNext();
    engine().setToolFolder(std::filesystem::path(SPEECH_SOX_FOLDER "/").make_preferred().c_str());
  }

  ITextToSpeech& engine() { return subject_->engine(); }

  int save(int format, int rateIndex) {
    subject_->acceptNext();
    return engine().textToFile(L"text", output().c_str(), format, false, rateIndex, false);
  }

  std::unique_ptr<EngineUnderTest> subject_;
};

INSTANTIATE_TEST_SUITE_P(, Conformance, testing::Values(Kind::kLocal, Kind::kCloud),
                         [](const auto& instance) {
                           return instance.param == Kind::kLocal ? "Local" : "Cloud";
                         });

TEST_P(Conformance, FlagsFollowTheCalls) {
  EXPECT_FALSE(engine().isSpeaking());
  EXPECT_FALSE(engine().isPaused());
  EXPECT_TRUE(engine().stop());
  EXPECT_THAT(host_.takeNotices(), IsEmpty());
  EXPECT_TRUE(engine().speak(L"text", false));
  EXPECT_TRUE(engine().isSpeaking());
  EXPECT_FALSE(engine().isPaused());
  EXPECT_TRUE(engine().pauseResume());
  EXPECT_TRUE(engine().isPaused());
  EXPECT_TRUE(engine().isSpeaking());
  EXPECT_TRUE(engine().stop());
  EXPECT_FALSE(engine().isSpeaking());
  EXPECT_TRUE(engine().isPaused()) << "a stop leaves it";
  EXPECT_TRUE(engine().pauseResume());
  EXPECT_FALSE(engine().isPaused());
  engine().pauseResume();
  subject_->acceptNext();
  EXPECT_TRUE(engine().speak(L"text", true));
  EXPECT_FALSE(engine().isPaused()) << "an accepted speech clears it";
}

TEST_P(Conformance, ARefusedSpeechPostsTheFailureNoticeAndLeavesTheFlags) {
  subject_->refuseNext();
  EXPECT_FALSE(engine().speak(L"text", false));
  EXPECT_FALSE(engine().isSpeaking());
  EXPECT_THAT(host_.takeNotices(), ElementsAre(kFailure));
  engine().pauseResume();
  subject_->refuseNext();
  EXPECT_FALSE(engine().speak(L"text", true));
  EXPECT_TRUE(engine().isPaused());
  EXPECT_THAT(host_.takeNotices(), ElementsAre(kFailure));
}

TEST_P(Conformance, TheAnswersOfSpeakSyncAndOfReloadingAreTrue) {
  EXPECT_TRUE(engine().speakSync(WM_NULL, "text"));
  EXPECT_TRUE(engine().speakSync(WM_NULL, nullptr));
  EXPECT_TRUE(engine().setOutputAudio(0));
  EXPECT_TRUE(engine().unloadEngine());
  EXPECT_TRUE(engine().loadEngine());
}

TEST_P(Conformance, SavesAtTheVoicesRateAndAtAnother) {
  EXPECT_EQ(save(5, kAt22050), 1);
  EXPECT_THAT(test::readFile(output()), StartsWith("RIFF"));
  EXPECT_TRUE(subject_->takeWork());
  EXPECT_EQ(save(5, kAt16000), 1);
  const std::string wav = test::readFile(output());
  EXPECT_EQ(wav.substr(24, 4), std::string("\x80\x3E\0\0", 4));
  EXPECT_EQ(save(0, kAt16000), 1);
  EXPECT_EQ(test::readFile(output()), wav.substr(44));
}

TEST_P(Conformance, SavesThroughSox) {
  for (const auto& [format, extension] : {std::pair{2, L".ogg"}, {3, L".gsm"}, {4, L".mp3"}}) {
    const auto path = (temporary_ / L"out put") += extension;
    subject_->acceptNext();
    EXPECT_EQ(engine().textToFile(L"text", path.c_str(), format, true, kAt16000, false), 1);
    EXPECT_GT(test::readFile(path).size(), 100u) << format;
  }
}

TEST_P(Conformance, RefusesAnUnknownRateBeforeAnyWork) {
  subject_->takeWork();
  for (const int format : {0, 1, 2, 3, 4, 5, 6, 99}) EXPECT_EQ(save(format, kNoRate), 0) << format;
  EXPECT_EQ(save(5, -1), 0);
  EXPECT_FALSE(subject_->takeWork());
  EXPECT_FALSE(std::filesystem::exists(output()));
}

TEST_P(Conformance, RefusesToGoThroughSoxWhereThereIsNone) {
  subject_->takeWork();
  for (const std::wstring& folder : {temporary_.path().wstring() + L"\\", std::wstring(L"Z:\\nowhere\\")}) {
    engine().setToolFolder(folder.c_str());
    for (const int format : {2, 3, 4}) EXPECT_EQ(save(format, kAt16000), 0) << format;
  }
  EXPECT_FALSE(subject_->takeWork());
}

TEST_P(Conformance, FormatsThatNobodyHasCountAsDone) {
  subject_->takeWork();
  for (const int format : {14, 1000, -1}) EXPECT_EQ(save(format, kAt22050), 1) << format;
  EXPECT_FALSE(subject_->takeWork());
}

TEST_P(Conformance, ExportsRawSamples) {
  const auto source = temporary_ / L"raw";
  CStringW destination = (temporary_ / L"export").c_str();
  test::writeFile(source, "samples");
  EXPECT_EQ(engine().exportAudio(source.c_str(), destination, 0, 7, kAt16000), 0);
  EXPECT_EQ(destination, (temporary_ / L"export.pcm").c_str());
  EXPECT_EQ(test::readFile(temporary_ / L"export.pcm"), "samples");

  destination = (temporary_ / L"export").c_str();
  test::writeFile(source, "samples");
  EXPECT_EQ(engine().exportAudio(source.c_str(), destination, 5, 1000, kAt16000), 0);
  EXPECT_EQ(destination, (temporary_ / L"export.wav").c_str());
  EXPECT_EQ(test::readFile(temporary_ / L"export.wav").substr(44), std::string(1000, '\0'));
}

TEST_P(Conformance, ExportAnswersMinusOneForAWavFileThatCannotBeOpened) {
  CStringW destination = (temporary_ / L"export").c_str();
  EXPECT_EQ(engine().exportAudio((temporary_ / L"none").c_str(), destination, 5, 10, kAt16000), -1);
  EXPECT_EQ(engine().exportAudio(nullptr, destination, 5, 10, kAt16000), -1);
  EXPECT_EQ(engine().exportAudio(nullptr, destination, 77, 10, kAt16000), 0);
}

TEST_P(Conformance, KnowsSampleRatesByIndexAndEscapesXml) {
  const int rates[] = {-1, 8000, 16000, 22050, 44100, 48000, -1};
  for (int index = -1; index <= 5; ++index) EXPECT_EQ(engine().getSampleRate(index), rates[index + 1]);
  EXPECT_EQ(engine().escapeXml(L"<&>'\"&amp;"), L"&lt;&amp;&gt;&apos;&quot;&amp;amp;");
  EXPECT_EQ(engine().escapeXml(L""), L"");
}

TEST_P(Conformance, WritesAWavHeader) {
  EXPECT_EQ(engine().makeWavHeader(output().c_str(), 1000, 16000, 16, 1), 0);
  EXPECT_EQ(
      test::readFile(output()),
      test::chunk("RIFF",
                  "WAVE" + test::chunk("fmt ", test::pcmFormat(1, 16000, 16)) + test::chunk("data", "", 1000),
                  1036));
  EXPECT_EQ(engine().makeWavHeader(output().c_str(), 1000, 16000, 24, 1), -1);
  EXPECT_EQ(engine().makeWavHeader(nullptr, 1000, 16000, 16, 1), -1);
}

TEST_P(Conformance, ConvertsARate) {
  const auto source = temporary_ / L"source.wav";
  test::writeFile(source, test::wavFile(std::vector<std::int16_t>(22050, 1000), 22050));
  EXPECT_EQ(engine().convertWavRate(source.c_str(), 16000, 16, 1, output().c_str()), 1);
  const std::string converted = test::readFile(output());
  EXPECT_EQ(converted.substr(0, 4) + converted.substr(24, 4), std::string("RIFF\x80\x3E\0\0", 8));
  EXPECT_NEAR(static_cast<double>(converted.size()), 44 + 2 * 16000, 400);
  EXPECT_EQ(engine().convertWavRate((temporary_ / L"none.wav").c_str(), 16000, 16, 1, output().c_str()), -1);
}

TEST_P(Conformance, TheDictionaryEditorGetsTheFileInQuotesAndTheRestAsItStands) {
  const test::ScopedEnvironment log(L"FAKE_SOX_LOG", (temporary_ / L"calls").wstring());
  const test::ScopedEnvironment mode(L"FAKE_SOX_MODE", L"fail");
  subject_->product().setUserDictEditorPath((moduleFolder(nullptr) + L"fake_sox.exe").c_str());
  subject_->product().setUserDictPath3(L"C:\\my words.csv");
  EXPECT_TRUE(engine().runUserDictEditor(L"", L" /edit now"));
  EXPECT_TRUE(engine().runUserDictEditor(L"D:\\other.csv", nullptr));
  EXPECT_THAT(test::readFile(temporary_ / L"calls"),
              testing::AllOf(testing::HasSubstr(" \"C:\\my words.csv\" /edit now\n"),
                             testing::EndsWith(" \"D:\\other.csv\"\n")));
  subject_->product().setUserDictEditorPath((temporary_ / L"none.exe").c_str());
  EXPECT_FALSE(engine().runUserDictEditor(L"words.csv", L" /edit"));
  EXPECT_FALSE(engine().runUserDictEditor(nullptr, nullptr));
}

TEST_P(Conformance, NullTextsAndPathsAreHarmless) {
  subject_->acceptNext();
  EXPECT_TRUE(engine().speak(nullptr, false));
  engine().setToolFolder(nullptr);
  EXPECT_EQ(engine().textToFile(nullptr, nullptr, 2, false, kAt16000, false), 0);
  EXPECT_NE(engine().convertWavRate(nullptr, 16000, 16, 1, nullptr), 1);
  engine().loadUserDict(nullptr);
}

}  // namespace
}  // namespace speech
