// Voices and their languages.

#include "speech/c_interface/catalogue.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include <speech/text_to_speech.h>
#include "speech/c_interface/session.h"
#include "speech/c_interface/text.h"

namespace speech::c_interface {
namespace {

LXAPIProductList& products() {
  LXAPIProductList* const list = ITextToSpeech::getLXAPIProductList();
  if (list == nullptr) throw Failure(SPEECH_ERROR_MEMORY);
  return *list;
}

using TextGetter = CStringW (LXAPIProduct::*)() const;

struct VoiceText {
  std::int32_t which;
  TextGetter get;
};

constexpr VoiceText kVoiceTexts[] = {
    {SPEECH_VOICE_NAME, &LXAPIProduct::getDisplayName},
    {SPEECH_VOICE_LABEL, &LXAPIProduct::getKeyLabel},
    {SPEECH_VOICE_KEY1, &LXAPIProduct::getEngineKey1},
    {SPEECH_VOICE_KEY2, &LXAPIProduct::getEngineKey2},
    {SPEECH_VOICE_LANGUAGE, &LXAPIProduct::getLanguageCode},
    {SPEECH_VOICE_GENDER, &LXAPIProduct::getGenderText},
    {SPEECH_VOICE_ENGINE_TYPE, &LXAPIProduct::getEngineType},
    {SPEECH_VOICE_INFO3, &LXAPIProduct::getInfoText3},
    {SPEECH_VOICE_INFO4, &LXAPIProduct::getInfoText4},
    {SPEECH_VOICE_INFO5, &LXAPIProduct::getInfoText5},
    {SPEECH_VOICE_INFO7, &LXAPIProduct::getInfoText7},
    {SPEECH_VOICE_ENGINE_INFO1, &LXAPIProduct::getEngineInfo1},
    {SPEECH_VOICE_ENGINE_INFO2, &LXAPIProduct::getEngineInfo2},
    {SPEECH_VOICE_DICTIONARY_EDITOR, &LXAPIProduct::getUserDictEditorPath},
    {SPEECH_VOICE_DICTIONARY_PATH2, &LXAPIProduct::getUserDictPath2},
    {SPEECH_VOICE_DICTIONARY_PATH3, &LXAPIProduct::getUserDictPath3},
    {SPEECH_VOICE_GENDER_CODE, &LXAPIProduct::getGenderCode},
};

std::wstring_view view(const CStringW& text) {
  return {text.GetString(), static_cast<std::size_t>(text.GetLength())};
}

template <class Char>
std::int32_t handOutVoiceText(std::int32_t voice, std::int32_t which, Char* buffer, std::uint32_t capacity,
                              std::uint32_t* length) {
  return answered([&] {
    const auto* const row = std::ranges::find(kVoiceTexts, which, &VoiceText::which);
    if (row == std::end(kVoiceTexts)) throw Failure(SPEECH_ERROR_ARGUMENT);
    handOut(view((voiceAt(voice).*row->get)()), buffer, capacity, length);
  });
}

template <class Char>
std::int32_t handOutLanguage(std::int32_t index, Char* buffer, std::uint32_t capacity,
                             std::uint32_t* length) {
  return answered([&] {
    const std::vector<CStringW> codes = languages();
    if (index < 0 || static_cast<std::size_t>(index) >= codes.size()) throw Failure(SPEECH_ERROR_VOICE);
    handOut(view(codes[static_cast<std::size_t>(index)]), buffer, capacity, length);
  });
}

}  // namespace

std::int32_t voiceCount() { return static_cast<std::int32_t>(products().GetCount()); }

LXAPIProduct& voiceAt(std::int32_t index) {
  LXAPIProductList& list = products();
  const POSITION at = list.FindIndex(index);
  if (at == nullptr) throw Failure(SPEECH_ERROR_VOICE);
  return *list.GetAt(at);
}

std::vector<CStringW> languages() {
  std::vector<CStringW> codes;
  LXAPIProductList& list = products();
  for (POSITION at = list.GetHeadPosition(); at != nullptr;) {
    const CStringW code = list.GetNext(at)->getLanguageCode();
    const auto isSame = [&code](const CStringW& known) { return known.CompareNoCase(code) == 0; };
    if (std::ranges::none_of(codes, isSame)) codes.push_back(code);
  }
  return codes;
}

}  // namespace speech::c_interface

using namespace speech::c_interface;

int32_t SPEECH_CALL speech_voice_count(int32_t* count) {
  return answered([&] { *required(count) = voiceCount(); });
}

int32_t SPEECH_CALL speech_voice_text(int32_t voice, int32_t which, char* buffer, uint32_t capacity,
                                      uint32_t* length) {
  return handOutVoiceText(voice, which, buffer, capacity, length);
}

int32_t SPEECH_CALL speech_voice_text_w(int32_t voice, int32_t which, wchar_t* buffer, uint32_t capacity,
                                        uint32_t* length) {
  return handOutVoiceText(voice, which, buffer, capacity, length);
}

int32_t SPEECH_CALL speech_voice_number(int32_t voice, int32_t which, int32_t* value) {
  return answered([&] {
    required(value);
    const LXAPIProduct& product = voiceAt(voice);
    switch (which) {
      case SPEECH_VOICE_SAMPLE_RATE:
        *value = product.getSampleRateHz();
        break;
      case SPEECH_VOICE_INFO9:
        *value = product.getInfoNumber9();
        break;
      case SPEECH_VOICE_IS_CLOUD:
        *value = product.getEngineType().CompareNoCase(L"skyvo") == 0 ? 1 : 0;
        break;
      case SPEECH_VOICE_SYNTHESIS_HANDLE:
        *value = static_cast<int32_t>(product.getSynthHandle());
        break;
      case SPEECH_VOICE_ENGINE_HANDLE:
        *value = static_cast<int32_t>(product.getEngineRef());
        break;
      default:
        throw Failure(SPEECH_ERROR_ARGUMENT);
    }
  });
}

int32_t SPEECH_CALL speech_language_count(int32_t* count) {
  return answered([&] { *required(count) = static_cast<int32_t>(languages().size()); });
}

int32_t SPEECH_CALL speech_language(int32_t index, char* buffer, uint32_t capacity, uint32_t* length) {
  return handOutLanguage(index, buffer, capacity, length);
}

int32_t SPEECH_CALL speech_language_w(int32_t index, wchar_t* buffer, uint32_t capacity, uint32_t* length) {
  return handOutLanguage(index, buffer, capacity, length);
}
