// narravo-synthesizer: speaks standard input through eSpeak NG into standard output, as 16-bit mono samples
// without a header, and ends. The service runs one for every request, because eSpeak NG keeps its state in
// globals and serves one text at a time; a process of its own also means that a text on which eSpeak NG fails
// or loops takes nothing else with it.
#include <espeak-ng/speak_lib.h>
#include <getopt.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "base/espeak.h"
#include "service/synthesizer_exit.h"

namespace {

using speech::service::SynthesizerExit;

static_assert(speech::service::kSampleRateHz == speech::kEspeakRateHz);

struct Output {
  uint64_t bytesLeft = 0;
  SynthesizerExit result = SynthesizerExit::kSpoken;
};

// Global because eSpeak NG's callback gets no pointer of its caller's.
Output output;

bool writeAll(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(STDOUT_FILENO, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<size_t>(written));
  }
  return true;
}

// A non-zero answer ends the synthesis.
int takeSamples(short* samples, int count, espeak_EVENT* /*events*/) {
  if (samples == nullptr || count <= 0) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(samples),
                               static_cast<size_t>(count) * sizeof(short));
  if (bytes.size() > output.bytesLeft) {
    output.result = SynthesizerExit::kTooLong;
  } else if (!writeAll(bytes)) {
    output.result = SynthesizerExit::kOutputFailed;
  }
  output.bytesLeft -= std::min<uint64_t>(output.bytesLeft, bytes.size());
  return output.result == SynthesizerExit::kSpoken ? 0 : 1;
}

// The data as the build and an installation lay it out.
std::string findDataFolder() {
  const auto programFolder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
  const auto beside = programFolder / "espeak-ng-data";
  return std::filesystem::exists(beside) ? beside : programFolder.parent_path() / "share" / "espeak-ng-data";
}

bool startEngine(const std::string& dataFolder) {
  // eSpeak NG keeps the folder's name in a short buffer, so go there and give it a short one.
  if (::chdir(dataFolder.c_str()) != 0) return false;
  return espeak_Initialize(AUDIO_OUTPUT_RETRIEVAL, 0, ".", espeakINITIALIZE_DONT_EXIT) ==
         speech::service::kSampleRateHz;
}

void listVoices() {
  for (const espeak_VOICE* const voice : speech::usableVoices()) {
    std::printf("voice\t%s\t%s", voice->name, voice->identifier);
    // The list: a priority byte and a zero-terminated tag each, a zero byte at the end.
    for (const char* entry = voice->languages; *entry != 0; entry += std::string_view(entry + 1).size() + 2) {
      std::printf("\t%d %s", *entry, entry + 1);
    }
    std::printf("\n");
  }
  espeak_VOICE onlyVarieties{};
  onlyVarieties.languages = "variant";
  for (const espeak_VOICE** variety = espeak_ListVoices(&onlyVarieties); *variety != nullptr; ++variety) {
    const std::string_view identifier((*variety)->identifier);
    std::printf("variety\t%s\n", std::string(identifier.substr(identifier.rfind('/') + 1)).c_str());
  }
}

std::string readStandardInput() {
  std::string text;
  char block[65536];
  ssize_t count = 0;
  while ((count = ::read(STDIN_FILENO, block, sizeof block)) != 0) {
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) break;
    text.append(block, static_cast<size_t>(count));
  }
  return text;
}

// eSpeak NG takes some control characters for commands to itself.
void blankControlCharacters(std::string& text) {
  for (char& character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if ((byte < 0x20 && character != '\n' && character != '\t') || byte == 0x7F) character = ' ';
  }
}

SynthesizerExit speak(const std::string& voice, bool isSsml) {
  espeak_SetSynthCallback(takeSamples);
  espeak_SetUriCallback(speech::refuseSoundFile);
  if (espeak_SetVoiceByName(voice.c_str()) != EE_OK) return SynthesizerExit::kNoVoice;

  std::string text = readStandardInput();
  blankControlCharacters(text);
  const unsigned flags =
      espeakCHARS_UTF8 | espeakENDPAUSE | (isSsml ? static_cast<unsigned>(espeakSSML) : 0U);
  const espeak_ERROR error =
      espeak_Synth(text.c_str(), text.size() + 1, 0, POS_CHARACTER, 0, flags, nullptr, nullptr);
  if (output.result != SynthesizerExit::kSpoken) return output.result;
  return error == EE_OK ? SynthesizerExit::kSpoken : SynthesizerExit::kEngineFailed;
}

struct Arguments {
  std::string voice;  // identifier, with an optional "+variety"
  std::string dataFolder;
  bool isSsml = false;
  bool wantsList = false;
};

// The service is the only caller: see synthesis.cpp.
std::optional<Arguments> readArguments(int count, char** values) {
  static const option kOptions[] = {{"voice", required_argument, nullptr, 'v'},
                                    {"voice-data", required_argument, nullptr, 'd'},
                                    {"max-bytes", required_argument, nullptr, 'm'},
                                    {"ssml", no_argument, nullptr, 's'},
                                    {"list", no_argument, nullptr, 'l'},
                                    {}};
  Arguments arguments;
  for (int found = 0; (found = ::getopt_long(count, values, "", kOptions, nullptr)) != -1;) {
    switch (found) {
      case 'v':
        arguments.voice = optarg;
        break;
      case 'd':
        arguments.dataFolder = optarg;
        break;
      case 'm':
        output.bytesLeft = std::strtoull(optarg, nullptr, 10);
        break;
      case 's':
        arguments.isSsml = true;
        break;
      case 'l':
        arguments.wantsList = true;
        break;
      default:
        return std::nullopt;
    }
  }
  if (optind != count || (arguments.voice.empty() && !arguments.wantsList)) return std::nullopt;
  return arguments;
}

}  // namespace

int main(int argumentCount, char** argumentValues) {
  const auto arguments = readArguments(argumentCount, argumentValues);
  if (!arguments) {
    std::fprintf(stderr,
                 "usage: narravo-synthesizer [--voice-data FOLDER] --list\n"
                 "       narravo-synthesizer [--voice-data FOLDER] --voice NAME --max-bytes N [--ssml]\n");
    return static_cast<int>(SynthesizerExit::kBadArguments);
  }

  ::prctl(PR_SET_PDEATHSIG, SIGKILL);  // no one is left to hear it when the service is gone
  if (!startEngine(arguments->dataFolder.empty() ? findDataFolder() : arguments->dataFolder)) {
    return static_cast<int>(SynthesizerExit::kNoEngine);
  }
  if (!arguments->wantsList) return static_cast<int>(speak(arguments->voice, arguments->isSsml));
  listVoices();
  return static_cast<int>(std::fflush(stdout) == 0 ? SynthesizerExit::kSpoken
                                                   : SynthesizerExit::kOutputFailed);
}
