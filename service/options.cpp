#include "service/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <thread>

namespace speech::service {
namespace {

void addOptions(CLI::App& app, Options& options) {
  // 24 hours of 16-bit samples at 22050 Hz are 3.8 GB; a WAV file ends at 4.29 GB.
  constexpr int kLongestWavSeconds = 97'000;
  constexpr size_t kLargestBody = 1024UL * 1024 * 1024;

  app.add_option("--host", options.host, "address to listen on")->capture_default_str();
  app.add_option("--port", options.port, "port to listen on; 0 takes a free one")
      ->capture_default_str()
      ->check(CLI::Range(0, 65535));
  app.add_option("--key", options.key,
                 "key that requests must carry (default: the one that the module sends)")
      ->envname("NARRAVO_SERVICE_KEY")
      ->check(
          [](const std::string& key) { return key.empty() ? "the key must not be empty" : std::string(); });
  app.add_option("--max-body-bytes", options.maxBodyBytes, "largest request body")
      ->capture_default_str()
      ->check(CLI::Range(size_t{1}, kLargestBody));
  app.add_option("--max-text-characters", options.maxTextCharacters, "longest text")
      ->capture_default_str()
      ->check(CLI::Range(size_t{1}, kLargestBody));
  app.add_option("--max-speech-seconds", options.maxSpeechSeconds, "longest speech")
      ->capture_default_str()
      ->check(CLI::Range(1, kLongestWavSeconds));
  app.add_option("--time-limit-seconds", options.timeLimitSeconds, "longest time that one synthesis may take")
      ->capture_default_str()
      ->check(CLI::Range(1, 86'400));
  app.add_option("--concurrent", options.concurrent,
                 "syntheses at once (default: two for each processor, at least four)")
      ->check(CLI::Range(1, 256));
  app.add_option("--wait-seconds", options.waitSeconds,
                 "how long a request waits for its turn before it gets 503")
      ->capture_default_str()
      ->check(CLI::Range(0, 3600));
  app.add_option("--synthesizer", options.synthesizer,
                 "path of narravo-synthesizer (default: beside this program)");
  app.add_option("--voice-data", options.voiceData,
                 "folder of eSpeak NG's data (default: installed with the program)");
  app.add_flag("--list-voices", options.listVoices, "print the voices and their varieties, then end");
}

// Fills what was left to be chosen by the machine.
void completeOptions(Options& options) {
  if (options.concurrent == 0) {
    options.concurrent = std::clamp(2 * static_cast<int>(std::thread::hardware_concurrency()), 4, 256);
  }
  if (options.synthesizer.empty()) {
    options.synthesizer =
        std::filesystem::read_symlink("/proc/self/exe").parent_path() / "narravo-synthesizer";
  }
}

}  // namespace

std::variant<Options, int> readOptions(int argumentCount, char** arguments) {
  Options options;
  CLI::App app("A speech service over HTTP: POST a form to /a/speak, get a WAV or an MP3 file");
  addOptions(app, options);
  try {
    app.parse(argumentCount, arguments);
  } catch (const CLI::ParseError& error) {
    return app.exit(error);
  }
  completeOptions(options);
  return options;
}

}  // namespace speech::service
