#pragma once

// Speech into a file of any type that the library exports.

#include <optional>
#include <string>

#include "apps/narravo/speech_session.h"

namespace narravo {

/// Writes the speech of a text; the extension of `name` (UTF-8) chooses the type. An older file of that
/// name stays as it was when the export fails.
/// @param rateHz  nothing for the voice's own
/// Throws HostError.
void writeSpeechFile(SpeechSession& session, const std::wstring& text, bool isSsml, const std::string& name,
                     std::optional<int> rateHz);

/// Throws HostError when the extension of `output` is none that can be exported.
void requireFileType(const std::string& output);

}  // namespace narravo
