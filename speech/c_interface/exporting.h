#pragma once

#include <cstdint>
#include <string>

#include "speech/c_interface/open_engine.h"
#include "speech/c_interface/temporary_output.h"

namespace speech::c_interface {

/// The rate index of a sample rate in hertz, 0 for the voice's own. Fails for a rate that has none.
int rateIndexOf(const OpenEngine& engine, std::int32_t rateHz);

/// Synthesizes a text into a temporary file. Fails unless there is something in it.
void exportToTemporary(OpenEngine& engine, const std::wstring& text, bool isSsml, std::int32_t format,
                       int rateIndex, TemporaryOutput& output);

}  // namespace speech::c_interface
