#pragma once

// What every command shares: how it is added, how it fails and how it names a file.
//
// A new command: write its file, declare it here, add it to the table in main.cpp.

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

#include "win32/paths.h"
#include "win32/text.h"

namespace CLI {
class App;
}

namespace narravo {

/// Exit codes; scripts depend on the numbers. They are listed in the program's help.
enum ExitCode : int {
  kExitOk = 0,
  kExitEngineFailed = 1,  ///< The engine, the service or the sound device failed.
  kExitUsage = 2,         ///< The command line is wrong.
  kExitNoVoice = 3,       ///< No installed voice matches.
  kExitFile = 4,          ///< A file could not be read or written, or holds no usable text.
  kExitInterrupted = 130,
};

/// Why a command could not do its work: one line for the user and an exit code for scripts.
class HostError : public std::runtime_error {
 public:
  /// @param message  one line, UTF-8, without a full stop
  HostError(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}

  ExitCode code() const { return code_; }

 private:
  ExitCode code_;
};

/// The file that the user calls `name`, in UTF-8.
inline std::filesystem::path pathOf(const std::string& name) { return speech::fromUtf8(name); }

/// The path of an existing file for the library's functions that take narrow names. Throws HostError, which
/// calls the file `name`.
inline std::string narrowPathOf(const std::filesystem::path& path, const std::string& name) {
  const std::optional<std::string> narrow = speech::narrowPath(path.wstring());
  if (!narrow) throw HostError(kExitFile, name + " has a name that this system's code page cannot hold");
  return *narrow;
}

// Each adds a subcommand. Its callback does the work on the calling thread and throws HostError on failure.
void addVoicesCommand(CLI::App& program);
void addSpeakCommand(CLI::App& program);
void addSaveCommand(CLI::App& program);
void addExportCommand(CLI::App& program);
void addConvertCommand(CLI::App& program);
void addDictionaryCommand(CLI::App& program);
void addLogCommand(CLI::App& program);

}  // namespace narravo
