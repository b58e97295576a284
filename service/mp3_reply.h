// MP3 replies, through LAME.
#pragma once

#include "service/spool_file.h"

namespace speech::service {

// Encodes 16-bit mono samples at the rate: 64 kbit/s, constant, no tag frame in front. Throws
// std::runtime_error when the encoder refuses, std::system_error when the file cannot be written.
SpoolFile encodeMp3(const SpoolFile& samples, int sampleRateHz);

}  // namespace speech::service
