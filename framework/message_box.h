#pragma once

/// @file
/// Message boxes of the application framework.

#include <windows.h>

#include "framework/application.h"

/// Shows one of the module's string resources in a modal box with an OK button.
/// @param stringResource  the string's identifier
/// @return which button ended it
inline int AfxMessageBox(UINT stringResource) {
  const HINSTANCE module = AfxGetApp() != nullptr ? AfxGetApp()->m_hInstance : nullptr;
  wchar_t text[512] = L"";
  LoadStringW(module, stringResource, text, ARRAYSIZE(text));
  return MessageBoxW(nullptr, text, nullptr, MB_OK | MB_ICONEXCLAMATION);
}
