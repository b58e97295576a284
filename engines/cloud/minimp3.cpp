// The one place that holds the MP3 decoder's code.

#include <cstdint>

#define MINIMP3_IMPLEMENTATION
#include <minimp3.h>
