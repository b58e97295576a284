#pragma once

/// @file
/// Apart from framework.h, because the socket headers want to come before windows.h.

#ifdef _MSC_VER
#include <afxwin.h>

#include <afxsock.h>
#else
#include <winsock2.h>

#include <windows.h>

/// Starts Windows Sockets for the module; AfxSocketTerm ends it.
/// @return FALSE when the system has none to offer
inline BOOL AfxSocketInit() {
  WSADATA data;
  return WSAStartup(MAKEWORD(2, 2), &data) == 0;
}

/// Ends what AfxSocketInit started.
inline void AfxSocketTerm() { WSACleanup(); }
#endif
