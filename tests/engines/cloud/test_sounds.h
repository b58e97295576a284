#pragma once

// A sound to play, and how much of it is found in a recording.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

namespace speech::test {

/// Half a second of steps between random heights, no part of which resembles another.
inline std::vector<std::int16_t> murmur(int rateHz) {
  std::mt19937 random(5);
  std::vector<double> heights;
  while (heights.size() < 512) heights.push_back(static_cast<double>(random() % 20'000) - 10'000);
  std::vector<std::int16_t> samples;
  for (int i = 0; i < rateHz / 2; ++i) {
    const double place = 1000.0 * i / rateHz;
    const auto step = static_cast<std::size_t>(place);
    const double part = place - static_cast<double>(step);
    samples.push_back(static_cast<std::int16_t>(heights[step] * (1 - part) + heights[step + 1] * part));
  }
  return samples;
}

/// The correlation coefficient of `count` samples.
inline double resemblance(const std::int16_t* a, const std::int16_t* b, std::size_t count) {
  double product = 0, energyA = 0, energyB = 0;
  for (std::size_t i = 0; i < count; ++i) {
    product += static_cast<double>(a[i]) * b[i];
    energyA += static_cast<double>(a[i]) * a[i];
    energyB += static_cast<double>(b[i]) * b[i];
  }
  return energyB > 0 ? product / std::sqrt(energyA * energyB) : 0;
}

/// How a sound was heard.
struct Hearing {
  double correlation = 0;  ///< On average over the pieces that were heard whole.
  double wholeShare = 0;   ///< How many of the pieces were.
};

/// Finds a sound in a recording of the same rate, piece by piece and in order: a busy machine lets the sound
/// server fall silent for moments, which shift and tear the pieces but do not change them.
inline Hearing hear(const std::vector<std::int16_t>& sound, const std::vector<std::int16_t>& recording) {
  constexpr std::size_t kPieceLength = 1102, kLongestSilence = 22050;
  constexpr double kWhole = 0.98;
  const auto heard = std::ranges::find_if(recording, [](int sample) { return std::abs(sample) > 500; });
  auto place = static_cast<std::size_t>(heard - recording.begin());
  place -= std::min<std::size_t>(place, 200);
  double sum = 0, pieces = 0, wholePieces = 0;
  for (std::size_t at = 0; at + kPieceLength <= sound.size(); at += kPieceLength, ++pieces) {
    double best = 0;
    std::size_t end = std::min(place + kLongestSilence, recording.size() - kPieceLength);
    for (std::size_t i = place; i < end; ++i) {
      const double here = resemblance(sound.data() + at, recording.data() + i, kPieceLength);
      if (here < best && best > kWhole) end = i;  // beyond the best place
      best = std::max(best, here);
    }
    if (best < kWhole) continue;
    sum += best;
    ++wholePieces;
    place = end + kPieceLength - 20;
  }
  return {wholePieces > 0 ? sum / wholePieces : 0, wholePieces / pieces};
}

}  // namespace speech::test
