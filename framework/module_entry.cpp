// Runs the module's application object when the DLL is loaded and unloaded, as the framework does.

#include "framework/module.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID processEnds) {
  CWinApp* const application = AfxGetApp();
  if (application == nullptr) return TRUE;
  switch (reason) {
    case DLL_PROCESS_ATTACH:
      application->m_hInstance = module;
      return application->InitInstance();
    case DLL_PROCESS_DETACH:
      application->ExitInstance();
      // At the process's end the socket library may be gone already.
      if (processEnds == nullptr) AfxSocketTerm();
      return TRUE;
    default:
      return TRUE;
  }
}
