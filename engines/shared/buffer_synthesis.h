#pragma once

#include <cstddef>
#include <cstdint>

namespace speech {

/// Has the engine library render a text into memory and copies what it made.
/// @param text        null counts as empty
/// @param flag        true when the text is an SSML document
/// @param extraBytes  zero bytes behind the copy
/// @param out         receives the copy, to be freed with ExternFree; may be null
/// @return the engine's byte count; 0 when the text was refused or there is no memory for a copy, `out`
///   is then untouched
int synthesizeIntoBuffer(std::uint32_t ttsHandle, const wchar_t* text, bool flag, std::size_t extraBytes,
                         unsigned char** out);

}  // namespace speech
