// Speech into files, through a service on a real socket: where the cloud engine has ways of its own. What
// both engines do alike, the real SoX included, is in the conformance tests.

#include "tests/engines/cloud/cloud_engine_test.h"
#include "tests/support/export_traces.h"
#include "tests/support/faulty_service.h"
#include "win32/paths.h"

namespace speech {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr int kAt8000 = 0, kAt16000 = 1, kAt22050 = 2;

const std::string kNoWav = "body:audio/wav:" + std::string(1000, '-');

std::string quoted(const std::filesystem::path& path) { return '"' + path.string() + '"'; }

class CloudExport : public test::CloudEngineTest {
 protected:
  CloudExport() { engine_.setToolFolder(moduleFolder(nullptr).c_str()); }

  int save(int format, int rateIndex, const std::string& reply = "speech:200", bool isSsml = false) {
    service_.answerNext(reply);
    return engine_.textToFile(L"<text>", output().c_str(), format, isSsml, rateIndex, true);
  }

  int exportRaw(int format, const std::string& samples, int rateIndex = kAt16000) {
    test::writeFile(source_, samples);
    destination_ = (temporary_ / L"export").c_str();
    return engine_.exportAudio(source_.c_str(), destination_, format, static_cast<int>(samples.size()),
                               rateIndex);
  }

  /// How often the log names the file as exported.
  int logged(const std::filesystem::path& path) const {
    const std::string line = "|Speaker : Vox,  Export File Path : " + path.string() + "  \n";
    const std::string log = traces_.newLogText();
    int count = 0;
    for (auto at = log.find(line); at != std::string::npos; at = log.find(line, at + 1)) ++count;
    return count;
  }

  test::FaultyService service_;
  Skyvo engine_{&voice_, service_.url()};
  const int requestsBefore_ = service_.requestCount();
  test::ExportTraces traces_{temporary_.path()};
  std::filesystem::path source_ = temporary_ / L"raw";
  CStringW destination_;
};

TEST_F(CloudExport, HoldsTheReplyOrItsSamplesAndLeavesTheTemporaryFiles) {
  EXPECT_EQ(engine_.textToFile(L"text", output().c_str(), 5, false, kAt22050, false), 1);
  EXPECT_EQ(logged(output()), 0);
  EXPECT_EQ(save(5, kAt22050), 1);
  EXPECT_EQ(logged(output()), 1);
  EXPECT_THAT(temporaryFiles(L".wav"), IsEmpty());
  const std::string reply = test::readFile(output());
  EXPECT_EQ(reply.size(), 44u + 4410 * 2);
  EXPECT_EQ(save(1, kAt22050), 1);
  EXPECT_EQ(test::readFile(output()), reply);
  EXPECT_EQ(save(5, kAt16000), 1);
  EXPECT_THAT(temporaryFiles(L".wav"), SizeIs(1));
  const std::string converted = test::readFile(output());
  EXPECT_EQ(converted.substr(24, 4), std::string("\x80\x3E\0\0", 4));
  EXPECT_NEAR(static_cast<double>(converted.size() - 44), 3200 * 2, 200);
  for (const int format : {0, 10}) {
    EXPECT_EQ(save(format, kAt22050), 1);
    EXPECT_EQ(test::readFile(output()), reply.substr(44));
    EXPECT_EQ(save(format, kAt16000), 1);
    EXPECT_EQ(test::readFile(output()), converted.substr(44));
  }
  EXPECT_THAT(temporaryFiles(L".wav"), SizeIs(1 + 2 * 3));
}

TEST_F(CloudExport, SendsTheTextAsWhatItIsForEveryFormatAndRate) {
  for (const int format : {0, 1, 2, 3, 4, 5, 10}) {
    for (const int rateIndex : {kAt16000, kAt22050}) {
      EXPECT_EQ(save(format, rateIndex, "speech:20", false), 1) << format;
      EXPECT_EQ(service_.lastField("text"), "<text>") << format;
      EXPECT_EQ(save(format, rateIndex, "speech:20", true), 1) << format;
      EXPECT_EQ(service_.lastField("ssml"), "<text>") << format;
    }
  }
}

TEST_F(CloudExport, GoesThroughSoxFromAFileThatStays) {
  const std::string output = quoted(this->output());
  for (const auto& [format, options] : {std::pair{2, " -r 16000 "}, {3, " -r 8000 "}, {4, " -C 320 "}}) {
    EXPECT_EQ(save(format, kAt16000), 1);
    const auto fetched = temporaryFiles(L".wav");
    ASSERT_THAT(fetched, SizeIs(1));
    EXPECT_EQ(test::readFile(fetched[0]).size(), 44u + 4410 * 2);
    EXPECT_EQ(traces_.soxCalls().back(), quoted(fetched[0]) + options + output);
    std::filesystem::remove(fetched[0]);
  }
  EXPECT_EQ(logged(this->output()), 3);
}

TEST_F(CloudExport, SoundAt8000HzIsNotConverted) {
  voice_.setSampleRateHz(8000);
  for (const int format : {0, 1, 5, 10}) EXPECT_EQ(save(format, kAt16000), -1) << format;
  EXPECT_EQ(service_.requestCount(), requestsBefore_);
  EXPECT_FALSE(std::filesystem::exists(output()));
  EXPECT_EQ(logged(output()), 0);
  EXPECT_EQ(save(5, kAt8000, "speech:100:8000"), 1);
  EXPECT_EQ(save(2, kAt16000, "speech:100:8000"), 1);
}

TEST_F(CloudExport, FormatsThatTheServiceDoesNotHaveCountAsDoneAndAreLogged) {
  for (const int format : {6, 7, 8, 9, 11, 13, 14, -1, 1000}) EXPECT_EQ(save(format, kAt16000), 1) << format;
  EXPECT_EQ(service_.requestCount(), requestsBefore_);
  EXPECT_FALSE(std::filesystem::exists(output()));
  EXPECT_EQ(logged(output()), 9);
}

TEST_F(CloudExport, FailsWithoutAReplyThatCanBeConvertedAndWritten) {
  for (const int format : {0, 5, 2}) EXPECT_EQ(save(format, kAt22050, "error:500:no"), 0) << format;
  EXPECT_EQ(save(5, kAt16000, "error:500:no"), 0);
  EXPECT_THAT(host_.copiedTexts(), testing::AllOf(SizeIs(4), Each("no\n")));
  EXPECT_THAT(host_.takeNotices(), testing::AllOf(SizeIs(4), Each(kFailure)));
  for (const int format : {0, 1, 5, 10}) EXPECT_EQ(save(format, kAt16000, kNoWav), 0) << format;
  EXPECT_EQ(logged(output()), 0);
  for (const int format : {0, 5}) {
    service_.answerNext("speech");
    const auto nowhere = temporary_ / L"none" / L"out";
    EXPECT_EQ(engine_.textToFile(L"text", nowhere.c_str(), format, false, kAt22050, false), 0) << format;
    _fcloseall();  // the failed request's header file
  }
}

TEST_F(CloudExport, ConvertsWhatIsThereOfAReplyThatOverstatesItsSize) {
  EXPECT_EQ(save(5, kAt16000, "speech:250"), 1);
  const std::string converted = test::readFile(output());
  EXPECT_EQ(save(5, kAt16000, "overstated:4"), 1);
  EXPECT_EQ(test::readFile(output()), converted);
  EXPECT_EQ(save(0, kAt16000, "overstated:4"), 1);
  EXPECT_EQ(test::readFile(output()), converted.substr(44));
}

TEST_F(CloudExport, OfRawSamplesKeepsTheSourceAndWritesEveryBlock) {
  test::writeFile(temporary_ / L"export.pcm", "an older file");
  EXPECT_EQ(exportRaw(0, "samples"), 0);
  EXPECT_EQ(test::readFile(temporary_ / L"export.pcm"), "samples");
  EXPECT_TRUE(std::filesystem::exists(source_));
  for (const std::size_t size : {65'536, 131'070, 200'001}) {
    std::string samples(size, '\0');
    for (std::size_t i = 0; i < size; ++i) samples[i] = static_cast<char>(i * 7 % 251 + 1);
    EXPECT_EQ(exportRaw(5, samples, kAt22050), 0);
    const std::string wav = test::readFile(temporary_ / L"export.wav");
    EXPECT_EQ(wav.substr(24, 4), std::string("\x22\x56\0\0", 4));
    EXPECT_TRUE(wav.substr(44) == samples) << size;
  }
  EXPECT_EQ(logged(temporary_ / L"export.pcm"), 1);
  EXPECT_EQ(logged(temporary_ / L"export.wav"), 3);
  for (const int format : {1, 6, -1}) {
    EXPECT_EQ(exportRaw(format, "samples"), 0) << format;
    EXPECT_EQ(destination_, (temporary_ / L"export").c_str());
  }
  EXPECT_EQ(logged(temporary_ / L"export"), 0);
}

TEST_F(CloudExport, OfRawSamplesFindsSoxBesideTheProgram) {
  engine_.setToolFolder(L"Z:\\nowhere\\");
  EXPECT_EQ(exportRaw(2, "samples", kAt16000), 0);
  EXPECT_EQ(exportRaw(3, "samples", kAt22050), 0);
  EXPECT_EQ(exportRaw(4, "samples", 9), 0);
  EXPECT_EQ(destination_, (temporary_ / L"export").c_str());
  const auto line = [this](const char* rateHz, const wchar_t* name) {
    return std::string("-t raw -r ") + rateHz + " -e signed -b 16 -c 1 " + source_.string() + ' ' +
           quoted(temporary_ / name);
  };
  EXPECT_THAT(traces_.soxCalls(), ElementsAre(line("16000", L"export.ogg"), line("22050", L"export.gsm"),
                                              line("-1", L"export.mp3")));
  EXPECT_EQ(logged(temporary_ / L"export.ogg"), 1);
}

}  // namespace
}  // namespace speech
