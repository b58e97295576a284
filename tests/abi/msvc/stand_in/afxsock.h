#pragma once

#include <afxwin.h>

#include <winsock2.h>

BOOL AfxSocketInit(WSADATA* data = NULL);
void AfxSocketTerm();
