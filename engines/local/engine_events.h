#pragma once

#include <cstdint>

#include "lxapi/lxapi.h"

namespace speech {

/// The events that the local engine asks for: bookmarks, the end of speech, words.
constexpr std::int32_t kEventMask = LX_EVENT_BOOKMARK | LX_EVENT_END | LX_EVENT_WORD;

/// Turns the engine's events into notices. Runs on a thread of the engine library: it reads module-wide
/// values and posts, nothing else.
void LXAPI_CALL onEngineEvent(std::uint32_t handle, std::int32_t event, const LXEVENT* record);

}  // namespace speech
