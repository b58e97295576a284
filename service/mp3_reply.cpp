#include "service/mp3_reply.h"

#include <lame/lame.h>

#include <memory>
#include <span>
#include <stdexcept>
#include <vector>

namespace speech::service {
namespace {

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
