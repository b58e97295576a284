// Makes the compiler lay out the virtual tables of the interface.

#include <speech/text_to_speech.h>

void layOut(ITextToSpeech* engine) { engine->initialize(); }

auto layOutProduct() { return &LXAPIProduct::getSampleRateIndex; }
