#include "service/wav_reply.h"

namespace speech::service {
namespace {

constexpr uint32_t kFormatPcm = 1;
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

}  // namespace

std::string wavHeader(uint32_t dataBytes, uint32_t sampleRateHz) {
  return "RIFF" + littleEndian(kRiffBytesBeforeData + dataBytes, 4) +  //
         "WAVE" +                                                      //
         "fmt " + littleEndian(kFormatChunkBytes, 4) +                 //
         littleEndian(kFormatPcm, 2) +                                 //
         littleEndian(kChannels, 2) +                                  //
         littleEndian(sampleRateHz, 4) +                               //
         littleEndian(sampleRateHz * kBytesPerFrame, 4) +              //
         littleEndian(kBytesPerFrame, 2) +                             //
         littleEndian(kBitsPerSample, 2) +                             //
         "data" + littleEndian(dataBytes, 4);
}

}  // namespace speech::service
