#include <speech/text_to_speech.h>

#include <memory>
#include <utility>

#include "engines/cloud/skyvo.h"
#include "engines/local/orvane_lxapi.h"
#include "engines/shared/engine_kind.h"
#include "engines/shared/guarded.h"
#include "engines/shared/module_state.h"

using speech::guarded;

namespace {

/// The engine that serves a product.
ITextToSpeech* makeEngine(LXAPIProduct* product) {
  if (speech::isCloudVoice(product->getEngineType())) return new speech::Skyvo(product);
  return new speech::OrvaneLXAPI(product);
}

bool contains(const CStringArray& texts, const CStringW& wanted) {
  for (std::intptr_t i = 0; i < texts.GetSize(); ++i) {
    if (texts.GetAt(i).CompareNoCase(wanted) == 0) return true;
  }
  return false;
}

}  // namespace

ITextToSpeech::ITextToSpeech() = default;
ITextToSpeech::ITextToSpeech(const ITextToSpeech&) = default;
ITextToSpeech& ITextToSpeech::operator=(const ITextToSpeech&) = default;
ITextToSpeech::~ITextToSpeech() = default;

ITextToSpeech* ITextToSpeech::getInstance(HWND window, UINT message, LXAPIProduct* product) {
  if (product == nullptr) return nullptr;
  return guarded<ITextToSpeech*>(nullptr, [&]() -> ITextToSpeech* {
    if (speech::g_currentInstance != nullptr) {
      speech::g_currentInstance->unloadUserDict(0);
      speech::g_currentInstance->unloadEngine();
      delete std::exchange(speech::g_currentInstance, nullptr);
    }
    ITextToSpeech* const engine = makeEngine(product);
    // Kept: an engine that fails to initialise stays the current one; the next call disposes of it.
    speech::g_currentInstance = engine;
    if (!engine->initialize()) return nullptr;
    speech::g_hostWindow.store(window, std::memory_order_relaxed);
    speech::g_noticeMessage.store(message, std::memory_order_relaxed);
    speech::g_currentProduct = product;
    return engine;
  });
}

void ITextToSpeech::releaseInstance() {
  guarded([] {
    if (speech::g_currentInstance != nullptr) {
      speech::g_currentInstance->stop();
      delete std::exchange(speech::g_currentInstance, nullptr);
    }
    delete std::exchange(speech::g_productList, nullptr);
  });
}

bool ITextToSpeech::reloadEngine() {
  ITextToSpeech* const engine = speech::g_currentInstance;
  return engine != nullptr && engine->unloadEngine() && engine->loadEngine();
}

void ITextToSpeech::setEventHandle(HWND window) {
  speech::g_hostWindow.store(window, std::memory_order_relaxed);
}

LXAPIProduct* ITextToSpeech::getCurrentProduct() { return speech::g_currentProduct; }

LXAPIProductList* ITextToSpeech::getLXAPIProductList() {
  guarded([] {
    if (speech::g_productList == nullptr) speech::g_productList = new LXAPIProductList;
  });
  return speech::g_productList;
}

CStringArray* ITextToSpeech::getISOCodeList() {
  guarded([] {
    LXAPIProductList* const products = getLXAPIProductList();
    if (products == nullptr) return;
    CStringArray seen;
    for (POSITION at = products->GetHeadPosition(); at != nullptr;) {
      const CStringW code = products->GetNext(at)->getLanguageCode();
      if (contains(seen, code)) continue;
      // Kept: the module's list is not emptied first, so every call appends the codes once more.
      speech::g_languageCodes.Add(code);
      seen.Add(code);
    }
  });
  return &speech::g_languageCodes;
}

const wchar_t* ITextToSpeech::getISOListAt(int index) { return speech::g_languageCodes.GetAt(index); }

int ITextToSpeech::getISOListCount() {
  if (speech::g_languageCodes.IsEmpty()) getISOCodeList();
  return static_cast<int>(speech::g_languageCodes.GetSize());
}
