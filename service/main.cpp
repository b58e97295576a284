// narravo-service: a speech service over HTTP that the module's cloud engine can talk to.
#include <csignal>
#include <cstdio>
#include <exception>
#include <thread>
#include <variant>

#include "service/options.h"
#include "service/server.h"
#include "service/synthesis.h"
#include "service/voices.h"

namespace {

using namespace speech::service;

// Blocked before any thread starts, so that only the thread that waits for them gets them, and the
// synthesizers, which inherit the mask, finish what they are doing when the terminal signals the whole group.
class StopSignals {
 public:
  StopSignals() {
    sigemptyset(&signals_);
    sigaddset(&signals_, SIGINT);
    sigaddset(&signals_, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals_, nullptr);
  }

  // Waits for a short time; true when one of them came.
  bool arrived() const {
    const timespec patience{0, 100'000'000};
    return sigtimedwait(&signals_, nullptr, &patience) > 0;
  }

  // From here on a further signal ends the process at once.
  void restoreDefault() const { pthread_sigmask(SIG_UNBLOCK, &signals_, nullptr); }

 private:
  sigset_t signals_{};
};

void printVoices(const VoiceList& voices) {
  for (const Voice& voice : voices.voices()) {
    std::printf("%-44s %-24s", voice.name.c_str(), voice.identifier.c_str());
    for (const VoiceLanguage& language : voice.languages) std::printf(" %s", language.tag.c_str());
    std::printf("\n");
  }
  std::printf("varieties (append one to a voice after a \"+\"):");
  for (const Variety& variety : voices.varieties()) std::printf(" %s", variety.name.c_str());
  std::printf("\n");
}

int serve(const Options& options, const StopSignals& signals) {
  const Synthesis synthesis({options.synthesizer, options.voiceData,
                             std::chrono::seconds(options.maxSpeechSeconds),
                             std::chrono::seconds(options.timeLimitSeconds)});
  const VoiceList voices = synthesis.listVoices();
  if (options.listVoices) {
    printVoices(voices);
    return 0;
  }

  Server server(options, synthesis, voices);
  const int port = server.bind();
  if (port < 0) {
    std::fprintf(stderr, "error: cannot listen on %s:%d\n", options.host.c_str(), options.port);
    return 1;
  }
  std::printf("listening on http://%s:%d/a/speak\n", options.host.c_str(), port);
  std::fflush(stdout);

  std::jthread stopper([&](const std::stop_token& over) {
    while (!signals.arrived()) {
      if (over.stop_requested()) return;
    }
    signals.restoreDefault();
    // The server cannot be stopped before it runs.
    while (!server.isRunning() && !over.stop_requested())
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    server.stop();
  });
  const bool ranWell = server.run();
  if (!ranWell) std::fprintf(stderr, "error: the listening socket failed\n");
  return ranWell ? 0 : 1;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  const StopSignals signals;
  try {
    const auto options = readOptions(argumentCount, arguments);
    if (const int* exitCode = std::get_if<int>(&options)) return *exitCode;
    return serve(std::get<Options>(options), signals);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "error: %s\n", error.what());
    return 1;
  }
}
