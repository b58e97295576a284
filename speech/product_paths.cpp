#include "speech/product_paths.h"

#include <windows.h>

#include <optional>
#include <string>

#include "win32/paths.h"

namespace speech {
namespace {

constexpr wchar_t kProgramFolder[] = L"\\Narravo";

/// Letters and digits only, so that a language code can never lead out of a folder.
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

/// Asked once: the shell takes milliseconds, and every product needs it.
const std::optional<std::wstring>& userDocuments() {
  static const std::optional<std::wstring> folder = documentsFolder();
  return folder;
}

/// The user's own dictionary folder, created when missing; empty when the documents folder is unknown.
CStringW userDictionaryFolder() {
  const auto& documents = userDocuments();
  if (!documents) return {};
  CStringW folder = CStringW(documents->c_str()) + kProgramFolder + L"\\UserDict";
  CreateDirectoryW(folder, nullptr);
  return folder;
}

CStringW inFolder(const CStringW& folder, const CStringW& rest) {
  return folder.IsEmpty() ? CStringW() : folder + rest;
}

}  // namespace

ProductPaths productPaths(const CStringW& engineFolder, const CStringW& engineType,
                          const CStringW& languageCode) {
  const CStringW part = perEnginePart(languageCode);
  const CStringW file = CStringW(L"\\userdict_") + part;
  const CStringW userFolder = userDictionaryFolder();
  ProductPaths paths;
  if (engineType.CompareNoCase(L"nv") == 0) {
    paths.editor = inFolder(engineFolder, L"\\UserDicNV.exe");
    paths.dictionary2 = inFolder(engineFolder, CStringW(L"\\data-common\\userdict") + file + L".csv");
  } else {
    paths.editor = inFolder(engineFolder, CStringW(L"\\bin\\UserDic") + part + L".exe");
    paths.dictionary2 = inFolder(userFolder, file + L".lex");
  }
  paths.dictionary3 = inFolder(userFolder, file + L".csv");
  return paths;
}

void createUserFolders() {
  const auto& documents = userDocuments();
  if (!documents) return;
  const std::wstring folder = *documents + kProgramFolder;
  CreateDirectoryW(folder.c_str(), nullptr);
  CreateDirectoryW((folder + L"\\log").c_str(), nullptr);
}

}  // namespace speech
