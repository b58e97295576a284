// narravo speak: speaks a text and shows its words as they are heard.

#include <memory>

#include "apps/narravo/commands.h"
#include "apps/narravo/console.h"
#include "apps/narravo/host_error.h"
#include "apps/narravo/speech_progress.h"
#include "apps/narravo/speech_session.h"
#include "apps/narravo/text_source.h"

namespace narravo {
namespace {

struct SpeakArguments {
  VoiceArguments voice;
  TextSource text;
  bool isSsml = false;
  bool isVerbose = false;
};

/// Shows words on one line, as they come.
class WordLine {
 public:
  void show(std::wstring_view word) {
    writeOutput(isEmpty_ ? std::wstring(word) : L" " + std::wstring(word));
    isEmpty_ = false;
  }
  void end() {
    if (!isEmpty_) writeOutput(L"\n");
    isEmpty_ = true;
  }

 private:
  bool isEmpty_ = true;
};

void speak(const SpeakArguments& arguments) {
  const std::wstring text = readText(arguments.text);
  SpeechSession session(arguments.voice);
  const auto tell = [&](const std::string& what) {
    if (arguments.isVerbose) writeErrorLine(what);
  };
  tell("voice " + session.voice().name + ", " + session.voice().language);

  SpeechProgress progress(text, session.isCloud());
  WordLine line;
  bool hasFailed = false;
  HostWindow& window = session.window();
  window.onNotice([&](WPARAM wParam, LPARAM lParam) {
    const SpeechProgress::Step step = progress.read(wParam, lParam);
    if (step.kind == SpeechProgress::Kind::kWord) line.show(step.word);
    hasFailed = step.kind == SpeechProgress::Kind::kFailed;
    if (hasFailed || step.kind == SpeechProgress::Kind::kEnded) window.finish();
  });
  window.onInterrupt([&] { session.engine().stop(); });

  if (!session.engine().speak(text.c_str(), arguments.isSsml)) {
    session.reportRefusal(
        "the text could not be spoken; is there a sound device, and is the text well formed?");
  }
  tell("accepted");
  const bool wasHeard = window.run();
  line.end();
  if (!wasHeard) throw HostError(kExitInterrupted, "interrupted");
  if (hasFailed) session.reportRefusal("the speech failed");
  tell("finished");
}

}  // namespace

void addSpeakCommand(CLI::App& program) {
  const auto arguments = std::make_shared<SpeakArguments>();
  CLI::App* const command =
      program.add_subcommand("speak", "Speak a text, showing its words as they are heard");
  addTextArguments(*command, arguments->text);
  addVoiceArguments(*command, arguments->voice);
  command->add_flag("--ssml", arguments->isSsml, "The text is an SSML document");
  command->add_flag("-v,--verbose", arguments->isVerbose, "Tell on standard error what happens");
  command->callback([arguments] { speak(*arguments); });
}

}  // namespace narravo
