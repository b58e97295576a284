// narravo: the command-line host. Like any other host it knows the library by its public headers only; what
// it needs of Windows it shares with the library (win32/).

#include <exception>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "apps/narravo/commands.h"
#include "apps/narravo/console.h"
#include "apps/narravo/speech_notices.h"
#include "win32/text.h"

namespace {

using namespace narravo;

constexpr void (*kAddCommand[])(CLI::App&) = {
    addVoicesCommand,  addSpeakCommand,      addSaveCommand, addExportCommand,
    addConvertCommand, addDictionaryCommand, addLogCommand,
};

constexpr const char* kExitCodeHelp =
    "Exit codes:\n"
    "  0    done\n"
    "  1    the engine, the speech service or the sound device failed\n"
    "  2    the command line is wrong\n"
    "  3    no installed voice matches\n"
    "  4    a file could not be read or written, or holds no usable text\n"
    "  130  interrupted by Ctrl-C";

int runCommandLine(std::vector<std::string> arguments) {
  CLI::App program("Speaks text, writes speech as audio files and converts WAV files.", "narravo");
  program.allow_windows_style_options(false);  // under Wine a file's name may begin with a slash
  program.require_subcommand(1);
  program.footer(kExitCodeHelp);  // the commands inherit it
  for (const auto add : kAddCommand) add(program);

  try {
    std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());  // the order that CLI11 consumes
    program.parse(reversed);
    return kExitOk;
  } catch (const CLI::CallForHelp&) {
    writeOutput(program.help());
    return kExitOk;
  } catch (const CLI::ParseError& error) {
    writeErrorLine(std::string(error.what()) + " (see narravo --help)");
    return kExitUsage;
  }
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  try {
    watchInterrupts();
    std::vector<std::string> utf8;
    for (int i = 1; i < count; ++i) utf8.push_back(speech::toUtf8(arguments[i]));
    return runCommandLine(std::move(utf8));
  } catch (const HostError& error) {
    if (error.code() != kExitInterrupted) writeErrorLine(error.what());
    return error.code();
  } catch (const std::exception& error) {
    writeErrorLine(error.what());
    return kExitEngineFailed;
  }
}
