#pragma once

// What a product asks the engine library while it is made.

#include <speech/product.h>

namespace speech {

/// Looks an engine up by its two keys. 0 when the library does not know it.
std::uint32_t findEngine(const CStringW& key1, const CStringW& key2);

/// Asks an engine for the bounds and defaults of every setting and stores them.
void fillOptionsFromEngine(TextToSpeech_Options& options, std::uint32_t engine);

/// The settings of a cloud voice, whose service has no bounds to ask for.
void fillOptionsOfCloudVoice(TextToSpeech_Options& options);

}  // namespace speech
