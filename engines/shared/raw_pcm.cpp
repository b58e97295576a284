#include "engines/shared/raw_pcm.h"

#include <vector>

#include "base/file.h"

namespace speech {
namespace {

constexpr int kBlockSize = 65'535;

std::vector<char> readWhole(std::FILE* file) {
  std::vector<char> content;
  char block[65'536];
  while (const std::size_t count = std::fread(block, 1, sizeof block, file)) {
    content.insert(content.end(), block, block + count);
  }
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
  std::vector<char> content;
  {
    const File wav = openFile(wavPath, L"rb");
    if (!wav) return false;
    content = readWhole(wav.get());
  }
  const File raw = openFile(rawPath, L"wb");
  if (!raw) return false;
  if (content.size() > kWavHeaderSize) {
    std::fwrite(content.data() + kWavHeaderSize, 1, content.size() - kWavHeaderSize, raw.get());
  }
  return true;
}

}  // namespace speech
