#pragma once

#include <speech/text_to_speech.h>

namespace speech {

/// The one live engine, or null. An engine that failed to initialise counts until the next call disposes of
/// it.
ITextToSpeech* currentInstance();

}  // namespace speech
