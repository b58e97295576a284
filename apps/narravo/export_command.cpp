// narravo export: exports the speech of a text to an audio file, whose name chooses the type.

#include <memory>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

#include "apps/narravo/commands.h"
#include "apps/narravo/speech_export.h"
#include "apps/narravo/speech_session.h"
#include "apps/narravo/text_source.h"
#include "apps/narravo/user_dictionary.h"

namespace narravo {
namespace {

struct ExportArguments {
  VoiceArguments voice;
  TextSource text;
  std::string output;
  std::string dictionary;
  std::optional<int> rateHz;
  bool isSsml = false;
};

void runExport(const ExportArguments& arguments) {
  requireExportType(arguments.output);
  const std::wstring text = readText(arguments.text);
  SpeechSession session(arguments.voice);
  if (!arguments.dictionary.empty()) loadUserDictionary(session.engine(), arguments.dictionary);
  exportSpeech(session, text, arguments.isSsml, arguments.output, arguments.rateHz);
}

}  // namespace

void addExportCommand(CLI::App& program) {
  const auto arguments = std::make_shared<ExportArguments>();
  CLI::App* const command =
      program.add_subcommand("export", "Write the speech of a text as a wav, pcm, ogg, gsm or mp3 file");
  command->add_option("OUTPUT", arguments->output, "The file to write; its extension chooses the type")
      ->required();
  addTextArguments(*command, arguments->text);
  addVoiceArguments(*command, arguments->voice);
  command
      ->add_option(
          "--rate", arguments->rateHz,
          "Sample rate in hertz; default: the voice's own; gsm is always at 8000, mp3 at the voice's own")
      ->check(CLI::IsMember(exportRatesHz()));
  command->add_option("--dict", arguments->dictionary,
                      "User dictionary: a CSV file of words and what to say instead");
  command->add_flag("--ssml", arguments->isSsml, "The text is an SSML document");
  command->callback([arguments] { runExport(*arguments); });
}

}  // namespace narravo
