#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace speech::c_interface {

/// Writes bytes to a new file. Fails when they cannot be written.
void writeFile(const std::wstring& path, const void* bytes, std::uint32_t byteCount);

/// Writes 16-bit mono samples as a WAV file. Fails like writeFile.
void writeWavFile(const std::wstring& path, const void* samples, std::uint32_t byteCount,
                  std::int32_t rateHz);

/// The bytes of a file. Fails when it cannot be read.
std::vector<unsigned char> readFile(const std::wstring& path);

}  // namespace speech::c_interface
