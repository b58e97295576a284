#pragma once

/// @file
/// The application object of a module.

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

  /// Runs when the module is loaded.
  /// @return false to refuse the load
  virtual BOOL InitInstance() { return TRUE; }
  /// Runs when the module is unloaded.
  /// @return the process's exit code where there is one
  virtual int ExitInstance() { return 0; }

  /// The module that holds the application object and its resources.
  HINSTANCE m_hInstance = nullptr;

  /// @return where the module's application object, or null, is kept
  static CWinApp*& current() {
    static CWinApp* application = nullptr;
    return application;
  }
};

/// @return the module's application object, or null
inline CWinApp* AfxGetApp() { return CWinApp::current(); }
