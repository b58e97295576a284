#pragma once

// What the engine type of a product means to this library.

#include "framework/framework.h"

namespace speech {

/// Whether it is a voice of the cloud service; every other type belongs to the local engine.
inline bool isCloudVoice(const CStringW& engineType) { return engineType.CompareNoCase(L"skyvo") == 0; }

/// Whether it is an engine that reads word lists only, no lexicons, and has a dictionary editor of its own.
inline bool isNvEngine(const CStringW& engineType) { return engineType.CompareNoCase(L"nv") == 0; }

/// Whether the engine must be loaded to answer questions about its settings.
inline bool answersOnlyWhileLoaded(const CStringW& engineType) {
  // Kept: unlike the rules above this one takes the exact lower-case type only.
  return engineType == L"nv";
}

}  // namespace speech
