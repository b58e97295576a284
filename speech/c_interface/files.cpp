// speech/c/files.h: sound files, and speech as samples in memory.

#include <cstring>
#include <string>
#include <vector>

#include <speech/audio.h>
#include "base/file.h"
#include "base/memory.h"
#include "engines/exporting/log.h"
#include "engines/exporting/plan.h"
#include "engines/exporting/sox.h"
#include "speech/c_interface/open_engine.h"
#include "speech/c_interface/session.h"
#include "speech/c_interface/text.h"
#include "win32/paths.h"
#include "win32/system_message.h"
#include "win32/text.h"

namespace speech::c_interface {
namespace {

/// In a form that the engine library and SoX can open, which take narrow paths.
std::wstring temporaryPath(std::wstring_view extension) {
  const auto narrow = narrowPathOfNewFile(newTemporaryPath(extension));
  if (temporaryFolder().empty() || !narrow)
    throw Failure(SPEECH_ERROR_FILE, "There is no folder for temporary files.");
  return fromSystemCodePage(*narrow);
}

File opened(const std::wstring& path, const wchar_t* mode) {
  File file = openFile(path.c_str(), mode);
  if (!file) throw Failure(SPEECH_ERROR_FILE);
  return file;
}

void writeAndClose(File file, const void* bytes, std::uint32_t byteCount) {
  const bool isWritten = std::fwrite(bytes, 1, byteCount, file.get()) == byteCount;
  if (!closeWritten(std::move(file)) || !isWritten) throw Failure(SPEECH_ERROR_FILE);
}

void writeWav(const std::wstring& path, const void* samples, std::uint32_t byteCount, std::int32_t rateHz) {
  File file = opened(path, L"wb");
  WFHeader header = {};
  LXUTIL_Initialize_WFHeader(&header, rateHz, kWaveFormatPcm16, 1);
  LXUTIL_Write_WFHeader(&header, static_cast<std::int32_t>(byteCount), file.get());
  writeAndClose(std::move(file), samples, byteCount);
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

using enum Action;
using enum Place;

// A file appears under its name only when it is complete.
constexpr Step kFromText[] = {{kSynthesize, kTemporary}, {kPublish, kDestination}, {kLog}};
constexpr Step kFromTextBySox[] = {{kFindSox}, {kSynthesize, kTemporary}, {kPublish, kDestination}, {kLog}};
constexpr Step kFromSamples[] = {{kSynthesize, kTemporary}, {kPublish, kDestination}};
constexpr Step kFromSamplesBySox[] = {{kFindSox},
                                      {kSynthesize, kTemporaryWav},
                                      {kCompress, kTemporary},
                                      {kRequireContent},
                                      {kPublish, kDestination}};

constexpr ExportRules kRules = {
    .codePage = CodePage::kSystem, .temporaryPath = temporaryPath, .deletesTemporaries = true};

const ExportFormat& formatOf(std::int32_t number) {
  const ExportFormat* const format = exportFormat(number);
  if (format == nullptr) throw Failure(SPEECH_ERROR_ARGUMENT);
  return *format;
}

void runOrFail(const ExportJob& job) {
  const auto endedBy = runExport(job, kRules);
  if (!endedBy) return;
  switch (*endedBy) {
    case kFindSox:
      throw Failure(SPEECH_ERROR_TOOL, "This program is missing: " + toUtf8(sox::programIn(job.soxFolder)));
    case kCompress:
      throw Failure(SPEECH_ERROR_TOOL);
    case kRequireContent:
      throw Failure(SPEECH_ERROR_UNSUPPORTED, "SoX made no file of these samples.");
    default:
      throw Failure(SPEECH_ERROR_FILE, "This file cannot be written: " + toUtf8(job.destination) + " (" +
                                           toUtf8(systemMessage(GetLastError())) + ")");
  }
}

/// The rate index of a sample rate in hertz, 0 for the voice's own. Fails for a rate that has none.
int rateIndexOf(const OpenEngine& engine, std::int32_t rateHz) {
  const int index = rateHz == 0 ? engine.product().getSampleRateIndex() : sampleRateIndexOf(rateHz);
  if (index < 0) throw Failure(SPEECH_ERROR_UNSUPPORTED);
  return index;
}

/// Has the engine make a file of a text. Fails unless there is something in it.
void makeFile(const std::wstring& path, OpenEngine& engine, const std::wstring& text, bool isSsml,
              const ExportFormat& format, int rateIndex) {
  constexpr int kRan = 1;
  constexpr int kFormatHasOneRate = -1;
  engine.takeServiceMessage();

  const Busy busy;
  const int result =
      engine.instance().textToFile(text.c_str(), path.c_str(), format.number, isSsml, rateIndex, false);
  const bool serviceFailed = engine.dropNotices() && engine.isCloud();
  // The result does not say whether the engine took the text; the file does.
  if (result == kRan && hasContent(path)) return;
  if (serviceFailed) throw Failure(SPEECH_ERROR_SERVICE, engine.takeServiceMessage());
  if (result == kFormatHasOneRate || format.kind == FileKind::kOfTheEngine)
    throw Failure(SPEECH_ERROR_UNSUPPORTED);
  throw Failure(SPEECH_ERROR_REFUSED);
}

template <class Char>
std::int32_t exportText(SpeechEngine handle, const Char* text, std::uint32_t flags, std::int32_t format,
                        std::int32_t rateHz, const Char* path) {
  return answeredBy(handle, [&](OpenEngine& engine) {
    constexpr std::uint32_t kKnown = SPEECH_FLAG_SSML | SPEECH_FLAG_LOG;
    if ((flags & ~kKnown) != 0) throw Failure(SPEECH_ERROR_ARGUMENT);
    const std::wstring wide = textOf(text);
    const std::wstring destination = textOf(path);
    const int rateIndex = rateIndexOf(engine, rateHz);
    engine.requireIdle();
    const ExportFormat& row = formatOf(format);
    ExportJob job{.format = &row,
                  .route = row.kind == FileKind::kCompressed ? Route(kFromTextBySox) : Route(kFromText),
                  .destination = destination,
                  .soxFolder = engine.toolFolder(),
                  .synthesize = [&](const std::wstring& file, const ExportFormat& made) {
                    makeFile(file, engine, wide, (flags & SPEECH_FLAG_SSML) != 0, made, rateIndex);
                    return true;
                  }};
    if ((flags & SPEECH_FLAG_LOG) != 0)
      job.logLine = exportLogLine(engine.product().getEngineKey1().GetString(), destination);
    runOrFail(job);
  });
}

template <class Char>
std::int32_t exportSamples(SpeechEngine handle, const void* samples, std::uint32_t byteCount,
                           std::int32_t rateHz, std::int32_t format, const Char* path) {
  return answeredBy(handle, [&](OpenEngine& engine) {
    constexpr std::int32_t kHighestRateHz = 768000;
    required(samples);
    if (byteCount % 2 != 0 || byteCount > INT32_MAX || rateHz < 1 || rateHz > kHighestRateHz) {
      throw Failure(SPEECH_ERROR_ARGUMENT);
    }
    const std::wstring destination = textOf(path);
    const ExportFormat& row = formatOf(format);
    if (row.kind == FileKind::kOfTheEngine) throw Failure(SPEECH_ERROR_UNSUPPORTED);
    const Busy busy;
    runOrFail({.format = &row,
               .route = row.kind == FileKind::kCompressed ? Route(kFromSamplesBySox) : Route(kFromSamples),
               .rateHz = rateHz,
               .destination = destination,
               .soxFolder = engine.toolFolder(),
               .synthesize = [&](const std::wstring& file, const ExportFormat& made) {
                 if (made.kind == FileKind::kWav) {
                   writeWav(file, samples, byteCount, rateHz);
                 } else {
                   writeAndClose(opened(file, L"wb"), samples, byteCount);
                 }
                 return true;
               }});
  });
}

/// Samples that can be handed to the caller, who gives them back with ExternFree.
struct Samples {
  MallocBlock<void> memory;
  std::uint32_t byteCount = 0;
  std::int32_t rateHz = 0;
};

MallocBlock<void> allocated(std::size_t byteCount) {
  MallocBlock<void> memory(ExternMalloc(byteCount + 1));  // never an empty block
  if (memory == nullptr) throw Failure(SPEECH_ERROR_MEMORY);
  return memory;
}

Samples fromEngine(OpenEngine& engine, const std::wstring& text, bool isSsml) {
  unsigned char* copy = nullptr;
  const int byteCount = engine.instance().synthesizeToBuffer(text.c_str(), isSsml, &copy);
  Samples samples{MallocBlock<void>(copy), 0, engine.product().getSampleRateHz()};
  if (byteCount <= 0 || copy == nullptr) throw Failure(SPEECH_ERROR_REFUSED);
  samples.byteCount = static_cast<std::uint32_t>(byteCount) & ~1u;
  return samples;
}

/// A file that is deleted at the end of the scope.
struct TemporaryFile {
  explicit TemporaryFile(std::wstring_view extension) : path(temporaryPath(extension)) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() { DeleteFileW(path.c_str()); }

  const std::wstring path;
};

/// The service makes files; its engine has no samples of its own to give.
Samples fromService(OpenEngine& engine, const std::wstring& text, bool isSsml, std::int32_t rateHz) {
  const int rateIndex = rateIndexOf(engine, rateHz);
  const TemporaryFile file(L".pcm");
  makeFile(file.path, engine, text, isSsml, formatOf(SPEECH_FORMAT_PCM), rateIndex);
  const std::vector<unsigned char> content = readFile(file.path);
  const std::size_t byteCount = content.size() & ~std::size_t{1};
  Samples samples{allocated(byteCount), static_cast<std::uint32_t>(byteCount),
                  engine.instance().getSampleRate(rateIndex)};
  std::memcpy(samples.memory.get(), content.data(), byteCount);
  return samples;
}

Samples converted(const Samples& input, std::int32_t rateHz) {
  const std::int64_t inputCount = input.byteCount / 2;
  const std::int64_t outputCount = inputCount * rateHz / input.rateHz;
  if (outputCount > INT32_MAX / 2) throw Failure(SPEECH_ERROR_MEMORY);
  Samples output{allocated(static_cast<std::size_t>(outputCount) * 2), 0, rateHz};
  const RateRequest request{static_cast<const std::int16_t*>(input.memory.get()),
                            static_cast<std::int16_t*>(output.memory.get()),
                            static_cast<std::int32_t>(inputCount),
                            static_cast<std::int32_t>(outputCount),
                            input.rateHz,
                            rateHz,
                            0,
                            kRateQualityLarge};
  const std::int32_t stored = RATEAPI(&request);
  if (stored < 0) throw Failure(SPEECH_ERROR_UNSUPPORTED);
  output.byteCount = static_cast<std::uint32_t>(stored) * 2;
  return output;
}

template <class Char>
std::int32_t synthesize(SpeechEngine handle, const Char* text, std::uint32_t flags, std::int32_t rateHz,
                        SpeechAudio* audio) {
  return answeredBy(handle, [&](OpenEngine& engine) {
    required(audio);
    if ((flags & ~std::uint32_t{SPEECH_FLAG_SSML}) != 0 || rateHz < 0) throw Failure(SPEECH_ERROR_ARGUMENT);
    const std::wstring wide = textOf(text);
    const bool isSsml = flags != 0;
    engine.requireIdle();
    Samples samples =
        engine.isCloud() ? fromService(engine, wide, isSsml, rateHz) : fromEngine(engine, wide, isSsml);
    if (rateHz != 0 && samples.rateHz != rateHz) samples = converted(samples, rateHz);
    *audio = {samples.memory.release(), samples.byteCount, samples.rateHz};
  });
}

}  // namespace
}  // namespace speech::c_interface

using namespace speech::c_interface;

std::int32_t SPEECH_CALL speech_export(SpeechEngine engine, const char* text, std::uint32_t flags,
                                       std::int32_t format, std::int32_t sample_rate, const char* path) {
  return exportText(engine, text, flags, format, sample_rate, path);
}

std::int32_t SPEECH_CALL speech_export_w(SpeechEngine engine, const wchar_t* text, std::uint32_t flags,
                                         std::int32_t format, std::int32_t sample_rate, const wchar_t* path) {
  return exportText(engine, text, flags, format, sample_rate, path);
}

std::int32_t SPEECH_CALL speech_export_samples(SpeechEngine engine, const void* samples,
                                               std::uint32_t byte_count, std::int32_t sample_rate,
                                               std::int32_t format, const char* path) {
  return exportSamples(engine, samples, byte_count, sample_rate, format, path);
}

std::int32_t SPEECH_CALL speech_export_samples_w(SpeechEngine engine, const void* samples,
                                                 std::uint32_t byte_count, std::int32_t sample_rate,
                                                 std::int32_t format, const wchar_t* path) {
  return exportSamples(engine, samples, byte_count, sample_rate, format, path);
}

std::int32_t SPEECH_CALL speech_synthesize(SpeechEngine engine, const char* text, std::uint32_t flags,
                                           std::int32_t sample_rate, SpeechAudio* audio) {
  return synthesize(engine, text, flags, sample_rate, audio);
}

std::int32_t SPEECH_CALL speech_synthesize_w(SpeechEngine engine, const wchar_t* text, std::uint32_t flags,
                                             std::int32_t sample_rate, SpeechAudio* audio) {
  return synthesize(engine, text, flags, sample_rate, audio);
}

void SPEECH_CALL speech_audio_free(SpeechAudio* audio) {
  if (audio == nullptr) return;
  ExternFree(audio->samples);
  *audio = {};
}
