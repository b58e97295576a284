// Speech into files, through a service on a real socket and the real SoX.

#include <ctime>

#include "tests/engines/cloud/cloud_engine_test.h"
#include "tests/engines/cloud/faulty_service.h"
#include "win32/known_folders.h"

namespace speech {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

constexpr int kAt8000 = 0, kAt16000 = 1, kAt22050 = 2, kNoRate = 5;

/// What today's log holds.
std::string logText() {
  const std::time_t now = std::time(nullptr);
  char name[32];
  std::strftime(name, sizeof name, "%Y-%m-%d.log", std::localtime(&now));
  return test::readFile(std::filesystem::path(documentsFolder().value()) / L"Narravo" / L"log" / name);
}

class CloudExport : public test::CloudEngineTest {
 protected:
  CloudExport() {
    engine_.setToolFolder(std::filesystem::path(SPEECH_SOX_FOLDER "/").make_preferred().c_str());
  }

  int save(int format, int rateIndex, bool log = false, const std::string& reply = "speech:200") {
    service_.answerNext(reply);
    return engine_.textToFile(L"text", output().c_str(), format, false, rateIndex, log);
  }

  /// Whether today's log says that the file was exported.
  static bool isLogged(const std::filesystem::path& path) {
    const std::string line =
        "|Speaker : Vox,  Export File Path : " + toThreadCodePage(path.wstring()) + "  \n";
    return logText().find(line) != std::string::npos;
  }

  bool isThere(const std::filesystem::path& path) const { return std::filesystem::exists(path); }

  test::FaultyService service_;
  Skyvo engine_{&voice_, service_.url()};
  const int requestsBefore_ = service_.requestCount();
};

class WavFormat : public CloudExport, public testing::WithParamInterface<int> {};

TEST_P(WavFormat, HoldsTheReplyAsItCame) {
  EXPECT_EQ(save(GetParam(), kAt22050), 1);
  EXPECT_EQ(test::readFile(output()).size(), 44u + 4410 * 2);
  EXPECT_THAT(temporaryFiles(L".wav"), IsEmpty());
}

TEST_P(WavFormat, IsConvertedToAnotherRate) {
  EXPECT_EQ(save(GetParam(), kAt16000), 1);
  const std::string wav = test::readFile(output());
  ASSERT_GT(wav.size(), 44u);
  EXPECT_EQ(wav.substr(24, 4), std::string("\x80\x3E\0\0", 4));
  EXPECT_NEAR(static_cast<double>(wav.size() - 44), 3200 * 2, 200);
  EXPECT_THAT(temporaryFiles(L".wav"), SizeIs(1));
}

INSTANTIATE_TEST_SUITE_P(, WavFormat, testing::Values(1, 5));

class PcmFormat : public CloudExport, public testing::WithParamInterface<int> {};

TEST_P(PcmFormat, HoldsTheReplyWithoutItsHeader) {
  EXPECT_EQ(save(GetParam(), kAt22050), 1);
  ASSERT_THAT(temporaryFiles(L".wav"), SizeIs(1));
  EXPECT_EQ(test::readFile(output()), test::readFile(temporaryFiles(L".wav")[0]).substr(44));
}

TEST_P(PcmFormat, IsConvertedToAnotherRate) {
  EXPECT_EQ(save(GetParam(), kAt16000), 1);
  EXPECT_NEAR(static_cast<double>(test::readFile(output()).size()), 3200 * 2, 200);
  EXPECT_THAT(temporaryFiles(L".wav"), SizeIs(2));
}

INSTANTIATE_TEST_SUITE_P(, PcmFormat, testing::Values(0, 10));

TEST_F(CloudExport, SoundAt8000HzIsNotConverted) {
  voice_.setSampleRateHz(8000);
  for (const int format : {0, 1, 5, 10}) EXPECT_EQ(save(format, kAt16000), -1) << format;
  EXPECT_EQ(service_.requestCount(), requestsBefore_);
  EXPECT_FALSE(isThere(output()));
  EXPECT_EQ(save(5, kAt8000, false, "speech:100:8000"), 1);
  EXPECT_EQ(save(2, kAt16000, false, "speech:100:8000"), 1);
}

TEST_F(CloudExport, OtherFormatsCountAsDone) {
  for (const int format : {6, 7, 8, 9, 11, 13, 14, -1, 1000}) EXPECT_EQ(save(format, kAt16000), 1) << format;
  EXPECT_EQ(service_.requestCount(), requestsBefore_);
  EXPECT_FALSE(isThere(output()));
}

TEST_F(CloudExport, AnUnknownRateIsRefusedAtOnce) {
  for (const int format : {0, 1, 2, 3, 4, 5, 7}) EXPECT_EQ(save(format, kNoRate, true), 0) << format;
  EXPECT_EQ(service_.requestCount(), requestsBefore_);
  EXPECT_FALSE(isLogged(output()));
}

struct SoxFormat {
  int format;
  const wchar_t* extension;
  std::string beginning;
  int frameBytes;  ///< Of which the file holds a whole number.
};

class SoxExport : public CloudExport, public testing::WithParamInterface<SoxFormat> {
 protected:
  std::filesystem::path target() const {
    return temporary_ / (std::wstring(L"out put.") + GetParam().extension);
  }
  int save() {
    service_.answerNext("speech:200");
    return engine_.textToFile(L"text", target().c_str(), GetParam().format, false, kAt16000, true);
  }
};

TEST_P(SoxExport, MakesTheFile) {
  EXPECT_EQ(save(), 1);
  const std::string file = test::readFile(target());
  EXPECT_THAT(file.substr(0, 4), StartsWith(GetParam().beginning));
  EXPECT_EQ(file.size() % static_cast<std::size_t>(GetParam().frameBytes), 0u);
  EXPECT_THAT(temporaryFiles(L".wav"), SizeIs(1));
  EXPECT_TRUE(isLogged(target()));
}

TEST_P(SoxExport, FetchesNothingWithoutSox) {
  engine_.setToolFolder((temporary_.path().wstring() + L"\\").c_str());
  EXPECT_EQ(save(), 0);
  EXPECT_EQ(service_.requestCount(), requestsBefore_);
}

INSTANTIATE_TEST_SUITE_P(, SoxExport,
                         testing::Values(SoxFormat{2, L"ogg", "OggS", 1}, SoxFormat{3, L"gsm", "\xD2", 33},
                                         SoxFormat{4, L"mp3", "\xFF", 1}));

TEST_F(CloudExport, AFailedRequestFails) {
  for (const int format : {0, 5, 2}) EXPECT_EQ(save(format, kAt22050, true, "error:500:no"), 0) << format;
  EXPECT_EQ(save(5, kAt16000, true, "error:500:no"), 0);
  EXPECT_THAT(host_.copiedTexts(), ElementsAre("no\n", "no\n", "no\n", "no\n"));
  EXPECT_THAT(host_.takeNotices(), ElementsAre(kFailure, kFailure, kFailure, kFailure));
  EXPECT_FALSE(isLogged(output()));
}

TEST_F(CloudExport, AFileThatCannotBeWrittenFails) {
  const auto nowhere = temporary_ / L"none" / L"out";
  for (const int format : {0, 5}) {
    service_.answerNext("speech");
    EXPECT_EQ(engine_.textToFile(L"text", nowhere.c_str(), format, false, kAt22050, false), 0) << format;
    _fcloseall();  // the failed request's header file
  }
}

TEST_F(CloudExport, LogsWhenAsked) {
  EXPECT_EQ(save(5, kAt22050, false), 1);
  EXPECT_FALSE(isLogged(output()));
  EXPECT_EQ(save(5, kAt22050, true), 1);
  EXPECT_TRUE(isLogged(output()));
}

TEST_F(CloudExport, SendsSsmlWhenAsked) {
  EXPECT_EQ(engine_.textToFile(L"<speak/>", output().c_str(), 5, true, kAt22050, false), 1);
  EXPECT_EQ(service_.lastField("ssml"), "<speak/>");
}

class RawExport : public CloudExport {
 protected:
  int exportRaw(int format, const std::string& samples, int dataSize) {
    test::writeFile(source_, samples);
    return engine_.exportAudio(source_.c_str(), destination_, format, dataSize, kAt16000);
  }

  std::filesystem::path target(const wchar_t* extension) const {
    return (temporary_ / L"export") += extension;
  }

  static std::string samples(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7 % 251 + 1);
    return bytes;
  }

  std::filesystem::path source_ = temporary_ / L"raw";
  CStringW destination_ = (temporary_ / L"export").c_str();
};

TEST_F(RawExport, CopiesPcmAndKeepsTheSource) {
  EXPECT_EQ(exportRaw(0, "samples", 7), 0);
  EXPECT_EQ(destination_, target(L".pcm").c_str());
  EXPECT_EQ(test::readFile(target(L".pcm")), "samples");
  EXPECT_TRUE(isThere(source_));
  EXPECT_TRUE(isLogged(target(L".pcm")));
}

TEST_F(RawExport, WritesSilenceForAShortWavFile) {
  EXPECT_EQ(exportRaw(5, samples(1000), 1000), 0);
  EXPECT_EQ(destination_, target(L".wav").c_str());
  const std::string wav = test::readFile(target(L".wav"));
  EXPECT_EQ(wav.substr(24, 4), std::string("\x80\x3E\0\0", 4));
  EXPECT_EQ(wav.substr(44), std::string(1000, '\0'));
  EXPECT_TRUE(isThere(source_));
}

TEST_F(RawExport, WritesEveryBlockOfALongWavFile) {
  for (const int size : {65'536, 131'070, 200'001}) {
    destination_ = (temporary_ / L"export").c_str();
    EXPECT_EQ(exportRaw(5, samples(static_cast<std::size_t>(size)), size), 0);
    EXPECT_TRUE(test::readFile(target(L".wav")).substr(44) == samples(static_cast<std::size_t>(size)))
        << size;
  }
}

TEST_F(RawExport, RefusesAWavFileThatCannotBeOpened) {
  EXPECT_EQ(engine_.exportAudio((temporary_ / L"none").c_str(), destination_, 5, 10, kAt16000), -1);
  EXPECT_EQ(destination_, target(L".wav").c_str());
  EXPECT_FALSE(isLogged(target(L".wav")));
}

TEST_F(RawExport, FindsSoxBesideTheProgram) {
  engine_.setToolFolder(L"Z:\\nowhere\\");
  for (const auto& [format, extension] : {std::pair{2, L".ogg"}, {3, L".gsm"}, {4, L".mp3"}}) {
    EXPECT_EQ(exportRaw(format, samples(32'000), 32'000), 0);
    EXPECT_EQ(destination_, (temporary_ / L"export").c_str());
    EXPECT_GT(test::readFile(target(extension)).size(), 1000u) << format;
    EXPECT_TRUE(isLogged(target(extension)));
  }
  EXPECT_TRUE(isThere(source_));
}

TEST_F(RawExport, DoesNothingForOtherFormats) {
  for (const int format : {1, 6, -1}) EXPECT_EQ(exportRaw(format, "samples", 7), 0) << format;
  EXPECT_EQ(destination_, (temporary_ / L"export").c_str());
  EXPECT_EQ(logText().find(toThreadCodePage(temporary_.path().wstring())), std::string::npos);
}

}  // namespace
}  // namespace speech
