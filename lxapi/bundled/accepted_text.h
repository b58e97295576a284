#pragma once

#include <cstdint>

#include "lxapi/bundled/library.h"
#include "lxapi/bundled/speech_renderer.h"

namespace lxapi {

/// Checks a host's text and copies it, with all that the handle has set, into `request`. The caller holds the
/// handle's mutex.
/// @return LX_OK, LX_ERROR_BAD_ARGUMENT, LX_ERROR_BAD_TEXT or LX_ERROR_NOT_LOADED
int32_t acceptText(const Synthesis& synthesis, const char* utf8, int32_t length, int32_t flags,
                   SpeechRequest& request);

}  // namespace lxapi
