#pragma once

// As much of the shell as is used: mingw's header asks for identifiers of interfaces that this compiler finds
// none for.

#include <windows.h>

#define CSIDL_PERSONAL 0x0005
#define SHGFP_TYPE_CURRENT 0

extern "C" HRESULT WINAPI SHGetFolderPathW(HWND owner, int folder, HANDLE token, DWORD flags, LPWSTR path);
