// narravo save: writes the speech of a text as a WAV file.

#include <cstdio>
#include <memory>
#include <span>
#include <utility>

#include <CLI/CLI.hpp>

#include <speech/audio.h>
#include "apps/narravo/commands.h"
#include "apps/narravo/speech_export.h"
#include "apps/narravo/speech_session.h"
#include "apps/narravo/text_source.h"
#include "base/file.h"

namespace narravo {
namespace {

struct SaveArguments {
  VoiceArguments voice;
  TextSource text;
  std::string output;
  bool isSsml = false;
};

struct FreeSamples {
  void operator()(unsigned char* samples) const { ExternFree(samples); }
};

/// `samples` are 16-bit mono at `sampleRateHz`.
void writeWavFile(const std::string& name, std::span<const unsigned char> samples, int sampleRateHz) {
  speech::File file = speech::openFile(pathOf(name).c_str(), L"wb");
  if (!file) throw HostError(kExitFile, "cannot create " + name);
  WFHeader header{};
  LXUTIL_Initialize_WFHeader(&header, sampleRateHz, kWaveFormatPcm16, 1);
  LXUTIL_Write_WFHeader(&header, static_cast<int>(samples.size()), file.get());
  std::fwrite(samples.data(), 1, samples.size(), file.get());
  const bool isWritten = std::ferror(file.get()) == 0;
  if (!speech::closeWritten(std::move(file)) || !isWritten)
    throw HostError(kExitFile, "cannot write " + name);
}

void save(const SaveArguments& arguments) {
  const std::wstring text = readText(arguments.text);
  SpeechSession session(arguments.voice);
  // A voice of the service gives no samples, only files.
  if (session.isCloud()) return exportSpeech(session, text, arguments.isSsml, arguments.output, std::nullopt);
  unsigned char* buffer = nullptr;
  const int byteCount = session.engine().synthesizeToBuffer(text.c_str(), arguments.isSsml, &buffer);
  const std::unique_ptr<unsigned char, FreeSamples> samples(buffer);
  if (byteCount <= 0)
    session.reportRefusal(
        "the engine returned no samples; is the text well formed, and short enough for one file?");
  writeWavFile(arguments.output, {samples.get(), static_cast<std::size_t>(byteCount)},
               session.voice().sampleRateHz);
}

}  // namespace

void addSaveCommand(CLI::App& program) {
  const auto arguments = std::make_shared<SaveArguments>();
  CLI::App* const command = program.add_subcommand("save", "Write the speech of a text as a WAV file");
  command->add_option("OUTPUT", arguments->output, "The WAV file to write; its name ends in .wav")
      ->required();
  addTextArguments(*command, arguments->text);
  addVoiceArguments(*command, arguments->voice);
  command->add_flag("--ssml", arguments->isSsml, "The text is an SSML document");
  command->callback([arguments] { save(*arguments); });
}

}  // namespace narravo
