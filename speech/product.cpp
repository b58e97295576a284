#include <speech/product.h>

#include <windows.h>

#include <span>
#include <utility>

#include <speech/formats.h>
#include "engines/engine_kind.h"
#include "engines/exporting/formats.h"
#include "engines/guarded.h"
#include "lxapi/lxapi.h"
#include "speech/engine_info.h"
#include "win32/text.h"

using speech::guarded;

namespace {

using Options = TextToSpeech_Options;

// -- What the engine library is asked

std::uint32_t findEngine(const CStringW& key1, const CStringW& key2) {
  return LXAPI_GetEngine(speech::toThreadCodePage(speech::textOrEmpty(key1)).c_str(),
                         speech::toThreadCodePage(speech::textOrEmpty(key2)).c_str());
}

/// What an engine says about itself; false when it says nothing.
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

int ask(std::uint32_t engine, std::int32_t information) {
  constexpr int kWithoutAnswer = 100;
  std::int32_t answer = -1;
  LXAPI_CallEngineInternal(engine, "LX_GetTTSInfo", &answer, nullptr, nullptr, 1,
                           static_cast<std::intptr_t>(information));
  // Kept: a bound that the engine does not know becomes 100 like a default.
  return answer < 0 ? kWithoutAnswer : answer;
}

// -- Bounds and defaults

/// Where the record keeps a setting, and the information numbers of its bounds and default.
struct Setting {
  void (Options::*setRange)(int minimum, int maximum);
  void (Options::*setDefault)(int value);
  std::int32_t minimum;
  std::int32_t maximum;
  std::int32_t standard;
};

/// In the order in which an engine is asked.
constexpr Setting kSettings[] = {
    {&Options::setSpeedRange, &Options::setDefSpeed,  //
     LX_INFO_SPEED_MINIMUM, LX_INFO_SPEED_MAXIMUM, LX_INFO_SPEED_DEFAULT},
    {&Options::setPitchRange, &Options::setDefPitch,  //
     LX_INFO_PITCH_MINIMUM, LX_INFO_PITCH_MAXIMUM, LX_INFO_PITCH_DEFAULT},
    {&Options::setVolumeRange, &Options::setDefVolume,  //
     LX_INFO_VOLUME_MINIMUM, LX_INFO_VOLUME_MAXIMUM, LX_INFO_VOLUME_DEFAULT},
    {&Options::setPauseRange, &Options::setDefPause,  //
     LX_INFO_PAUSE_MINIMUM, LX_INFO_PAUSE_MAXIMUM, LX_INFO_PAUSE_DEFAULT},
    {&Options::setCommaPauseRange, &Options::setDefCommaPause,  //
     LX_INFO_COMMA_PAUSE_MINIMUM, LX_INFO_COMMA_PAUSE_MAXIMUM, LX_INFO_COMMA_PAUSE_DEFAULT},
};

void fillFromEngine(Options& options, std::uint32_t engine) {
  for (const Setting& setting : kSettings) {
    const int minimum = ask(engine, setting.minimum);
    const int maximum = ask(engine, setting.maximum);
    (options.*setting.setRange)(minimum, maximum);
    (options.*setting.setDefault)(ask(engine, setting.standard));
  }
}

/// A cloud service has no bounds to ask for.
void fillForCloudVoice(Options& options) {
  for (const Setting& setting : kSettings) {
    (options.*setting.setRange)(0, 5000);
    (options.*setting.setDefault)(100);
  }
}

// -- Paths
//
// An engine's own files lie in its folder F, the user's in D = "\Narravo\UserDict" under the documents
// folder. P is the language code's letters and digits: a dictionary serves every voice of its language.
//
//   engine type      editor                 path 2                                       path 3
//   nv (any case)    F\UserDicNV.exe        F\data-common\userdict\userdict_P.csv        D\userdict_P.csv
//   any other        F\bin\UserDicP.exe     D\userdict_P.lex                             D\userdict_P.csv
//
// An engine of type nv reads word lists only and shares one between all users; the others read lexicons too.

struct DictionaryPaths {
  CStringW editor;
  CStringW path2;
  CStringW path3;
};

/// Letters and digits only, so that a language code can never lead out of a folder: "en-US" gives "ENUS".
CStringW perEnginePart(const CStringW& languageCode) {
  CStringW part;
  for (int i = 0; i < languageCode.GetLength(); ++i) {
    const wchar_t at = languageCode.GetAt(i);
    if (at >= L'a' && at <= L'z') {
      part += static_cast<wchar_t>(at - L'a' + L'A');
    } else if ((at >= L'A' && at <= L'Z') || (at >= L'0' && at <= L'9')) {
      part += at;
    }
  }
  return part;
}

/// Empty while the folder is unknown.
CStringW inFolder(const CStringW& folder, const CStringW& rest) {
  return folder.IsEmpty() ? CStringW() : folder + rest;
}

/// Creates D where it is missing.
DictionaryPaths dictionaryPaths(const CStringW& engineType, const CStringW& languageCode,
                                const CStringW& engineFolder, const CStringW& documentsFolder) {
  const CStringW userFolder = inFolder(documentsFolder, L"\\Narravo\\UserDict");
  if (!userFolder.IsEmpty()) CreateDirectoryW(userFolder, nullptr);

  const CStringW part = perEnginePart(languageCode);
  const CStringW file = CStringW(L"\\userdict_") + part;
  const CStringW wordList = inFolder(userFolder, file + L".csv");
  if (speech::isNvEngine(engineType)) {
    return {inFolder(engineFolder, L"\\UserDicNV.exe"),
            inFolder(engineFolder, L"\\data-common\\userdict" + file + L".csv"), wordList};
  }
  return {inFolder(engineFolder, L"\\bin\\UserDic" + part + L".exe"), inFolder(userFolder, file + L".lex"),
          wordList};
}

// -- Texts

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

/// What `make` returns; empty when memory runs out.
template <class Make>
CStringW guardedText(Make make) {
  return guarded(CStringW(), make);
}

CStringW copyOf(const CStringW& text) {
  return guardedText([&] { return text; });
}

CStringW stored(CStringW& field, CStringW value) {
  field = std::move(value);
  return copyOf(field);
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

  engineRef_ = findEngine(engineKey1_, engineKey2_);

  const bool loaded = speech::answersOnlyWhileLoaded(engineType_) &&
                      LXAPI_SetEngineHandle(synthHandle_, engineRef_) == LX_OK &&
                      LXAPI_LoadEngine(engineRef_) == LX_OK;
  if (speech::isCloudVoice(engineType_)) {
    fillForCloudVoice(options_);
  } else {
    fillFromEngine(options_, findEngine(engineKey1_, engineKey2_));
  }
  options_.reset();
  if (loaded) LXAPI_UnloadEngine(engineRef_);

  LXTTSINFO own;
  describe(engineRef_, own);
  DictionaryPaths paths = dictionaryPaths(engineType_, languageCode_, own.folder, info.documentsFolder);
  userDictEditorPath_ = std::move(paths.editor);
  userDictPath2_ = std::move(paths.path2);
  userDictPath3_ = std::move(paths.path3);
}

CStringW LXAPIProduct::setEngineKey1(CStringW value) { return stored(engineKey1_, std::move(value)); }
CStringW LXAPIProduct::getEngineKey1() const { return copyOf(engineKey1_); }
CStringW LXAPIProduct::setEngineKey2(CStringW value) { return stored(engineKey2_, std::move(value)); }
CStringW LXAPIProduct::getEngineKey2() const { return copyOf(engineKey2_); }
int LXAPIProduct::setSampleRateHz(int value) { return sampleRateHz_ = value; }
int LXAPIProduct::getSampleRateHz() const { return sampleRateHz_; }
CStringW LXAPIProduct::setInfoText4(CStringW value) { return stored(infoText4_, std::move(value)); }
CStringW LXAPIProduct::getInfoText4() const { return copyOf(infoText4_); }
CStringW LXAPIProduct::setInfoText3(CStringW value) { return stored(infoText3_, std::move(value)); }
CStringW LXAPIProduct::getInfoText3() const { return copyOf(infoText3_); }
CStringW LXAPIProduct::setGenderCode(CStringW value) { return stored(genderCode_, std::move(value)); }
CStringW LXAPIProduct::getGenderCode() const { return copyOf(genderCode_); }
CStringW LXAPIProduct::setInfoText7(CStringW value) { return stored(infoText7_, std::move(value)); }
CStringW LXAPIProduct::getInfoText7() const { return copyOf(infoText7_); }
int LXAPIProduct::setInfoNumber9(int value) { return infoNumber9_ = value; }
int LXAPIProduct::getInfoNumber9() const { return infoNumber9_; }
CStringW LXAPIProduct::setInfoText5(CStringW value) { return stored(infoText5_, std::move(value)); }
CStringW LXAPIProduct::getInfoText5() const { return copyOf(infoText5_); }
CStringW LXAPIProduct::setLanguageCode(CStringW value) { return stored(languageCode_, std::move(value)); }
CStringW LXAPIProduct::getLanguageCode() const { return copyOf(languageCode_); }
CStringW LXAPIProduct::setEngineType(CStringW value) { return stored(engineType_, std::move(value)); }
CStringW LXAPIProduct::getEngineType() const { return copyOf(engineType_); }
uint32_t LXAPIProduct::setSynthHandle(uint32_t value) { return synthHandle_ = value; }
uint32_t LXAPIProduct::getSynthHandle() const { return synthHandle_; }
uint32_t LXAPIProduct::setEngineRef(uint32_t value) { return engineRef_ = value; }
uint32_t LXAPIProduct::getEngineRef() const { return engineRef_; }
TextToSpeech_Options* LXAPIProduct::getOptions() { return &options_; }
CStringW LXAPIProduct::setUserDictEditorPath(CStringW value) {
  return stored(userDictEditorPath_, std::move(value));
}
CStringW LXAPIProduct::getUserDictEditorPath() const { return copyOf(userDictEditorPath_); }
CStringW LXAPIProduct::setUserDictPath2(CStringW value) { return stored(userDictPath2_, std::move(value)); }
CStringW LXAPIProduct::getUserDictPath2() const { return copyOf(userDictPath2_); }
CStringW LXAPIProduct::setUserDictPath3(CStringW value) { return stored(userDictPath3_, std::move(value)); }
CStringW LXAPIProduct::getUserDictPath3() const { return copyOf(userDictPath3_); }

CStringW LXAPIProduct::getDisplayName() const {
  return guardedText([this]() -> CStringW {
    LXTTSINFO info;
    if (!describe(findEngine(engineKey1_, engineKey2_), info)) return L"Unknown";
    CStringW name;
    name.Format(L"%s (v.%s)", info.name, info.version);
    return name;
  });
}

CStringW LXAPIProduct::getEngineInfo1() const {
  return guardedText([this]() -> CStringW {
    LXTTSINFO info;
    return describe(findEngine(engineKey1_, engineKey2_), info) ? info.text1 : L"";
  });
}

CStringW LXAPIProduct::getEngineInfo2() const {
  return guardedText([this]() -> CStringW {
    LXTTSINFO info;
    return describe(findEngine(engineKey1_, engineKey2_), info) ? info.text2 : L"";
  });
}

CStringW LXAPIProduct::getSampleRateText() const {
  return guardedText([this] { return decimal(sampleRateHz_); });
}

CStringW LXAPIProduct::getGenderText() const {
  if (genderCode_.CompareNoCase(L"F") == 0) return L"FEMALE";
  if (genderCode_.CompareNoCase(L"M") == 0) return L"MALE";
  return L"UNKNOWN";
}

CStringW LXAPIProduct::getInfoNumber9Text() const {
  return guardedText([this] { return decimal(infoNumber9_); });
}

CStringW LXAPIProduct::getKeyLabel() const {
  return guardedText([this] { return engineKey1_ + L"-" + engineKey2_ + L", " + infoText5_; });
}

int LXAPIProduct::getSampleRateIndex() const {
  const int index = speech::sampleRateIndexOf(sampleRateHz_);
  // Kept: every other rate counts as 22050 Hz.
  return index >= 0 ? index : speech::kRate22050Hz;
}
