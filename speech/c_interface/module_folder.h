#pragma once

#include <windows.h>

#include <string>

namespace speech::c_interface {

/// The DLL that holds this code.
HMODULE thisModule();

/// Its folder, ending in a backslash.
std::wstring moduleFolder();

}  // namespace speech::c_interface
