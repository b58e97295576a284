#include "engines/shared/engine_utilities.h"

#include <algorithm>
#include <array>
#include <iterator>

#include <speech/audio.h>
#include "engines/shared/process_runner.h"
#include "win32/text.h"

namespace speech {
namespace {

constexpr std::array kSampleRatesHz = {8000, 16000, 22050, 44100, 48000};

}  // namespace

int sampleRateAt(int index) {
  if (index < 0 || index >= static_cast<int>(kSampleRatesHz.size())) return -1;
  return kSampleRatesHz[static_cast<std::size_t>(index)];
}

int sampleRateIndexOf(int sampleRateHz) {
  const auto found = std::find(kSampleRatesHz.begin(), kSampleRatesHz.end(), sampleRateHz);
  return found == kSampleRatesHz.end() ? -1 : static_cast<int>(found - kSampleRatesHz.begin());
}

CStringW escapedXml(const CStringW& text) {
  CStringW escaped = text;
  escaped.Replace(L"&", L"&amp;");
  escaped.Replace(L"<", L"&lt;");
  escaped.Replace(L">", L"&gt;");
  escaped.Replace(L"'", L"&apos;");
  escaped.Replace(L"\"", L"&quot;");
  return escaped;
}

int writeWavHeaderFile(const wchar_t* path, int dataSize, int sampleRateHz, int bitsPerSample, int channels,
                       CodePage codePage) {
  return WAVHEADER_MAKER(toNarrow(textOrEmpty(path), codePage).c_str(), dataSize, sampleRateHz, bitsPerSample,
                         channels);
}

int convertWavFile(const wchar_t* input, int rateHz, int bits, int channels, const wchar_t* output,
                   CodePage codePage) {
  return RATEAPI_WAV2WAV(toNarrow(textOrEmpty(input), codePage).c_str(), rateHz, bits, channels,
                         toNarrow(textOrEmpty(output), codePage).c_str());
}

bool runDictionaryEditor(const LXAPIProduct& product, const wchar_t* dictionary, const wchar_t* extra) {
  const bool own = textOrEmpty(dictionary).empty();
  CStringW parameters;
  parameters.Format(L"\"%s\"", own ? product.getUserDictPath3().GetString() : dictionary);
  parameters += extra;
  return runProgram(product.getUserDictEditorPath(), parameters);
}

}  // namespace speech
