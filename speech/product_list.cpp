#include <windows.h>

#include <memory>

#include <speech/product.h>
#include "engines/guarded.h"
#include "lxapi/lxapi.h"
#include "speech/engine_info.h"
#include "win32/paths.h"

using speech::guarded;

namespace {

CStringW userDocuments() {
  const auto folder = speech::documentsFolder();
  return folder ? CStringW(folder->c_str()) : CStringW();
}

/// Folders that exist and failures do not matter.
void createUserFolders(const CStringW& documents) {
  if (documents.IsEmpty()) return;
  CreateDirectoryW(documents + L"\\Narravo", nullptr);
  CreateDirectoryW(documents + L"\\Narravo\\log", nullptr);
}

/// What the engine library's enumeration reports at `cursor`; an output that it leaves alone stays empty.
LXAPIProduct::EngineInfo installedEngine(std::uint32_t cursor, const CStringW& documents) {
  const wchar_t *key1 = nullptr, *key2 = nullptr, *text3 = nullptr, *text4 = nullptr, *text5 = nullptr,
                *gender = nullptr, *text7 = nullptr, *language = nullptr, *type = nullptr;
  std::int32_t engineNumber = 0, sampleRateHz = 0, number9 = 0;
  LXAPI_GetEngineInfoFieldEx2(cursor, &key1, &key2, &engineNumber, &text3, &text4, &text5, &gender, &text7,
                              &sampleRateHz, &number9, &language, &type);
  return {key1, key2, text3, text4, text5, gender, text7, sampleRateHz, number9, language, type, documents};
}

}  // namespace

LXAPIProductList::LXAPIProductList() : CTypedPtrList(10) {
  LXAPI_Init();
  // A list that memory ran out for ends early.
  guarded([this] {
    const CStringW documents = userDocuments();
    createUserFolders(documents);
    for (std::uint32_t cursor = LXAPI_GetFirstInstalledEngine(); cursor != 0;
         cursor = LXAPI_GetNextInstalledEngine(cursor)) {
      auto product = std::make_unique<LXAPIProduct>(installedEngine(cursor, documents));
      AddTail(product.get());
      static_cast<void>(product.release());  // the list's from here on
    }
  });
}

LXAPIProductList::~LXAPIProductList() {
  while (!IsEmpty()) delete RemoveHead();
  LXAPI_Exit();
}
