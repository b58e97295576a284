#include <speech/product.h>

#include <memory>

#include "lxapi/lxapi.h"
#include "speech/product_paths.h"

namespace {

/// What the engine library's enumeration says at `cursor`; an output that it leaves alone stays empty.
LXAPIProduct::EngineInfo installedEngine(std::uint32_t cursor) {
  const wchar_t *key1 = nullptr, *key2 = nullptr, *text3 = nullptr, *text4 = nullptr, *text5 = nullptr,
                *gender = nullptr, *text7 = nullptr, *language = nullptr, *type = nullptr;
  std::int32_t engineNumber = 0, sampleRateHz = 0, number9 = 0;
  LXAPI_GetEngineInfoFieldEx2(cursor, &key1, &key2, &engineNumber, &text3, &text4, &text5, &gender, &text7,
                              &sampleRateHz, &number9, &language, &type);
  return {key1, key2, text3, text4, text5, gender, text7, sampleRateHz, number9, language, type};
}

}  // namespace

LXAPIProductList::LXAPIProductList() : CTypedPtrList(10) {}

LXAPIProductList::~LXAPIProductList() {
  while (!IsEmpty()) delete RemoveHead();
  LXAPI_Exit();
}

void LXAPIProductList::build() {
  LXAPI_Init();
  speech::createUserFolders();
  for (std::uint32_t cursor = LXAPI_GetFirstInstalledEngine(); cursor != 0;
       cursor = LXAPI_GetNextInstalledEngine(cursor)) {
    auto product = std::make_unique<LXAPIProduct>(installedEngine(cursor));
    AddTail(product.get());
    static_cast<void>(product.release());  // the list's from here on
  }
}
