#include <gmock/gmock.h>

#include <cmath>
#include <cstdint>
#include <numbers>

#include "tests/engines/local/export_fixture.h"

namespace speech::test {
namespace {

struct Mp3Frame {
  int bitRateKbps;
  int sampleRateHz;
  bool operator==(const Mp3Frame&) const = default;
};

/// What the first frame header of a layer III file says.
Mp3Frame firstFrame(const std::string& file) {
  constexpr int kBitRates1[] = {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320};
  constexpr int kBitRates2[] = {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160};
  constexpr int kRates[] = {44100, 48000, 32000};
  if (file.size() < 4) return {};
  std::uint32_t header = 0;
  for (int i = 0; i < 4; ++i)
    header = header << 8 | static_cast<unsigned char>(file[static_cast<std::size_t>(i)]);
  const unsigned version = header >> 19 & 3;  // 3: MPEG-1, 2: MPEG-2, 0: MPEG-2.5
  const unsigned bitRate = header >> 12 & 15, rate = header >> 10 & 3;
  if (header >> 21 != 0x7FF || version == 1 || bitRate == 15 || rate == 3) return {};
  const int divisor = version == 3 ? 1 : version == 2 ? 2 : 4;
  return {version == 3 ? kBitRates1[bitRate] : kBitRates2[bitRate], kRates[rate] / divisor};
}

/// Half a second of 440 Hz.
std::string toneFile(int sampleRateHz) {
  std::string samples;
  for (int i = 0; i < sampleRateHz / 2; ++i) {
    const auto value = static_cast<int>(8000 * std::sin(2 * std::numbers::pi * 440 * i / sampleRateHz));
    samples += static_cast<char>(value);
    samples += static_cast<char>(value >> 8);
  }
  return wavFile(sampleRateHz, samples);
}

TEST_F(Export, Mp3HasTheHighestBitRateThatTheEnginesRateAllows) {
  std::filesystem::copy_file(executableFolder() / "sox.exe", tools_ / "sox.exe");
  struct Case {
    int rateIndex, sampleRateHz, bitRateKbps;
  };
  for (const Case& each :
       {Case{1, 16000, 160}, Case{2, 22050, 160}, Case{3, 44100, 320}, Case{4, 48000, 320}}) {
    const std::string tone = toneFile(each.sampleRateHz);
    recording().audio.assign(tone.begin(), tone.end());
    const auto path = results_ / (std::to_string(each.sampleRateHz) + ".mp3");
    EXPECT_EQ(engine_->textToFile(L"text", path.c_str(), 4, false, each.rateIndex, false), 1);
    EXPECT_EQ(firstFrame(readFile(path)), (Mp3Frame{each.bitRateKbps, each.sampleRateHz}))
        << each.sampleRateHz;
  }
}

}  // namespace
}  // namespace speech::test
