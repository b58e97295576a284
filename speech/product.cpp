#include <speech/product.h>

#include <windows.h>

#include <span>
#include <utility>

#include <speech/formats.h>
#include "engines/shared/engine_utilities.h"
#include "lxapi/lxapi.h"
#include "speech/product_engine.h"
#include "speech/product_paths.h"

namespace {

void capitalizeFirst(CStringW& text) {
  if (text.IsEmpty()) return;
  wchar_t first = text.GetAt(0);
  CharUpperBuffW(&first, 1);
  text.SetAt(0, first);
}

CStringW decimal(int number) {
  CStringW text;
  text.Format(L"%d", number);
  return text;
}

/// What the engine library says of an engine; false when it has nothing to say.
bool describe(std::uint32_t engine, LXTTSINFO& info) {
  info = {};
  const bool isKnown = LXAPI_GetTTSInfo(engine, &info) == LX_OK;
  // A foreign engine library may fill a text to its last place.
  for (const std::span<wchar_t> text :
       {std::span<wchar_t>(info.name), std::span<wchar_t>(info.version), std::span<wchar_t>(info.text1),
        std::span<wchar_t>(info.text2), std::span<wchar_t>(info.folder)}) {
    text.back() = L'\0';
  }
  return isKnown;
}

}  // namespace

LXAPIProduct::LXAPIProduct(const EngineInfo& info)
    : engineKey1_(info.engineKey1),
      engineKey2_(info.engineKey2),
      infoText3_(info.infoText3),
      infoText4_(info.infoText4),
      infoText5_(info.infoText5),
      genderCode_(info.genderCode),
      infoText7_(info.infoText7),
      sampleRateHz_(info.sampleRateHz),
      infoNumber9_(info.infoNumber9),
      languageCode_(info.languageCode),
      engineType_(info.engineType) {
  capitalizeFirst(engineKey1_);
  capitalizeFirst(engineKey2_);

  synthHandle_ = LXAPI_CreateHandle();
  LXAPI_SetOutputAudio(synthHandle_, LXAUDIOOUT{1, 16, sampleRateHz_, -1});
  LXAPI_SetAttr(synthHandle_, LX_ATTR_LEXICON, 0);
  LXAPI_SetAttr(synthHandle_, LX_ATTR_RESERVED, 0);

  engineRef_ = speech::findEngine(engineKey1_, engineKey2_);

  // Kept: only the exact lower-case type is loaded for the questions; other engines answer them unloaded.
  const bool loaded = engineType_ == L"nv" && LXAPI_SetEngineHandle(synthHandle_, engineRef_) == LX_OK &&
                      LXAPI_LoadEngine(engineRef_) == LX_OK;
  if (engineType_.CompareNoCase(L"skyvo") == 0) {
    speech::fillOptionsOfCloudVoice(options_);
  } else {
    speech::fillOptionsFromEngine(options_, speech::findEngine(engineKey1_, engineKey2_));
  }
  options_.reset();
  if (loaded) LXAPI_UnloadEngine(engineRef_);

  LXTTSINFO own;
  describe(engineRef_, own);
  const speech::ProductPaths paths = speech::productPaths(own.folder, engineType_, languageCode_);
  userDictEditorPath_ = paths.editor;
  userDictPath2_ = paths.dictionary2;
  userDictPath3_ = paths.dictionary3;
}

CStringW LXAPIProduct::setEngineKey1(CStringW value) { return engineKey1_ = std::move(value); }
CStringW LXAPIProduct::getEngineKey1() const { return engineKey1_; }
CStringW LXAPIProduct::setEngineKey2(CStringW value) { return engineKey2_ = std::move(value); }
CStringW LXAPIProduct::getEngineKey2() const { return engineKey2_; }
int LXAPIProduct::setSampleRateHz(int value) { return sampleRateHz_ = value; }
int LXAPIProduct::getSampleRateHz() const { return sampleRateHz_; }
CStringW LXAPIProduct::setInfoText4(CStringW value) { return infoText4_ = std::move(value); }
CStringW LXAPIProduct::getInfoText4() const { return infoText4_; }
CStringW LXAPIProduct::setInfoText3(CStringW value) { return infoText3_ = std::move(value); }
CStringW LXAPIProduct::getInfoText3() const { return infoText3_; }
CStringW LXAPIProduct::setGenderCode(CStringW value) { return genderCode_ = std::move(value); }
CStringW LXAPIProduct::getGenderCode() const { return genderCode_; }
CStringW LXAPIProduct::setInfoText7(CStringW value) { return infoText7_ = std::move(value); }
CStringW LXAPIProduct::getInfoText7() const { return infoText7_; }
int LXAPIProduct::setInfoNumber9(int value) { return infoNumber9_ = value; }
int LXAPIProduct::getInfoNumber9() const { return infoNumber9_; }
CStringW LXAPIProduct::setInfoText5(CStringW value) { return infoText5_ = std::move(value); }
CStringW LXAPIProduct::getInfoText5() const { return infoText5_; }
CStringW LXAPIProduct::setLanguageCode(CStringW value) { return languageCode_ = std::move(value); }
CStringW LXAPIProduct::getLanguageCode() const { return languageCode_; }
CStringW LXAPIProduct::setEngineType(CStringW value) { return engineType_ = std::move(value); }
CStringW LXAPIProduct::getEngineType() const { return engineType_; }
uint32_t LXAPIProduct::setSynthHandle(uint32_t value) { return synthHandle_ = value; }
uint32_t LXAPIProduct::getSynthHandle() const { return synthHandle_; }
uint32_t LXAPIProduct::setEngineRef(uint32_t value) { return engineRef_ = value; }
uint32_t LXAPIProduct::getEngineRef() const { return engineRef_; }
TextToSpeech_Options* LXAPIProduct::getOptions() { return &options_; }
CStringW LXAPIProduct::setUserDictEditorPath(CStringW value) {
  return userDictEditorPath_ = std::move(value);
}
CStringW LXAPIProduct::getUserDictEditorPath() const { return userDictEditorPath_; }
CStringW LXAPIProduct::setUserDictPath2(CStringW value) { return userDictPath2_ = std::move(value); }
CStringW LXAPIProduct::getUserDictPath2() const { return userDictPath2_; }
CStringW LXAPIProduct::setUserDictPath3(CStringW value) { return userDictPath3_ = std::move(value); }
CStringW LXAPIProduct::getUserDictPath3() const { return userDictPath3_; }

CStringW LXAPIProduct::getDisplayName() const {
  LXTTSINFO info;
  if (!describe(speech::findEngine(engineKey1_, engineKey2_), info)) return L"Unknown";
  CStringW name;
  name.Format(L"%s (v.%s)", info.name, info.version);
  return name;
}

CStringW LXAPIProduct::getEngineInfo1() const {
  LXTTSINFO info;
  return describe(speech::findEngine(engineKey1_, engineKey2_), info) ? info.text1 : L"";
}

CStringW LXAPIProduct::getEngineInfo2() const {
  LXTTSINFO info;
  return describe(speech::findEngine(engineKey1_, engineKey2_), info) ? info.text2 : L"";
}

CStringW LXAPIProduct::getSampleRateText() const { return decimal(sampleRateHz_); }

CStringW LXAPIProduct::getGenderText() const {
  if (genderCode_.CompareNoCase(L"F") == 0) return L"FEMALE";
  if (genderCode_.CompareNoCase(L"M") == 0) return L"MALE";
  return L"UNKNOWN";
}

CStringW LXAPIProduct::getInfoNumber9Text() const { return decimal(infoNumber9_); }

CStringW LXAPIProduct::getKeyLabel() const { return engineKey1_ + L"-" + engineKey2_ + L", " + infoText5_; }

int LXAPIProduct::getSampleRateIndex() const {
  const int index = speech::sampleRateIndexOf(sampleRateHz_);
  // Kept: every other rate counts as 22050 Hz.
  return index >= 0 ? index : speech::kRate22050Hz;
}
