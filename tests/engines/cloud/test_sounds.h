#pragma once

// Sounds to play, and how much of them is found in a recording.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <random>
#include <span>
#include <vector>

namespace speech::test {

/// A murmur between 100 and 1000 Hz, no part of which resembles another.
inline std::vector<std::int16_t> murmur(int rateHz, double seconds) {
  constexpr int kToneCount = 40;
  std::mt19937 random(5);
  std::vector<double> sum(static_cast<std::size_t>(rateHz * seconds));
  for (int tone = 0; tone < kToneCount; ++tone) {
    const double frequency = 100 + 900 * static_cast<double>(random()) / std::mt19937::max();
    const double phase = static_cast<double>(random());
    for (std::size_t i = 0; i < sum.size(); ++i) {
      sum[i] += std::sin(2 * std::numbers::pi * frequency * static_cast<double>(i) / rateHz + phase);
    }
  }
  std::vector<std::int16_t> samples;
  for (const double value : sum)
    samples.push_back(static_cast<std::int16_t>(std::clamp(1500 * value, -32e3, 32e3)));
  return samples;
}

/// The sound at another rate, by straight lines between its samples.
inline std::vector<double> atRate(const std::vector<std::int16_t>& samples, int fromHz, int toHz) {
  std::vector<double> result;
  for (std::size_t i = 0;; ++i) {
    const double place = static_cast<double>(i) * fromHz / toHz;
    const auto before = static_cast<std::size_t>(place);
    if (before + 1 >= samples.size()) return result;
    const double part = place - static_cast<double>(before);
    result.push_back(samples[before] * (1 - part) + samples[before + 1] * part);
  }
}

/// Sums from which the correlation coefficient of two signals follows.
struct Correlation {
  double product = 0, energyA = 0, energyB = 0;

  Correlation() = default;
  Correlation(std::span<const double> a, std::span<const std::int16_t> b) {
    for (std::size_t i = 0; i < a.size(); ++i) {
      product += a[i] * b[i];
      energyA += a[i] * a[i];
      energyB += static_cast<double>(b[i]) * b[i];
    }
  }
  void add(const Correlation& other) {
    product += other.product;
    energyA += other.energyA;
    energyB += other.energyB;
  }
  double coefficient() const { return energyB > 0 ? product / std::sqrt(energyA * energyB) : 0; }
};

/// How a sound was heard.
struct Hearing {
  double correlation = 0;  ///< Over the pieces that were heard whole.
  double wholeShare = 0;   ///< How many of the pieces were.
};

/// Finds a sound in a recording of the same rate, piece by piece and in order: a busy machine lets the sound
/// server fall silent for moments, which shift and tear the pieces but do not change them.
inline Hearing hear(const std::vector<double>& sound, const std::vector<std::int16_t>& recording) {
  constexpr std::size_t kPieceLength = 1102;
  constexpr std::size_t kLongestSilence = 22050;
  const auto best = [&](std::span<const double> piece, std::size_t from, std::size_t to) {
    std::pair<Correlation, std::size_t> found = {{}, from};
    for (std::size_t at = from; at < to && at + piece.size() <= recording.size(); ++at) {
      const Correlation here(piece, std::span(recording).subspan(at, piece.size()));
      if (here.coefficient() > found.first.coefficient()) found = {here, at};
    }
    return found;
  };

  const auto audible =
      std::find_if(recording.begin(), recording.end(), [](int s) { return std::abs(s) > 500; });
  auto place = static_cast<std::size_t>(audible - recording.begin());
  place -= std::min<std::size_t>(place, 200);
  Correlation whole;
  std::size_t pieces = 0, wholePieces = 0;
  for (std::size_t at = 0; at + kPieceLength <= sound.size(); at += kPieceLength, ++pieces) {
    const std::span piece = std::span(sound).subspan(at, kPieceLength);
    auto found = best(piece, place, place + 400);
    if (found.first.coefficient() < 0.98) found = best(piece, place, place + kLongestSilence);
    if (found.first.coefficient() < 0.98) continue;
    whole.add(found.first);
    ++wholePieces;
    place = found.second + kPieceLength - 20;
  }
  return {whole.coefficient(), static_cast<double>(wholePieces) / static_cast<double>(pieces)};
}

}  // namespace speech::test
