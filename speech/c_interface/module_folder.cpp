#include "speech/c_interface/module_folder.h"

namespace speech::c_interface {

HMODULE thisModule() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<LPCWSTR>(&thisModule), &module);
  return module;
}

std::wstring moduleFolder() {
  std::wstring path(MAX_PATH, L'\0');
  DWORD length = GetModuleFileNameW(thisModule(), path.data(), static_cast<DWORD>(path.size()));
  while (length == path.size()) {  // cut off
    path.resize(path.size() * 2);
    length = GetModuleFileNameW(thisModule(), path.data(), static_cast<DWORD>(path.size()));
  }
  path.resize(length);
  return path.substr(0, path.find_last_of(L'\\') + 1);
}

}  // namespace speech::c_interface
