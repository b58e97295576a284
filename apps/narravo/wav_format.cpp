#include "apps/narravo/wav_format.h"

#include <array>
#include <limits>
#include <string_view>

#include "apps/narravo/commands.h"

namespace narravo {
namespace {

using Header = std::array<char, WavFormat::kHeaderBytes>;

std::uint32_t number(const Header& header, std::size_t offset, std::size_t size) {
  std::uint32_t value = 0;
  for (std::size_t i = size; i > 0; --i)
    value = value << 8 | static_cast<unsigned char>(header[offset + i - 1]);
  return value;
}

bool has(const Header& header, std::size_t offset, std::string_view id) {
  return std::string_view(header.data() + offset, id.size()) == id;
}

}  // namespace

WavFormat readWavFormat(std::istream& file, const std::string& name) {
  constexpr std::uint32_t kPcm = 1;
  const auto refuse = [&name](const std::string& why) { throw HostError(kExitFile, name + why); };

  file.seekg(0, std::ios::end);
  const auto fileBytes = static_cast<std::uint64_t>(file.tellg());
  file.seekg(0);
  Header header{};
  file.read(header.data(), header.size());
  if (!file || !has(header, 0, "RIFF") || !has(header, 8, "WAVEfmt ")) refuse(" is not a WAV file");

  const std::uint32_t tag = number(header, 20, 2), channels = number(header, 22, 2),
                      rate = number(header, 24, 4);
  const std::uint32_t bits = number(header, 34, 2), dataBytes = number(header, 40, 4);
  if (tag != kPcm || (channels != 1 && channels != 2) || (bits != 8 && bits != 16)) {
    refuse(" is not PCM of 8 or 16 bits with one or two channels");
  }
  if (number(header, 16, 4) != 16 || !has(header, 36, "data")) {
    refuse(" has more in its header than a format and samples");
  }
  if (rate == 0 || rate > static_cast<std::uint32_t>(std::numeric_limits<int>::max()))
    refuse(" names no sample rate");
  if (dataBytes > fileBytes - header.size()) refuse(" is shorter than its header says");
  return {static_cast<int>(channels), static_cast<int>(bits), static_cast<int>(rate), dataBytes};
}

}  // namespace narravo
