#include "lxapi/bundled/file_output.h"

#include <vector>

#include <speech/audio.h>
#include "base/file.h"
#include "lxapi/bundled/companding.h"
#include "lxapi/bundled/synthesizer.h"

namespace speech::lxapi {
namespace {

struct FileFormat {
  int32_t fileCode;
  WaveFormatCode waveFormat;  ///< kWaveFormatUnknown for a file without a header.
  uint8_t (*encode)(int16_t);
};

constexpr FileFormat kFileFormats[] = {
    {LX_FILE_PCM, kWaveFormatUnknown, nullptr},
    {LX_FILE_WAV, kWaveFormatPcm16, nullptr},
    {LX_FILE_ALAW, kWaveFormatALaw, encodeALaw},
    {LX_FILE_MULAW, kWaveFormatMuLaw, encodeMuLaw},
};

// The header counts in signed 32-bit numbers.
constexpr uint64_t kMostBytes = 0x7FFF'0000;

const FileFormat* findFormat(int32_t fileCode) {
  for (const FileFormat& format : kFileFormats) {
    if (format.fileCode == fileCode) return &format;
  }
  return nullptr;
}

class FileSink final : public SpeechSink {
 public:
  FileSink(const FileFormat& format, File file) : format_(format), file_(std::move(file)) {
    if (format_.waveFormat != kWaveFormatUnknown) {
      LXUTIL_Initialize_WFHeader(&header_, static_cast<int32_t>(kSynthesizerRateHz), format_.waveFormat, 1);
      LXUTIL_Write_WFHeader(&header_, 0, file_.get());
    }
  }

  bool samples(std::span<const int16_t> samples) override {
    byteCount_ += samples.size_bytes();
    if (byteCount_ > kMostBytes) return false;
    if (format_.encode == nullptr) {
      return std::fwrite(samples.data(), sizeof(int16_t), samples.size(), file_.get()) == samples.size();
    }
    codes_.clear();
    for (const int16_t sample : samples) codes_.push_back(format_.encode(sample));
    return std::fwrite(codes_.data(), 1, codes_.size(), file_.get()) == codes_.size();
  }

  /// Completes the header and closes the file; false when anything could not be written.
  bool finish() {
    if (format_.waveFormat != kWaveFormatUnknown) {
      LXUTIL_Write_WFHeader(&header_, static_cast<int32_t>(byteCount_), file_.get());
    }
    const bool written = std::ferror(file_.get()) == 0;
    return std::fclose(file_.release()) == 0 && written;
  }

  bool hasFailed() const { return std::ferror(file_.get()) != 0; }

 private:
  const FileFormat& format_;
  File file_;
  WFHeader header_{};
  uint64_t byteCount_ = 0;
  std::vector<uint8_t> codes_;
};

}  // namespace

bool isServedFileCode(int32_t fileCode) { return findFormat(fileCode) != nullptr; }

int32_t renderToFile(const SpeechRequest& request, const std::filesystem::path& path, int32_t fileCode,
                     const std::stop_token& stop) {
  const FileFormat* const format = findFormat(fileCode);
  if (format == nullptr) return LX_ERROR_UNSUPPORTED;
  File file = openFile(path.c_str(), L"wb");
  if (!file) return LX_ERROR_FILE;
  int32_t result = LX_OK;
  {
    FileSink sink(*format, std::move(file));
    result = renderSpeech(request, sink, stop);
    if (result != LX_OK && sink.hasFailed()) result = LX_ERROR_FILE;
    if (!sink.finish() && result == LX_OK) result = LX_ERROR_FILE;
  }
  if (result != LX_OK) {
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
  }
  return result;
}

}  // namespace speech::lxapi
