#pragma once

// What a command reports when it cannot do its work: one line for the user and an exit code for scripts.

#include <stdexcept>
#include <string>

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

class HostError : public std::runtime_error {
 public:
  /// @param message  one line, UTF-8, without a full stop
  HostError(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}

  ExitCode code() const { return code_; }

 private:
  ExitCode code_;
};

}  // namespace narravo
