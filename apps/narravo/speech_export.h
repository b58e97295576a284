#pragma once

// Exporting speech to a file of any type that the library writes.

#include <optional>
#include <string>
#include <vector>

#include "apps/narravo/speech_session.h"

namespace narravo {

/// Exports the speech of a text; the extension of `name` (UTF-8) chooses the type. If that fails, what was
/// there before stays. Throws HostError.
/// @param rateHz  one of exportRatesHz(); empty for the voice's own
void exportSpeech(SpeechSession& session, const std::wstring& text, bool isSsml, const std::string& name,
                  std::optional<int> rateHz);

/// Throws HostError when nothing can be exported to a file with the extension of `name`.
void requireExportType(const std::string& name);

/// Every sample rate that can be exported.
std::vector<int> exportRatesHz();

}  // namespace narravo
