#pragma once

#include <windows.h>

/// Base of a module's application object: one global object whose InitInstance runs when the module is
/// loaded.
class CWinApp {
 public:
  CWinApp() { current() = this; }
  CWinApp(const CWinApp&) = delete;
  CWinApp& operator=(const CWinApp&) = delete;
  virtual ~CWinApp() { current() = nullptr; }

  /// Runs when the module is loaded; false refuses the load.
  virtual BOOL InitInstance() { return TRUE; }
  /// Runs when the module is unloaded; its result is the process's exit code where there is one.
  virtual int ExitInstance() { return 0; }

  /// The module that holds the application object and its resources.
  HINSTANCE m_hInstance = nullptr;

  /// The module's application object, or null.
  static CWinApp*& current() {
    static CWinApp* application = nullptr;
    return application;
  }
};

inline CWinApp* AfxGetApp() { return CWinApp::current(); }
