// narravo convert: converts a WAV file to another sample rate.

#include <algorithm>
#include <chrono>
#include <fstream>
#include <future>
#include <memory>
#include <utility>
#include <vector>

#include <windows.h>

#include "apps/narravo/commands.h"
#include "apps/narravo/console.h"
#include "apps/narravo/file_path.h"
#include "apps/narravo/host_error.h"
#include "apps/narravo/progress_bar.h"
#include "apps/narravo/wav_format.h"
#include "audio/rate_wrappers.h"
#include "audio/wav_header.h"
#include "win32/move_file.h"

namespace narravo {
namespace {

struct ConvertArguments {
  std::string input;
  std::string output;
  int sampleRateHz = 0;
  int bits = 0;      ///< 0: as the input
  int channels = 0;  ///< 0: as the input
  bool isProgressWanted = false;
};

using Path = std::filesystem::path;

/// `path`, which must exist, as the library's plain functions take it.
std::string narrowPath(const Path& path, const std::string& name) {
  const auto narrow = [](const std::wstring& wide) {
    // UTF-8 as code page holds everything, and knows no question for characters that it lacks.
    const bool holdsAll = GetACP() == CP_UTF8;
    std::string bytes(wide.size() * 4 + 1, '\0');
    BOOL hasLost = FALSE;
    const int size = WideCharToMultiByte(
        CP_ACP, holdsAll ? 0 : WC_NO_BEST_FIT_CHARS, wide.data(), static_cast<int>(wide.size()), bytes.data(),
        static_cast<int>(bytes.size()), nullptr, holdsAll ? nullptr : &hasLost);
    bytes.resize(hasLost ? 0 : static_cast<std::size_t>(size));
    return bytes;
  };
  std::string bytes = narrow(path.wstring());
  if (bytes.empty()) {
    std::wstring shortPath(MAX_PATH, L'\0');
    shortPath.resize(GetShortPathNameW(path.c_str(), shortPath.data(), MAX_PATH));
    bytes = narrow(shortPath);
  }
  if (bytes.empty())
    throw HostError(kExitFile, name + " has a name that this system's code page cannot hold");
  return bytes;
}

/// A new file that is deleted at the end, unless it has been moved by then.
class ScratchFile {
 public:
  /// @param name  what the user calls the file that it is for
  ScratchFile(Path path, const std::string& name) : path_(std::move(path)), name_(name) {
    if (!std::ofstream(path_, std::ios::binary)) throw HostError(kExitFile, "cannot create " + name);
  }
  ~ScratchFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  const Path& path() const { return path_; }
  std::string narrowPath() const { return narravo::narrowPath(path_, name_); }

 private:
  Path path_;
  std::string name_;
};

Path withEnding(Path path, const wchar_t* ending) { return path += ending; }

std::int32_t convertFile(const std::string& from, const std::string& to, const ConvertArguments& arguments) {
  return RATEAPI_WAV2WAV(from.c_str(), arguments.sampleRateHz, arguments.bits, arguments.channels,
                         to.c_str());
}

/// The time that this program has worked: unlike the time of day it stands still while others have the
/// processor.
Seconds processorTime() {
  FILETIME ignored, kernel{}, user{};
  GetProcessTimes(GetCurrentProcess(), &ignored, &ignored, &kernel, &user);
  const auto seconds = [](FILETIME time) {
    return Seconds((time.dwHighDateTime * 4294967296.0 + time.dwLowDateTime) * 1e-7);
  };
  return seconds(kernel) + seconds(user);
}

/// How long the conversion will take, going by how long this machine takes for the first part of the file.
/// @param input   at the first sample
/// @param output  may be overwritten
Seconds expectedTime(std::istream& input, const WavFormat& format, const ScratchFile& output,
                     const ConvertArguments& arguments) {
  constexpr std::uint32_t kLargestProbe = 1 << 23;
  constexpr std::uint32_t kWholeFrames = ~3u;
  std::vector<char> samples(std::min(kLargestProbe, format.dataBytes / 8) & kWholeFrames);
  if (samples.empty()) return Seconds(0);
  input.read(samples.data(), static_cast<std::streamsize>(samples.size()));
  const ScratchFile probe(withEnding(output.path(), L".probe"), arguments.output);
  const std::string from = probe.narrowPath(), to = output.narrowPath();
  WAVHEADER_MAKER(from.c_str(), static_cast<int>(samples.size()), format.sampleRateHz, format.bitsPerSample,
                  format.channels);
  std::ofstream(probe.path(), std::ios::binary | std::ios::app)
      .write(samples.data(), static_cast<std::streamsize>(samples.size()));

  const Seconds begin = processorTime();
  convertFile(from, to, arguments);
  return (processorTime() - begin) * format.dataBytes / static_cast<double>(samples.size());
}

/// Waits for the conversion and shows how far it should be; the library tells nothing before its end.
std::int32_t waitWithProgress(std::future<std::int32_t>& conversion, Seconds expected) {
  constexpr auto kInterval = std::chrono::milliseconds(100);
  const Seconds begin = processorTime();
  for (Seconds elapsed(0);; elapsed = processorTime() - begin) {
    writeErrorText("\r" + progressLine(elapsed, expected));
    if (conversion.wait_for(kInterval) == std::future_status::ready) break;
  }
  const std::int32_t answer = conversion.get();
  const std::string blanks(progressLine(Seconds(0), Seconds(1)).size(), ' ');
  writeErrorText("\r" + blanks + "\r" + (answer == 1 ? finishedLine() + "\n" : ""));
  return answer;
}

void convert(ConvertArguments arguments) {
  constexpr std::uint32_t kLongFileBytes = 1 << 24;
  constexpr Seconds kLongTime(1);
  const Path inputPath = pathFromUtf8(arguments.input), outputPath = pathFromUtf8(arguments.output);
  std::ifstream input(inputPath, std::ios::binary);
  if (!input) throw HostError(kExitFile, "cannot open " + arguments.input);
  const WavFormat format = readWavFormat(input, arguments.input);
  if (arguments.bits == 0) arguments.bits = format.bitsPerSample;
  if (arguments.channels == 0) arguments.channels = format.channels;

  // It takes the output's place when it is complete: a failure leaves what was there whole.
  std::error_code ignored;
  if (std::filesystem::is_directory(outputPath, ignored)) {
    throw HostError(kExitFile, arguments.output + " is a folder");
  }
  const ScratchFile partial(withEnding(outputPath, L".part"), arguments.output);
  const bool mayBeLong =
      arguments.isProgressWanted || (format.dataBytes >= kLongFileBytes && errorIsConsole());
  const Seconds expected = mayBeLong ? expectedTime(input, format, partial, arguments) : Seconds(0);
  input.close();

  const std::string from = narrowPath(inputPath, arguments.input), to = partial.narrowPath();
  auto conversion = std::async(std::launch::async, [&] { return convertFile(from, to, arguments); });
  const bool isShown = arguments.isProgressWanted || expected > kLongTime;
  const std::int32_t answer = isShown ? waitWithProgress(conversion, expected) : conversion.get();
  if (answer != 1) {
    throw HostError(kExitFile, "cannot convert " + arguments.input + " from " +
                                   std::to_string(format.sampleRateHz) + " to " +
                                   std::to_string(arguments.sampleRateHz) +
                                   " Hz; are the rates more than 10 to 1 apart, or the disk or memory full?");
  }
  if (!speech::moveFile(partial.path(), outputPath)) {
    throw HostError(kExitFile, "cannot write " + arguments.output);
  }
}

}  // namespace

void addConvertCommand(CLI::App& program) {
  const auto arguments = std::make_shared<ConvertArguments>();
  CLI::App* const command = program.add_subcommand("convert", "Convert a WAV file to another sample rate");
  command->add_option("INPUT", arguments->input, "The WAV file to read: PCM of 8 or 16 bits")->required();
  command->add_option("OUTPUT", arguments->output, "The WAV file to write; may be the same")->required();
  command->add_option("--rate", arguments->sampleRateHz, "Samples per second")
      ->required()
      ->check(CLI::Range(1000, 192000));
  command->add_option("--bits", arguments->bits, "Bits per sample, 8 or 16; as in the input if not given")
      ->check(CLI::IsMember({8, 16}));
  command
      ->add_option("--channels", arguments->channels, "1 (the left one) or 2; as in the input if not given")
      ->check(CLI::IsMember({1, 2}));
  command->add_flag("--progress", arguments->isProgressWanted,
                    "Show a progress bar even for a short file or where standard error is no console");
  command->callback([arguments] { convert(*arguments); });
}

}  // namespace narravo
