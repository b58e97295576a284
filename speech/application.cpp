#include "speech/application.h"

#include "framework/sockets.h"
#include "speech/resources.h"

namespace {
CspeechApp theApp;
}  // namespace

BOOL CspeechApp::InitInstance() {
  CWinApp::InitInstance();
  if (!AfxSocketInit()) {
    AfxMessageBox(IDP_SOCKETS_INIT_FAILED);
    return FALSE;
  }
  return TRUE;
}
