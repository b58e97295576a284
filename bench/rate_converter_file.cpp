// Converts a WAV file as a host would, for the comparison with SoX.

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include <speech/audio.h>

int main(int argc, char** argv) {
  std::int32_t rateHz = 0;
  if (argc != 4 || std::from_chars(argv[3], argv[3] + std::strlen(argv[3]), rateHz).ec != std::errc{}) {
    std::fprintf(stderr, "usage: %s IN.wav OUT.wav RATE\n", argv[0]);
    return 2;
  }
  if (RATEAPI_WAV2WAV(argv[1], rateHz, 16, 2, argv[2]) != 1) {
    std::fprintf(stderr, "%s: cannot convert %s\n", argv[0], argv[1]);
    return 1;
  }
  return 0;
}
