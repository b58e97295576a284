#pragma once

// The framework's application object and message box, for compilers without MFC.

#include <windows.h>

/// Base of a module's application object: one global object whose InitInstance runs when the module is
/// loaded.
class CWinApp {
 public:
  /// Makes this the module's application object.
  CWinApp() { current() = this; }
  CWinApp(const CWinApp&) = delete;
  CWinApp& operator=(const CWinApp&) = delete;
  virtual ~CWinApp() { current() = nullptr; }

  /// Runs when the module is loaded; FALSE refuses the load.
  virtual BOOL InitInstance() { return TRUE; }
  /// Runs when the module is unloaded.
  virtual int ExitInstance() { return 0; }

  /// The module that holds the application object and its resources.
  HINSTANCE m_hInstance = nullptr;

  /// Where the module's application object, or null, is kept.
  static CWinApp*& current() {
    static CWinApp* application = nullptr;
    return application;
  }
};

/// The module's application object, or null.
inline CWinApp* AfxGetApp() { return CWinApp::current(); }

/// Shows one of the module's string resources in a modal box with an OK button; returns the button.
inline int AfxMessageBox(UINT stringResource) {
  const HINSTANCE module = AfxGetApp() != nullptr ? AfxGetApp()->m_hInstance : nullptr;
  wchar_t text[512] = L"";
  LoadStringW(module, stringResource, text, ARRAYSIZE(text));
  return MessageBoxW(nullptr, text, nullptr, MB_OK | MB_ICONEXCLAMATION);
}
