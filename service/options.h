// The service's command line.
#pragma once

#include <CLI/CLI.hpp>
#include <chrono>
#include <cstddef>
#include <string>

namespace speech::service {

struct Options {
  std::string host = "127.0.0.1";
  int port = 59125;                                      // 0: any free one
  std::string key = "9e4b1c7a2d6f8e0a3b5c7d9f1e2a4c6b";  // the one built into the module's client
  // The default lets 1 MiB of UTF-16 text through in the worst case: three UTF-8 bytes a unit, each written
  // "%XX".
  size_t maxBodyBytes = 10 * 1024 * 1024;
  size_t maxTextCharacters = 1024 * 1024;
  int maxSpeechSeconds = 24 * 60 * 60;  // within the 4 GiB of a WAV file
  int timeLimitSeconds = 600;
  int concurrent = 0;  // 0: chosen by the number of processors
  int waitSeconds = 30;
  std::string synthesizer;  // empty: beside this program
  std::string voiceData;
  bool listVoices = false;
};

// Binds the options to the parser, with their limits and help texts.
void addOptions(CLI::App& app, Options& options);

// Fills what was left to be chosen by the machine.
void completeOptions(Options& options);

}  // namespace speech::service
