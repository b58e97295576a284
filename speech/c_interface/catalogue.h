#pragma once

#include <cstdint>
#include <vector>

#include <speech/product.h>

namespace speech::c_interface {

std::int32_t voiceCount();

/// The voice of an index. Fails when there is none.
LXAPIProduct& voiceAt(std::int32_t index);

/// The different language codes, as the first voice that has each spells it.
std::vector<CStringW> languages();

}  // namespace speech::c_interface
