#pragma once

#include <cstdint>

#include "lxapi/lxapi.h"

namespace speech {

/// The flags that every text goes to the engine library with.
constexpr std::int32_t speakFlags(bool isSsml) {
  return isSsml ? LX_SPEAK_ASYNC | LX_SPEAK_SSML : std::int32_t{LX_SPEAK_ASYNC};
}

}  // namespace speech
