#pragma once

#include <string>

#include <speech/text_to_speech.h>

namespace narravo {

/// Loads a CSV word list into the engine. Throws HostError when it cannot be read or holds a bad entry;
/// nothing is loaded then.
void loadUserDictionary(ITextToSpeech& engine, const std::string& name);

}  // namespace narravo
