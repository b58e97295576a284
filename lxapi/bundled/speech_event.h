#pragma once

#include <cstdint>
#include <string>

#include "lxapi/lxapi.h"

namespace lxapi {

/// An event that is due once `frame` samples of the speech have been heard.
struct SpeechEvent {
  uint64_t frame = 0;
  LxEventNumber number = LX_EVENT_END;
  uint32_t offset = 0;  ///< In the caller's text, in UTF-16 units.
  uint32_t length = 0;
  std::string name;  ///< Of a bookmark.
};

}  // namespace lxapi
