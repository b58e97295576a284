#pragma once

// Speech into a file: raw samples or a WAV file of 16-bit, A-law or mu-law samples.

#include <cstdint>
#include <filesystem>
#include <stop_token>

#include "lxapi/bundled/speech_renderer.h"

namespace speech::lxapi {

/// True for the file codes (LxFileCode) that are served.
bool isServedFileCode(int32_t fileCode);

/// Renders the request into the file. When it fails, no file is left, and an unserved code touches none.
/// @return LX_OK, LX_ERROR_UNSUPPORTED, LX_ERROR_FILE or LX_ERROR_FAILED
int32_t renderToFile(const SpeechRequest& request, const std::filesystem::path& path, int32_t fileCode,
                     const std::stop_token& stop);

}  // namespace speech::lxapi
