#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "service/mp3_reply.h"
#include "service/wav_reply.h"

namespace speech::service {
namespace {

using namespace std::string_literals;

TEST(WavHeader, HoldsTheCanonicalFields) {
  EXPECT_EQ(wavHeader(0x00A1B2C4, 22050),
            "RIFF\xE8\xB2\xA1\x00WAVEfmt \x10\x00\x00\x00\x01\x00\x01\x00"
            "\x22\x56\x00\x00\x44\xAC\x00\x00\x02\x00\x10\x00"
            "data\xC4\xB2\xA1\x00"s);
}

TEST(WavHeader, ReachesUpToFourGigabytes) {
  const std::string header = wavHeader(4'294'967'258U, 22050);
  EXPECT_EQ(header.substr(4, 4), "\xFE\xFF\xFF\xFF");
  EXPECT_EQ(header.size(), 44U);
}

// Each frame of MPEG-2 Layer III holds 576 samples; at 64 kbit/s and 22050 Hz it has 208 or 209 bytes.
TEST(Mp3, ConsistsOfFramesOfTheRightKindOnly) {
  SpoolFile samples;
  std::vector<short> ramp(50'001);
  for (size_t i = 0; i < ramp.size(); ++i) ramp[i] = static_cast<short>(i * 37);
  samples.append({reinterpret_cast<const char*>(ramp.data()), ramp.size() * sizeof(short)});

  const SpoolFile encoded = encodeMp3(samples, 22050);
  std::string bytes(encoded.size(), '\0');
  ASSERT_EQ(encoded.readAt(0, bytes), bytes.size());
  size_t frames = 0;
  for (size_t offset = 0; offset < bytes.size(); ++frames) {
    ASSERT_GE(bytes.size() - offset, 4U);
    EXPECT_EQ(bytes.substr(offset, 2), "\xFF\xF3");  // MPEG-2, Layer III, no checksum
    EXPECT_EQ(bytes[offset + 2] & 0xFC, 0x80);       // 64 kbit/s, 22050 Hz
    EXPECT_EQ(bytes[offset + 3] & 0xC0, 0xC0);       // mono
    const bool isPadded = (bytes[offset + 2] & 2) != 0;
    offset += isPadded ? 209 : 208;
  }
  EXPECT_GE(frames * 576, ramp.size());
  EXPECT_LE(frames * 576, ramp.size() + 4 * 576);
}

TEST(Mp3, NothingToEncodeIsNotAnError) {
  const SpoolFile nothing;
  EXPECT_LE(encodeMp3(nothing, 22050).size(), 4U * 209);
}

}  // namespace
}  // namespace speech::service
