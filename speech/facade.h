#pragma once

#include <cstdint>
#include <vector>

#include <speech/text_to_speech.h>

namespace speech {

/// The live engine's number among all that the process has made, from 1; 0 while there is none. An engine may
/// get the address of one that was deleted, but never its number. One that failed to initialise counts until
/// the next call disposes of it.
std::uint32_t currentInstanceNumber();

/// The language codes of voices, each once, in the order of the voices and as the first one spells it. Codes
/// that differ only in case are one.
std::vector<CStringW> distinctLanguages(LXAPIProductList& voices);

}  // namespace speech
