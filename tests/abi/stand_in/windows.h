#pragma once

// As much of the Windows types as the public headers use, so that their layout can be asked of a compiler
// for the Microsoft ABI on a machine without the Windows SDK.

typedef struct HWND__* HWND;
typedef unsigned int UINT;
typedef unsigned int WPARAM;
typedef long LPARAM;
