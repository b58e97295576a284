#pragma once

#include "framework/framework.h"

/// The module's application object. The cloud engine needs sockets, so they are started with the module.
class CspeechApp : public CWinApp {
 public:
  /// FALSE, after a message to the user, refuses the load.
  BOOL InitInstance() override;
};
