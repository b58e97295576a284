#pragma once

/// @file
/// Apart from framework.h, because the socket headers want to come before windows.h.

#ifdef _MSC_VER
#include <afxwin.h>

#include <afxsock.h>
#else
#include <winsock2.h>

#include <windows.h>

#include <utility>

/// Whether the module has started Windows Sockets.
inline bool afxSocketsStarted = false;

/// Starts Windows Sockets for the module; AfxSocketTerm ends it.
/// @return FALSE when the system has none to offer
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
