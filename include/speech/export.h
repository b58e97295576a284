#pragma once

/// @file
/// Declarations that are shared by every header of the library.

/// How the exported functions and classes are declared: exported while the library is built, imported by a
/// host, plain where the code is linked statically (tests, native builds).
#if defined(_WIN32) && defined(SPEECH_EXPORTS)
#define SPEECH_API __declspec(dllexport)
#elif defined(_WIN32) && !defined(SPEECH_STATIC)
#define SPEECH_API __declspec(dllimport)
#else
#define SPEECH_API
#endif
