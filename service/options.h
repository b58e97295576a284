#pragma once

// The service's command line.

#include <cstddef>
#include <string>
#include <variant>

namespace speech::service {

struct Options {
  std::string host = "127.0.0.1";
  int port = 59125;                                      // 0: any free one
  std::string key = "9e4b1c7a2d6f8e0a3b5c7d9f1e2a4c6b";  // the one built into the module's client
  // The default lets 1 MiB of UTF-16 text through in the worst case: three UTF-8 bytes a unit, each written
  // "%XX".
  size_t maxBodyBytes = size_t{10} * 1024 * 1024;
  size_t maxTextCharacters = size_t{1024} * 1024;
  int maxSpeechSeconds = 24 * 60 * 60;  // within the 4 GiB of a WAV file
  int timeLimitSeconds = 600;
  int concurrent = 0;  // 0: chosen by the number of processors
  int waitSeconds = 30;
  std::string synthesizer;  // empty: beside this program
  std::string voiceData;
  bool listVoices = false;
};

// The options with everything chosen; or, when the command line asks for help or is wrong, the exit code
// after the text has been printed.
std::variant<Options, int> readOptions(int argumentCount, char** arguments);

}  // namespace speech::service
