#pragma once

// The commands, one file each. A new command: write its file, declare it here, add it to the table in
// main.cpp.

#include <CLI/CLI.hpp>

namespace narravo {

// Each adds a subcommand whose callback does the work, on the calling thread, and throws HostError on
// failure.
void addVoicesCommand(CLI::App& program);
void addSpeakCommand(CLI::App& program);
void addSaveCommand(CLI::App& program);
void addExportCommand(CLI::App& program);
void addConvertCommand(CLI::App& program);
void addDictionaryCommand(CLI::App& program);
void addLogCommand(CLI::App& program);

}  // namespace narravo
