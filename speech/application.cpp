#include "framework/module.h"
#include "speech/resources.h"

namespace {

/// The module's application object. The cloud engine needs sockets, so they are started with the module.
class CspeechApp : public CWinApp {
 public:
  /// FALSE, after a message to the user, refuses the load.
  BOOL InitInstance() override {
    CWinApp::InitInstance();
    if (AfxSocketInit()) return TRUE;
    AfxMessageBox(IDP_SOCKETS_INIT_FAILED);
    return FALSE;
  }
};

CspeechApp theApp;

}  // namespace
