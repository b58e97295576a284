// narravo dict check: prints what is wrong with a user dictionary.

#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "apps/narravo/commands.h"
#include "apps/narravo/console.h"
#include "apps/narravo/speech_session.h"
#include "apps/narravo/user_dictionary.h"

namespace narravo {
namespace {

struct CheckArguments {
  VoiceArguments voice;
  std::string file;
};

void check(const CheckArguments& arguments) {
  SpeechSession session(arguments.voice);
  const DictionaryReport report = checkUserDictionary(session.engine(), arguments.file);
  std::string lines;
  for (const BadEntry& entry : report.badEntries) {
    lines += arguments.file + ":" + std::to_string(entry.line) + ": " + entry.reason + "\n";
  }
  writeOutput(lines);
  const std::size_t bad = report.badEntries.size();
  if (bad > 0) throw HostError(kExitFile, "bad entries: " + std::to_string(bad));
  if (report.goodEntries == 0) throw HostError(kExitFile, arguments.file + " holds no entry");
  writeOutput("good entries: " + std::to_string(report.goodEntries) + "\n");
}

}  // namespace

void addDictionaryCommand(CLI::App& program) {
  CLI::App* const command = program.add_subcommand("dict", "Work with user dictionaries");
  command->require_subcommand(1);
  const auto arguments = std::make_shared<CheckArguments>();
  CLI::App* const checking =
      command->add_subcommand("check", "Print each bad entry of a dictionary with its line and the reason");
  checking->add_option("FILE", arguments->file, "CSV file: a word, what to say instead")->required();
  checking->add_option("--voice", arguments->voice.wish.voice, "The voice whose engine checks the entries");
  checking->callback([arguments] { check(*arguments); });
}

}  // namespace narravo
