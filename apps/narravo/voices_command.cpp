// narravo voices: lists what is installed.

#include <algorithm>
#include <memory>

#include <CLI/CLI.hpp>

#include "apps/narravo/commands.h"
#include "apps/narravo/console.h"
#include "apps/narravo/voices.h"
#include "win32/text.h"

namespace narravo {
namespace {

struct VoicesArguments {
  std::string language;
};

struct Row {
  static constexpr std::size_t kCells = 5;
  std::string cells[kCells];
};

Row rowOf(const Voice& voice) {
  return {{voice.name, voice.language, voice.gender, std::to_string(voice.sampleRateHz), voice.engineType}};
}

/// Columns as wide as their widest cell, in characters, two blanks apart.
std::string formatTable(const std::vector<Row>& rows) {
  std::size_t widths[Row::kCells]{};
  const auto width = [](const std::string& cell) { return speech::fromUtf8(cell).size(); };
  for (const Row& row : rows) {
    for (std::size_t i = 0; i < std::size(row.cells); ++i)
      widths[i] = std::max(widths[i], width(row.cells[i]));
  }
  std::string table;
  for (const Row& row : rows) {
    for (std::size_t i = 0; i < std::size(row.cells); ++i) {
      table += row.cells[i];
      const bool isLast = i + 1 == std::size(row.cells);
      table += isLast ? "\n" : std::string(widths[i] - width(row.cells[i]) + 2, ' ');
    }
  }
  return table;
}

void listVoices(const VoicesArguments& arguments) {
  const LibraryRelease release;
  std::vector<Row> rows{{{"VOICE", "LANGUAGE", "GENDER", "RATE", "ENGINE"}}};
  for (const Voice& voice : installedVoices()) {
    if (arguments.language.empty() || isLanguage(voice.language, arguments.language))
      rows.push_back(rowOf(voice));
  }
  if (rows.size() == 1) {
    throw HostError(kExitNoVoice, arguments.language.empty()
                                      ? "no voice is installed"
                                      : "no voice speaks the language '" + arguments.language + "'");
  }
  writeOutput(formatTable(rows));
}

}  // namespace

void addVoicesCommand(CLI::App& program) {
  const auto arguments = std::make_shared<VoicesArguments>();
  CLI::App* const command = program.add_subcommand("voices", "List the installed voices");
  command->add_option("--language", arguments->language, "Only voices of this language (en, en-US)");
  command->callback([arguments] { listVoices(*arguments); });
}

}  // namespace narravo
