// Speech into files, through a service on a real socket and the real SoX: where the cloud engine has ways of
// its own. What both engines do alike is in the conformance tests.

#include <cstring>
#include <ctime>

#include "tests/engines/cloud/cloud_engine_test.h"
#include "tests/engines/cloud/faulty_service.h"
#include "win32/paths.h"

namespace speech {
namespace {

using testing::Each;
using testing::IsEmpty;
using testing::SizeIs;

constexpr int kAt8000 = 0, kAt16000 = 1, kAt22050 = 2;

class CloudExport : public test::CloudEngineTest {
 protected:
  CloudExport() {
    engine_.setToolFolder(std::filesystem::path(SPEECH_SOX_FOLDER "/").make_preferred().c_str());
  }

  int save(int format, int rateIndex, const std::string& reply = "speech:200") {
    service_.answerNext(reply);
    return engine_.textToFile(L"text", output().c_str(), format, false, rateIndex, true);
  }

  int exportRaw(int format, const std::string& samples) {
    test::writeFile(source_, samples);
    destination_ = (temporary_ / L"export").c_str();
    return engine_.exportAudio(source_.c_str(), destination_, format, static_cast<int>(samples.size()),
                               kAt16000);
  }

  /// Whether today's log says that the file was exported.
  static bool isLogged(const std::filesystem::path& path) {
    const std::time_t now = std::time(nullptr);
    char name[32];
    std::strftime(name, sizeof name, "%Y-%m-%d.log", std::localtime(&now));
    const auto log = std::filesystem::path(documentsFolder().value()) / L"Narravo" / L"log" / name;
    const std::string line =
        "|Speaker : Vox,  Export File Path : " + toThreadCodePage(path.wstring()) + "  \n";
    return test::readFile(log).find(line) != std::string::npos;
  }

  test::FaultyService service_;
  Skyvo engine_{&voice_, service_.url()};
  const int requestsBefore_ = service_.requestCount();
  std::filesystem::path source_ = temporary_ / L"raw";
  CStringW destination_;
};

TEST_F(CloudExport, HoldsTheReplyOrItsSamplesAndLeavesTheTemporaryFiles) {
  EXPECT_EQ(save(5, kAt22050), 1);
  EXPECT_TRUE(isLogged(output()));
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

TEST_F(CloudExport, GoesThroughSoxFromAFileThatStays) {
  for (const auto& [format, name, beginning] :
       {std::tuple{2, L"out put.ogg", "OggS"}, {3, L"out put.gsm", "\xD2"}, {4, L"out put.mp3", "\xFF"}}) {
    service_.answerNext("speech:200");
    EXPECT_EQ(engine_.textToFile(L"text", (temporary_ / name).c_str(), format, false, kAt16000, true), 1);
    const std::string file = test::readFile(temporary_ / name);
    EXPECT_EQ(file.substr(0, std::strlen(beginning)), beginning);
    EXPECT_EQ(format == 3 ? file.size() % 33 : 0, 0u) << "whole GSM frames";
    EXPECT_TRUE(isLogged(temporary_ / name));
  }
  EXPECT_THAT(temporaryFiles(L".wav"), SizeIs(3));
}

TEST_F(CloudExport, SoundAt8000HzIsNotConverted) {
  voice_.setSampleRateHz(8000);
  for (const int format : {0, 1, 5, 10}) EXPECT_EQ(save(format, kAt16000), -1) << format;
  EXPECT_EQ(service_.requestCount(), requestsBefore_);
  EXPECT_FALSE(std::filesystem::exists(output()));
  EXPECT_FALSE(isLogged(output()));
  EXPECT_EQ(save(5, kAt8000, "speech:100:8000"), 1);
  EXPECT_EQ(save(2, kAt16000, "speech:100:8000"), 1);
}

TEST_F(CloudExport, FormatsThatTheServiceDoesNotHaveCountAsDoneAndAreLogged) {
  for (const int format : {6, 7, 8, 9, 11, 13, 14, -1, 1000}) EXPECT_EQ(save(format, kAt16000), 1) << format;
  EXPECT_EQ(service_.requestCount(), requestsBefore_);
  EXPECT_FALSE(std::filesystem::exists(output()));
  EXPECT_TRUE(isLogged(output()));
}

TEST_F(CloudExport, AFailedRequestOrAFileThatCannotBeWrittenFails) {
  for (const int format : {0, 5, 2}) EXPECT_EQ(save(format, kAt22050, "error:500:no"), 0) << format;
  EXPECT_EQ(save(5, kAt16000, "error:500:no"), 0);
  EXPECT_THAT(host_.copiedTexts(), testing::AllOf(SizeIs(4), Each("no\n")));
  EXPECT_THAT(host_.takeNotices(), testing::AllOf(SizeIs(4), Each(kFailure)));
  EXPECT_FALSE(isLogged(output()));
  for (const int format : {0, 5}) {
    service_.answerNext("speech");
    const auto nowhere = temporary_ / L"none" / L"out";
    EXPECT_EQ(engine_.textToFile(L"text", nowhere.c_str(), format, false, kAt22050, false), 0) << format;
    _fcloseall();  // the failed request's header file
  }
}

TEST_F(CloudExport, SendsSsmlAndLogsNothingUnlessAsked) {
  EXPECT_EQ(engine_.textToFile(L"<speak/>", output().c_str(), 5, true, kAt22050, false), 1);
  EXPECT_EQ(service_.lastField("ssml"), "<speak/>");
  EXPECT_FALSE(isLogged(output()));
}

TEST_F(CloudExport, OfRawSamplesKeepsTheSourceAndWritesEveryBlock) {
  EXPECT_EQ(exportRaw(0, "samples"), 0);
  EXPECT_TRUE(isLogged(temporary_ / L"export.pcm"));
  for (const std::size_t size : {65'536, 131'070, 200'001}) {
    std::string samples(size, '\0');
    for (std::size_t i = 0; i < size; ++i) samples[i] = static_cast<char>(i * 7 % 251 + 1);
    EXPECT_EQ(exportRaw(5, samples), 0);
    EXPECT_TRUE(test::readFile(temporary_ / L"export.wav").substr(44) == samples) << size;
  }
  for (const int format : {1, 6, -1}) {
    EXPECT_EQ(exportRaw(format, "samples"), 0) << format;
    EXPECT_EQ(destination_, (temporary_ / L"export").c_str());
  }
  EXPECT_TRUE(std::filesystem::exists(source_));
}

TEST_F(CloudExport, OfRawSamplesFindsSoxBesideTheProgram) {
  engine_.setToolFolder(L"Z:\\nowhere\\");
  for (const auto& [format, extension] : {std::pair{2, L".ogg"}, {3, L".gsm"}, {4, L".mp3"}}) {
    EXPECT_EQ(exportRaw(format, std::string(32'000, 's')), 0);
    EXPECT_EQ(destination_, (temporary_ / L"export").c_str());
    const auto made = (temporary_ / L"export") += extension;
    EXPECT_GT(test::readFile(made).size(), 500u) << format;
    EXPECT_TRUE(isLogged(made));
  }
}

}  // namespace
}  // namespace speech
