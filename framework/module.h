#pragma once

// What the module itself needs of the framework and hosts do not: application object and sockets.

#ifdef _MSC_VER
#include <afxwin.h>

#include <afxsock.h>
#else
#include <winsock2.h>  // wants to come before windows.h

#include <windows.h>

#include <utility>

#include "framework/application.h"

/// Whether the module has started Windows Sockets.
inline bool afxSocketsStarted = false;

/// Starts Windows Sockets for the module; AfxSocketTerm ends it. FALSE when the system has none to offer.
inline BOOL AfxSocketInit() {
  WSADATA data;
  afxSocketsStarted = WSAStartup(MAKEWORD(2, 2), &data) == 0;
  return afxSocketsStarted;
}

/// Ends what AfxSocketInit started, if it did.
inline void AfxSocketTerm() {
  if (std::exchange(afxSocketsStarted, false)) WSACleanup();
}
#endif
