#include "audio/file_io.h"

#include <cstdlib>

void* ExternMalloc(std::size_t size) { return std::malloc(size); }
