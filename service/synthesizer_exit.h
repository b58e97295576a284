#pragma once

// What narravo-synthesizer's exit codes mean: all that it tells the service beside the samples.

#include <cstdint>

namespace speech::service {

constexpr int kSampleRateHz = 22050;  // eSpeak NG's own

enum class SynthesizerExit : int {
  kSpoken = 0,
  kBadArguments = 64,
  kNoEngine = 65,      // eSpeak NG's data was not found or is of another version
  kNoVoice = 66,       // the voice could not be loaded
  kOutputFailed = 67,  // the samples could not be written
  kTooLong = 68,       // more samples than allowed
  kEngineFailed = 69,  // eSpeak NG answered with an error
};

}  // namespace speech::service
