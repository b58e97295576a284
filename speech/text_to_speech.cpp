#include <speech/text_to_speech.h>

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "engines/cloud/skyvo.h"
#include "engines/engine_kind.h"
#include "engines/guarded.h"
#include "engines/host_notices.h"
#include "engines/local/orvane_lxapi.h"
#include "speech/facade.h"

using speech::guarded;

namespace {

/// What the facade keeps between calls. All of it belongs to the host's one thread; what engines share with
/// their own threads is theirs.
struct {
  /// The one live engine; owned.
  ITextToSpeech* instance = nullptr;
  /// How many engines there have been.
  std::uint32_t instanceCount = 0;
  /// The product of the last successful getInstance; not owned.
  LXAPIProduct* product = nullptr;
  /// The installed voices; owned. While it is null the engine library must not be called.
  LXAPIProductList* products = nullptr;
  /// The distinct language codes, appended to by every getISOCodeList.
  CStringArray languageCodes;
} state;

/// The engine that serves a product.
ITextToSpeech* makeEngine(LXAPIProduct* product) {
  if (speech::isCloudVoice(product->getEngineType())) return new speech::Skyvo(product);
  return new speech::OrvaneLXAPI(product);
}

}  // namespace

std::uint32_t speech::currentInstanceNumber() { return state.instance != nullptr ? state.instanceCount : 0; }

std::vector<CStringW> speech::distinctLanguages(LXAPIProductList& voices) {
  std::vector<CStringW> codes;
  for (POSITION at = voices.GetHeadPosition(); at != nullptr;) {
    const CStringW code = voices.GetNext(at)->getLanguageCode();
    const auto isSame = [&code](const CStringW& known) { return known.CompareNoCase(code) == 0; };
    if (std::ranges::none_of(codes, isSame)) codes.push_back(code);
  }
  return codes;
}

ITextToSpeech::ITextToSpeech() = default;
ITextToSpeech::ITextToSpeech(const ITextToSpeech&) = default;
ITextToSpeech& ITextToSpeech::operator=(const ITextToSpeech&) = default;
ITextToSpeech::~ITextToSpeech() = default;

ITextToSpeech* ITextToSpeech::getInstance(HWND window, UINT message, LXAPIProduct* product) {
  if (product == nullptr) return nullptr;
  return guarded<ITextToSpeech*>(nullptr, [&]() -> ITextToSpeech* {
    if (state.instance != nullptr) {
      state.instance->unloadUserDict(0);
      state.instance->unloadEngine();
      delete std::exchange(state.instance, nullptr);
    }
    ITextToSpeech* const engine = makeEngine(product);
    // Kept: an engine that fails to initialise stays the current one; the next call disposes of it.
    state.instance = engine;
    ++state.instanceCount;
    if (!engine->initialize()) return nullptr;
    speech::g_hostWindow.store(window, std::memory_order_relaxed);
    speech::g_noticeMessage.store(message, std::memory_order_relaxed);
    state.product = product;
    return engine;
  });
}

void ITextToSpeech::releaseInstance() {
  guarded([] {
    if (state.instance != nullptr) {
      state.instance->stop();
      delete std::exchange(state.instance, nullptr);
    }
    delete std::exchange(state.products, nullptr);
  });
}

bool ITextToSpeech::reloadEngine() {
  ITextToSpeech* const engine = state.instance;
  return engine != nullptr && engine->unloadEngine() && engine->loadEngine();
}

void ITextToSpeech::setEventHandle(HWND window) {
  speech::g_hostWindow.store(window, std::memory_order_relaxed);
}

LXAPIProduct* ITextToSpeech::getCurrentProduct() { return state.product; }

LXAPIProductList* ITextToSpeech::getLXAPIProductList() {
  guarded([] {
    if (state.products == nullptr) state.products = new LXAPIProductList;
  });
  return state.products;
}

CStringArray* ITextToSpeech::getISOCodeList() {
  guarded([] {
    LXAPIProductList* const products = getLXAPIProductList();
    if (products == nullptr) return;
    // Kept: the module's list is not emptied first, so every call appends the codes once more.
    for (const CStringW& code : speech::distinctLanguages(*products)) state.languageCodes.Add(code);
  });
  return &state.languageCodes;
}

const wchar_t* ITextToSpeech::getISOListAt(int index) { return state.languageCodes.GetAt(index); }

int ITextToSpeech::getISOListCount() {
  if (state.languageCodes.IsEmpty()) getISOCodeList();
  return static_cast<int>(state.languageCodes.GetSize());
}
