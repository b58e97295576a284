#include "speech/c_interface/sample_files.h"

#include "audio/wav_header.h"
#include "base/file.h"
#include "speech/c_interface/failure.h"

namespace speech::c_interface {
namespace {

File opened(const std::wstring& path, const wchar_t* mode) {
  File file = openFile(path.c_str(), mode);
  if (file == nullptr) throw Failure(SPEECH_ERROR_FILE);
  return file;
}

void append(File file, const void* bytes, std::uint32_t byteCount) {
  const bool isWritten = std::fwrite(bytes, 1, byteCount, file.get()) == byteCount;
  if (std::fclose(file.release()) != 0 || !isWritten) throw Failure(SPEECH_ERROR_FILE);
}

}  // namespace

void writeFile(const std::wstring& path, const void* bytes, std::uint32_t byteCount) {
  append(opened(path, L"wb"), bytes, byteCount);
}

void writeWavFile(const std::wstring& path, const void* samples, std::uint32_t byteCount,
                  std::int32_t rateHz) {
  File file = opened(path, L"wb");
  WFHeader header = {};
  LXUTIL_Initialize_WFHeader(&header, rateHz, kWaveFormatPcm16, 1);
  LXUTIL_Write_WFHeader(&header, static_cast<std::int32_t>(byteCount), file.get());
  append(std::move(file), samples, byteCount);
}

std::vector<unsigned char> readFile(const std::wstring& path) {
  const File file = opened(path, L"rb");
  std::vector<unsigned char> content;
  unsigned char block[65536];
  for (std::size_t count; (count = std::fread(block, 1, sizeof block, file.get())) > 0;) {
    content.insert(content.end(), block, block + count);
  }
  if (std::ferror(file.get()) != 0) throw Failure(SPEECH_ERROR_FILE);
  return content;
}

}  // namespace speech::c_interface
