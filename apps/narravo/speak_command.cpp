// narravo speak: speaks a text and shows its words as they are heard.

#include <memory>

#include <CLI/CLI.hpp>

#include "apps/narravo/commands.h"
#include "apps/narravo/console.h"
#include "apps/narravo/speech_notices.h"
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

/// Shows a text as it is heard: plain text as it is written, of marked-up text only the words.
class HeardText {
 public:
  explicit HeardText(bool isSsml) : isSsml_(isSsml) {}

  void show(const SpeechProgress::Step& step) {
    writeOutput(isSsml_ ? separator() + std::wstring(step.word) : std::wstring(step.wordInContext));
    isEmpty_ = false;
  }

  /// @param rest  what no notice announced: the last punctuation
  void end(std::wstring_view rest) const {
    if (!isEmpty_ && !isSsml_) writeOutput(rest.substr(0, rest.find_last_not_of(L" \t\r\n") + 1));
    if (!isEmpty_) writeOutput(L"\n");
  }

 private:
  std::wstring separator() const { return isEmpty_ ? L"" : L" "; }

  bool isSsml_;
  bool isEmpty_ = true;
};

void speak(const SpeakArguments& arguments) {
  const std::wstring text = readText(arguments.text);
  SpeechSession session(arguments.voice);
  const auto report = [&](const std::string& what) {
    if (arguments.isVerbose) writeErrorLine(what);
  };
  report("voice " + session.voice().name + ", " + session.voice().language);

  SpeechProgress progress(text, session.isCloud());
  HeardText shown(arguments.isSsml);
  bool hasFailed = false;
  HostWindow& window = session.window();
  window.onNotice([&](WPARAM wParam, LPARAM lParam) {
    const SpeechProgress::Step step = progress.read(wParam, lParam);
    if (step.kind == SpeechProgress::Kind::kWord) shown.show(step);
    hasFailed = step.kind == SpeechProgress::Kind::kFailed;
    if (hasFailed || step.kind == SpeechProgress::Kind::kEnded) window.finish();
  });

  if (!session.engine().speak(text.c_str(), arguments.isSsml)) {
    session.reportRefusal(
        "the text could not be spoken; is there a sound device, and is the text well formed?");
  }
  report("accepted");
  const bool wasHeard = window.run();
  shown.end(wasHeard && !hasFailed ? progress.rest() : std::wstring_view());
  if (!wasHeard) throw HostError(kExitInterrupted, "interrupted");
  if (hasFailed) session.reportRefusal("the speech failed");
  report("finished");
}

}  // namespace

void addSpeakCommand(CLI::App& program) {
  const auto arguments = std::make_shared<SpeakArguments>();
  CLI::App* const command =
      program.add_subcommand("speak", "Speak a text, showing its words as they are heard");
  addTextArguments(*command, arguments->text);
  addVoiceArguments(*command, arguments->voice);
  command->add_flag("--ssml", arguments->isSsml, "The text is an SSML document");
  command->add_flag("-v,--verbose", arguments->isVerbose, "Report progress on standard error");
  command->callback([arguments] { speak(*arguments); });
}

}  // namespace narravo
