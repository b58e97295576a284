#include "tests/engines/local/export_fixture.h"

namespace speech::test {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;

class ExportAudio : public Export {
 protected:
  /// Exports a file of `samples`, which is gone afterwards; the destination as the host then holds it.
  CStringW exported(const std::string& samples, int format, int dataSize, int rateIndex) {
    writeFile(source_, samples);
    CStringW path = destination(L"x").c_str();
    result_ = engine_->exportAudio(source_.c_str(), path, format, dataSize, rateIndex);
    return path;
  }

  std::filesystem::path source_ = temporary_ / "samples";
  int result_ = 99;
};

TEST_F(ExportAudio, PcmIsACopyAndTheHostLearnsItsPath) {
  EXPECT_EQ(exported("samples!", 0, 8, 1), destination(L"x.pcm").c_str());
  EXPECT_EQ(result_, 0);
  EXPECT_EQ(readFile(results_ / "x.pcm"), "samples!");
  EXPECT_FALSE(std::filesystem::exists(source_));
  EXPECT_THAT(newLogText(),
              EndsWith("|Speaker : Alex,  Export File Path : " + narrow(destination(L"x.pcm")) + "  \n"));
}

TEST_F(ExportAudio, AWavIsSilenceOrEveryBlockSaveALastOneOfExactly65535Bytes) {
  const auto wav = [&](std::size_t size, int rateIndex) {
    EXPECT_EQ(exported(std::string(size, 's'), 5, static_cast<int>(size), rateIndex),
              destination(L"x.wav").c_str());
    EXPECT_FALSE(std::filesystem::exists(source_));
    return readFile(results_ / "x.wav");
  };
  EXPECT_EQ(wav(1000, 1), wavFile(16000, std::string(1000, '\0')));
  EXPECT_EQ(wav(65'536, 4), wavFile(48000, std::string(65'536, 's')));
  EXPECT_EQ(wav(2 * 65'535, 1), wavFile(16000, std::string(2 * 65'535, 's')).substr(0, 44 + 65'535));
}

TEST_F(ExportAudio, HeaderAndSamplesOfAWavGoIntoOneFileWhateverItsName) {
  const std::string samples(65'536, 's');
  writeFile(source_, samples);
  CStringW path = destination(L"\u0100").c_str();
  EXPECT_EQ(engine_->exportAudio(source_.c_str(), path, 5, 65'536, 1), 0);
  EXPECT_EQ(path, destination(L"\u0100.wav").c_str());
  EXPECT_THAT(namesIn(results_.path()), ElementsAre(L"A.wav"));
  EXPECT_EQ(readFile(results_ / "A.wav"), wavFile(16000, samples));
}

TEST_F(ExportAudio, AWavThatCannotBeOpenedKeepsTheSource) {
  writeFile(source_, "samples");
  CStringW path = destination(L"no folder\\x").c_str();
  EXPECT_EQ(engine_->exportAudio(source_.c_str(), path, 5, 7, 1), -1);
  EXPECT_TRUE(std::filesystem::exists(source_));
  EXPECT_EQ(newLogText(), "");
}

TEST_F(ExportAudio, SoxGetsTheRawSourceUnquotedAndTheHostsPathStays) {
  installFakeSox();
  const std::string raw =
      " -e signed -b 16 -c 1 " + toUtf8(source_.wstring()) + " \"" + toUtf8(destination(L"x"));
  EXPECT_EQ(exported("s", 2, 1, 1), destination(L"x").c_str());
  exported("s", 3, 1, 3);
  exported("s", 4, 1, 9);
  EXPECT_THAT(soxCalls(), ElementsAre("-t raw -r 16000" + raw + ".ogg\"", "-t raw -r 44100" + raw + ".gsm\"",
                                      "-t raw -r -1" + raw + ".mp3\""));
  EXPECT_FALSE(std::filesystem::exists(source_));
}

TEST_F(ExportAudio, WithoutSoxOrFormatTheSourceIsDeletedAllTheSame) {
  for (const int format : {2, 7}) {
    exported("s", format, 1, 1);
    EXPECT_EQ(result_, 0);
    EXPECT_FALSE(std::filesystem::exists(source_));
  }
  EXPECT_THAT(namesIn(results_.path()), IsEmpty());
  EXPECT_THAT(newLogText(), EndsWith("|\n")) << "an unknown format logs an empty line";
}

}  // namespace
}  // namespace speech::test
