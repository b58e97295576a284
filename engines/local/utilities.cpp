// What the local engine answers as every engine does.

#include "engines/local/orvane_lxapi.h"
#include "engines/shared/engine_utilities.h"
#include "engines/shared/guarded.h"

namespace speech {

void OrvaneLXAPI::reserved8() {}
void OrvaneLXAPI::reserved9() {}
void OrvaneLXAPI::reserved10() {}

void OrvaneLXAPI::setToolFolder(const wchar_t* folder) {
  guarded([&] { toolFolder = folder; });
}

bool OrvaneLXAPI::runUserDictEditor(const wchar_t* dictionary, const wchar_t* extra) {
  return guarded(false, [&] { return runDictionaryEditor(*product, dictionary, extra); });
}

int OrvaneLXAPI::makeWavHeader(const wchar_t* path, int dataSize, int sampleRateHz, int bitsPerSample,
                               int channels) {
  return guarded(-1, [&] {
    return writeWavHeaderFile(path, dataSize, sampleRateHz, bitsPerSample, channels, CodePage::kSystem);
  });
}

int OrvaneLXAPI::getSampleRate(int index) { return sampleRateAt(index); }

CStringW OrvaneLXAPI::escapeXml(const CStringW& text) {
  return guarded(CStringW(), [&] { return escapedXml(text); });
}

int OrvaneLXAPI::convertWavRate(const wchar_t* input, int rateHz, int bits, int channels,
                                const wchar_t* output) {
  return guarded(-1,
                 [&] { return convertWavFile(input, rateHz, bits, channels, output, CodePage::kSystem); });
}

}  // namespace speech
