// Speech into audio files.

#include "engines/local/orvane_lxapi.h"

namespace speech {

int OrvaneLXAPI::textToFile(const wchar_t*, const wchar_t*, int, bool, int, bool) { return 0; }

int OrvaneLXAPI::exportAudio(const wchar_t*, CStringW&, int, int, int) { return -1; }

}  // namespace speech
