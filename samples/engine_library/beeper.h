#pragma once

// The synthesis: every word is a beep.

#include <cctype>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <vector>

inline constexpr int kRateHz = 22050;

struct Word {
  uint32_t frame;   // where it begins to be heard
  uint32_t offset;  // in UTF-16 units of the text
  uint32_t length;
};

struct Speech {
  std::vector<int16_t> samples;
  std::vector<Word> words;
};

inline void append(std::vector<int16_t>& samples, int milliseconds, double amplitude) {
  const int count = kRateHz * milliseconds / 1000;
  for (int i = 0; i < count; ++i)
    samples.push_back(static_cast<int16_t>(amplitude * std::sin(i * 2 * 3.14159265 * 440 / kRateHz)));
}

inline Speech render(std::string_view utf8) {
  Speech speech;
  uint32_t offset = 0;
  bool inWord = false;
  for (const char unit : utf8) {
    const auto value = static_cast<unsigned char>(unit);
    if ((value & 0xC0) == 0x80) continue;  // further bytes of a character
    const bool isLetter = value >= 0x80 || std::isalnum(value) != 0;
    if (isLetter && !inWord) {
      append(speech.samples, 50, 0);
      speech.words.push_back({static_cast<uint32_t>(speech.samples.size()), offset, 0});
      append(speech.samples, 150, 9000);
    }
    inWord = isLetter;
    const uint32_t units = value >= 0xF0 ? 2 : 1;
    if (inWord) speech.words.back().length += units;
    offset += units;
  }
  return speech;
}
