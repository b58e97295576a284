// narravo convert: converts a WAV file to another sample rate.

#include <algorithm>
#include <cmath>
#include <fstream>
#include <memory>
#include <optional>
#include <utility>

#include <CLI/CLI.hpp>

#include <speech/audio.h>
#include "apps/narravo/commands.h"
#include "apps/narravo/console.h"
#include "apps/narravo/wav_format.h"
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

/// What the output is called until it is complete. Deleted at the end, unless it has been moved by then.
class PartialFile {
 public:
  PartialFile(Path output, const std::string& name) : path_(std::move(output += L".part")) {
    if (!std::ofstream(path_, std::ios::binary)) throw HostError(kExitFile, "cannot create " + name);
  }
  PartialFile(const PartialFile&) = delete;
  PartialFile& operator=(const PartialFile&) = delete;
  ~PartialFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }

  const Path& path() const { return path_; }

 private:
  Path path_;
};

/// How much of a file there is. Opened, because a folder shows the size of an open file late.
std::string describeGrowth(const Path& path, double expectedBytes) {
  const auto bytes = static_cast<double>(std::ifstream(path, std::ios::binary | std::ios::ate).tellg());
  if (bytes <= 0) return "";
  const long percent = std::min(100L, std::lround(100 * bytes / expectedBytes));
  return ", " + std::to_string(percent) + " % written";
}

WavFormat readFormat(const Path& path, const std::string& name) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw HostError(kExitFile, "cannot open " + name);
  return readWavFormat(file, name);
}

/// The library converts in memory and then writes, all in one call.
/// @param expectedBytes  size of the output when it is complete
bool convertFile(const Path& input, const Path& output, double expectedBytes,
                 const ConvertArguments& arguments) {
  using namespace std::chrono_literals;
  constexpr WorkingNotice::Pace kAtOnce{0s, 1s};
  const std::string from = narrowPathOf(input, arguments.input), to = narrowPathOf(output, arguments.output);
  std::optional<WorkingNotice> notice;
  if (arguments.isProgressWanted || errorIsConsole()) {
    notice.emplace("converting " + arguments.input,
                   arguments.isProgressWanted ? kAtOnce : WorkingNotice::usualPace(),
                   [&] { return describeGrowth(output, expectedBytes); });
  }
  return RATEAPI_WAV2WAV(from.c_str(), arguments.sampleRateHz, arguments.bits, arguments.channels,
                         to.c_str()) == 1;
}

void convert(ConvertArguments arguments) {
  const Path input = pathOf(arguments.input), output = pathOf(arguments.output);
  const WavFormat format = readFormat(input, arguments.input);
  if (arguments.bits == 0) arguments.bits = format.bitsPerSample;
  if (arguments.channels == 0) arguments.channels = format.channels;

  std::error_code ignored;
  if (std::filesystem::is_directory(output, ignored)) {
    throw HostError(kExitFile, arguments.output + " is a folder");
  }
  const PartialFile partial(output, arguments.output);
  const int frameBytes = arguments.channels * (arguments.bits / 8);
  const double expectedBytes =
      WavFormat::kHeaderBytes + format.seconds() * arguments.sampleRateHz * frameBytes;
  if (!convertFile(input, partial.path(), expectedBytes, arguments)) {
    throw HostError(kExitFile, "cannot convert " + arguments.input + " from " +
                                   std::to_string(format.sampleRateHz) + " to " +
                                   std::to_string(arguments.sampleRateHz) +
                                   " Hz; are the rates more than 10 to 1 apart, or the disk or memory full?");
  }
  // Only now is what was there replaced.
  if (!speech::moveFile(partial.path(), output)) {
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
  command->add_option("--bits", arguments->bits, "Bits per sample, 8 or 16; default: as in the input")
      ->check(CLI::IsMember({8, 16}));
  command->add_option("--channels", arguments->channels, "1 (the left one) or 2; default: as in the input")
      ->check(CLI::IsMember({1, 2}));
  command->add_flag("--progress", arguments->isProgressWanted,
                    "Report progress even for a short file or where standard error is no console");
  command->callback([arguments] { convert(*arguments); });
}

}  // namespace narravo
