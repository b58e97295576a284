// Sound files.

#include "speech/c_interface/exporting.h"

#include <algorithm>
#include <iterator>

#include "engines/shared/engine_utilities.h"
#include "engines/shared/export_log.h"
#include "engines/shared/process_runner.h"
#include "engines/shared/sox.h"
#include "speech/c_interface/sample_files.h"
#include "speech/c_interface/session.h"
#include "speech/c_interface/text.h"
#include "win32/text.h"

namespace speech::c_interface {
namespace {

struct Format {
  std::int32_t number;
  const wchar_t* extension;  ///< SoX goes by it.
  enum class Kind { kSamples, kSox, kOfTheEngine } kind;
};

using enum Format::Kind;

constexpr Format kFormats[] = {
    {SPEECH_FORMAT_PCM, L".pcm", kSamples},
    {SPEECH_FORMAT_WAV, L".wav", kSamples},
    {SPEECH_FORMAT_OGG, L".ogg", kSox},
    {SPEECH_FORMAT_GSM, L".gsm", kSox},
    {SPEECH_FORMAT_MP3, L".mp3", kSox},
    {SPEECH_FORMAT_ALAW, L".wav", kOfTheEngine},
    {SPEECH_FORMAT_MULAW, L".wav", kOfTheEngine},
    {8, L".bin", kOfTheEngine},
    {9, L".bin", kOfTheEngine},
    {11, L".bin", kOfTheEngine},
    {12, L".bin", kOfTheEngine},
    {13, L".bin", kOfTheEngine},
};

const Format& formatOf(std::int32_t number) {
  const auto found = std::ranges::find(kFormats, number, &Format::number);
  if (found == std::end(kFormats)) throw Failure(SPEECH_ERROR_ARGUMENT);
  return *found;
}

/// The path of sox.exe. Fails when it is missing.
CStringW soxOf(const OpenEngine& engine) {
  CStringW program = sox::programPath(engine.toolFolder().c_str());
  if (!sox::isAccessible(program)) {
    throw Failure(SPEECH_ERROR_TOOL, "This program is missing: " + toUtf8(program.GetString()));
  }
  return program;
}

CStringW soxParameters(std::int32_t format, const std::wstring& wav, std::int32_t rateHz,
                       const std::wstring& output) {
  constexpr int kGsmRateHz = 8000;
  if (format == SPEECH_FORMAT_MP3) return sox::convertToMp3(wav.c_str(), output.c_str());
  return sox::convertAtRate(wav.c_str(), format == SPEECH_FORMAT_GSM ? kGsmRateHz : rateHz, output.c_str());
}

void writeSamples(const OpenEngine& engine, const void* samples, std::uint32_t byteCount, std::int32_t rateHz,
                  const Format& format, TemporaryOutput& output) {
  if (format.number == SPEECH_FORMAT_PCM) {
    writeFile(output.path(), samples, byteCount);
    return;
  }
  if (format.number == SPEECH_FORMAT_WAV) {
    writeWavFile(output.path(), samples, byteCount, rateHz);
    return;
  }
  const CStringW program = soxOf(engine);
  const TemporaryOutput wav(L".wav");
  writeWavFile(wav.path(), samples, byteCount, rateHz);
  const Busy busy;
  if (!runProgram(program, soxParameters(format.number, wav.path(), rateHz, output.path()))) {
    throw Failure(SPEECH_ERROR_TOOL);
  }
  if (!output.hasContent()) throw Failure(SPEECH_ERROR_UNSUPPORTED, "SoX made no file of these samples.");
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
    TemporaryOutput output(formatOf(format).extension);
    exportToTemporary(engine, wide, (flags & SPEECH_FLAG_SSML) != 0, format, rateIndex, output);
    output.moveTo(destination);
    if ((flags & SPEECH_FLAG_LOG) != 0) {
      writeExportLog(exportLogLine(engine.product().getEngineKey1(), destination.c_str()));
    }
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
    const Format& row = formatOf(format);
    if (row.kind == kOfTheEngine) throw Failure(SPEECH_ERROR_UNSUPPORTED);
    TemporaryOutput output(row.extension);
    writeSamples(engine, samples, byteCount, rateHz, row, output);
    output.moveTo(destination);
  });
}

}  // namespace

int rateIndexOf(const OpenEngine& engine, std::int32_t rateHz) {
  const int index = rateHz == 0 ? engine.product().getSampleRateIndex() : sampleRateIndexOf(rateHz);
  if (index < 0) throw Failure(SPEECH_ERROR_UNSUPPORTED);
  return index;
}

void exportToTemporary(OpenEngine& engine, const std::wstring& text, bool isSsml, std::int32_t format,
                       int rateIndex, TemporaryOutput& output) {
  constexpr int kRan = 1;
  constexpr int kFormatHasOneRate = -1;
  const bool needsSox = formatOf(format).kind == kSox;
  if (needsSox) soxOf(engine);
  engine.takeServiceMessage();

  const Busy busy;
  const int result =
      engine.instance().textToFile(text.c_str(), output.path().c_str(), format, isSsml, rateIndex, false);
  const bool serviceFailed = engine.dropNotices() && engine.isCloud();
  // The result does not tell whether the engine took the text; the file does.
  if (result == kRan && output.hasContent()) return;
  if (serviceFailed) throw Failure(SPEECH_ERROR_SERVICE, engine.takeServiceMessage());
  if (result == kFormatHasOneRate || formatOf(format).kind == kOfTheEngine)
    throw Failure(SPEECH_ERROR_UNSUPPORTED);
  throw Failure(SPEECH_ERROR_REFUSED);
}

}  // namespace speech::c_interface

using namespace speech::c_interface;

int32_t SPEECH_CALL speech_export(SpeechEngine engine, const char* text, uint32_t flags, int32_t format,
                                  int32_t sample_rate, const char* path) {
  return exportText(engine, text, flags, format, sample_rate, path);
}

int32_t SPEECH_CALL speech_export_w(SpeechEngine engine, const wchar_t* text, uint32_t flags, int32_t format,
                                    int32_t sample_rate, const wchar_t* path) {
  return exportText(engine, text, flags, format, sample_rate, path);
}

int32_t SPEECH_CALL speech_export_samples(SpeechEngine engine, const void* samples, uint32_t byte_count,
                                          int32_t sample_rate, int32_t format, const char* path) {
  return exportSamples(engine, samples, byte_count, sample_rate, format, path);
}

int32_t SPEECH_CALL speech_export_samples_w(SpeechEngine engine, const void* samples, uint32_t byte_count,
                                            int32_t sample_rate, int32_t format, const wchar_t* path) {
  return exportSamples(engine, samples, byte_count, sample_rate, format, path);
}
