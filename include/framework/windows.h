#pragma once

// windows.h, by way of MFC where MFC is used: it must come first.

#ifdef _MSC_VER
#include <afxwin.h>
#else
#include <windows.h>
#endif
