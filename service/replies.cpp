#include "service/replies.h"

#include <lame/lame.h>

#include <memory>
#include <span>
#include <stdexcept>
#include <vector>

namespace speech::service {
namespace {

constexpr uint32_t kWaveFormatPcm = 1;
constexpr uint32_t kChannels = 1;
constexpr uint32_t kBitsPerSample = 16;
constexpr uint32_t kBytesPerFrame = kChannels * kBitsPerSample / 8;
constexpr uint32_t kFormatChunkBytes = 16;
constexpr uint32_t kRiffBytesBeforeData = 36;

std::string littleEndian(uint32_t value, int byteCount) {
  std::string bytes;
  for (int i = 0; i < byteCount; ++i) bytes += static_cast<char>(value >> (8 * i) & 0xFF);
  return bytes;
}

constexpr int kBitRateKbit = 64;  // transparent for one voice at 22050 Hz, where the format allows up to 160
constexpr int kQuality = 5;       // LAME's scale from 0 (best, slow) to 9
constexpr size_t kBlockSamples = 16384;
// LAME's rule for the output of one call, which also covers the flush.
constexpr size_t kBlockBytes = kBlockSamples * 5 / 4 + 7200;

struct CloseEncoder {
  void operator()(lame_t encoder) const { lame_close(encoder); }
};
using Encoder = std::unique_ptr<lame_global_flags, CloseEncoder>;

Encoder openEncoder(int sampleRateHz) {
  Encoder encoder(lame_init());
  if (!encoder) throw std::runtime_error("the MP3 encoder cannot be started");
  lame_set_in_samplerate(encoder.get(), sampleRateHz);
  lame_set_out_samplerate(encoder.get(), sampleRateHz);
  lame_set_num_channels(encoder.get(), 1);
  lame_set_mode(encoder.get(), MONO);
  lame_set_brate(encoder.get(), kBitRateKbit);
  lame_set_quality(encoder.get(), kQuality);
  lame_set_bWriteVbrTag(encoder.get(), 0);
  if (lame_init_params(encoder.get()) < 0) throw std::runtime_error("the MP3 encoder refuses its settings");
  return encoder;
}

}  // namespace

std::string wavHeader(uint32_t dataBytes, uint32_t sampleRateHz) {
  return "RIFF" + littleEndian(kRiffBytesBeforeData + dataBytes, 4) +  //
         "WAVE" +                                                      //
         "fmt " + littleEndian(kFormatChunkBytes, 4) +                 //
         littleEndian(kWaveFormatPcm, 2) +                             //
         littleEndian(kChannels, 2) +                                  //
         littleEndian(sampleRateHz, 4) +                               //
         littleEndian(sampleRateHz * kBytesPerFrame, 4) +              //
         littleEndian(kBytesPerFrame, 2) +                             //
         littleEndian(kBitsPerSample, 2) +                             //
         "data" + littleEndian(dataBytes, 4);
}

SpoolFile encodeMp3(const SpoolFile& samples, int sampleRateHz) {
  const Encoder encoder = openEncoder(sampleRateHz);
  SpoolFile encoded;
  std::vector<short> block(kBlockSamples);
  std::vector<unsigned char> bytes(kBlockBytes);
  const auto keep = [&](int byteCount) {
    if (byteCount < 0) throw std::runtime_error("the MP3 encoder failed");
    encoded.append({reinterpret_cast<const char*>(bytes.data()), static_cast<size_t>(byteCount)});
  };

  uint64_t offset = 0;
  for (;;) {
    const std::span<char> room(reinterpret_cast<char*>(block.data()), block.size() * sizeof(short));
    const size_t byteCount = samples.readAt(offset, room);
    if (byteCount < sizeof(short)) break;
    offset += byteCount;
    keep(lame_encode_buffer(encoder.get(), block.data(), nullptr, static_cast<int>(byteCount / sizeof(short)),
                            bytes.data(), static_cast<int>(bytes.size())));
  }
  keep(lame_encode_flush(encoder.get(), bytes.data(), static_cast<int>(bytes.size())));
  return encoded;
}

}  // namespace speech::service
