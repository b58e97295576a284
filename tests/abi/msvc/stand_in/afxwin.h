#pragma once

// Stands in for the application framework's headers: the framework's own classes of those names, with the
// checks that the real headers begin with. Nothing here is ever linked.

#if defined(_DLL) && !defined(_AFXDLL)
#error With the run-time in a DLL the framework must be in one too: define _AFXDLL
#endif
#ifdef _WINDOWS_
#error The framework includes windows.h itself: include its headers first
#endif

// Not from within windows.h, which packs its records.
#include <emmintrin.h>

#include <windows.h>

#include "framework/application.h"
#include "framework/exception.h"
#include "framework/pointer_list.h"
#include "framework/string.h"
#include "framework/string_array.h"
