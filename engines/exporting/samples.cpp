#include "engines/exporting/samples.h"

#include <vector>

#include "base/file.h"

namespace speech {
namespace {

constexpr int kBlockSize = 65'535;

/// What stands in a file behind its first `offset` bytes.
std::vector<char> readBehind(std::FILE* file, long offset) {
  std::fseek(file, 0, SEEK_END);
  const long end = std::ftell(file);
  if (end <= offset || std::fseek(file, offset, SEEK_SET) != 0) return {};
  std::vector<char> content(static_cast<std::size_t>(end - offset));
  content.resize(std::fread(content.data(), 1, content.size(), file));
  return content;
}

}  // namespace

void appendSamples(std::FILE* source, std::FILE* destination, int byteCount, LastFullBlock lastFullBlock) {
  const bool silent = byteCount <= kBlockSize;
  std::vector<char> block(kBlockSize);
  int remaining = byteCount;
  while (remaining > 0) {
    const int count = remaining < kBlockSize ? remaining : kBlockSize;
    const bool lastIsFull = remaining == kBlockSize && !silent;
    if (lastIsFull && lastFullBlock == LastFullBlock::kDropped) return;
    block.assign(block.size(), 0);
    const auto size = static_cast<std::size_t>(count);
    if (!silent) static_cast<void>(std::fread(block.data(), 1, size, source));
    if (std::fwrite(block.data(), 1, size, destination) != size) return;  // a full disk takes nothing more
    remaining -= count;
  }
}

bool stripWavHeader(const wchar_t* wavPath, const wchar_t* rawPath) {
  std::vector<char> samples;
  {
    const File wav = openFile(wavPath, L"rb");
    if (!wav) return false;
    samples = readBehind(wav.get(), kWavHeaderSize);
  }
  const File raw = openFile(rawPath, L"wb");
  if (!raw) return false;
  if (!samples.empty()) std::fwrite(samples.data(), 1, samples.size(), raw.get());
  return true;
}

}  // namespace speech
