#pragma once

/// @file
/// The application framework's classes that the interface speaks in. With MSVC they are MFC's own; other
/// compilers get small classes of the same names that behave alike for what is used here.

#ifdef _MSC_VER
#include <afxwin.h>

#include <afxcoll.h>
#include <afxtempl.h>
#else
#include "framework/exception.h"
#include "framework/pointer_list.h"
#include "framework/string.h"
#include "framework/string_array.h"
#endif
