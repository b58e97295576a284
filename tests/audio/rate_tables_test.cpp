// The numbers behind the rate converter: conversion parameters and filter tables.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <numbers>
#include <vector>

#include "audio/rate_filters.h"
#include "audio/rate_parameters.h"

namespace rate {

void PrintTo(const Parameters& row, std::ostream* out) {
  *out << row.step << ' ' << row.coefStep << ' ' << row.gainSmall << ' ' << row.gainLarge << ' '
       << row.guardSmall << ' ' << row.guardLarge;
}

namespace {

struct RateRow {
  std::int32_t inputRate;
  std::int32_t outputRate;
  Parameters parameters;
};

TEST(RateParameters, AreTheKnownRows) {
  for (const auto& [inputRate, outputRate, parameters] : {
           RateRow{8000, 16000, {16384, 32768, 12471, 14008, 17, 43}},
           RateRow{16000, 8000, {65536, 16384, 6236, 7004, 24, 76}},
           RateRow{22050, 16000, {45158, 23777, 9049, 10165, 19, 55}},
           RateRow{48000, 6000, {262144, 4096, 1559, 1751, 66, 274}},
           RateRow{48000, 8000, {196608, 5461, 2079, 2335, 52, 208}},
           RateRow{48000, 16000, {98304, 10923, 4157, 4669, 31, 109}},
           RateRow{32075, 32075, {32768, 32768, 12471, 14008, 17, 43}},
           // By the rule: a stored row's ratio, but rates that have no row.
           RateRow{24000, 4000, {196608, 5461, 2079, 2335, 51, 207}},
           RateRow{12000, 24000, {16384, 32768, 12471, 14008, 17, 43}},
       }) {
    EXPECT_EQ(parametersFor(inputRate, outputRate), parameters);
  }
}

TEST(RateParameters, EndWhereTheirFieldsDo) {
  // 65536 + 43 would pass for a guard of 43 if the upper bits were lost.
  EXPECT_EQ(parametersFor(20000, 10).value().guardLarge, std::numeric_limits<std::uint16_t>::max());
  constexpr auto kLargest = std::numeric_limits<std::int32_t>::max();
  for (const auto& [inputRate, outputRate] :
       {std::pair{1, 65537}, {1, kLargest}, {kLargest, 1}, {32768, 1}}) {
    EXPECT_FALSE(parametersFor(inputRate, outputRate));
  }
  EXPECT_TRUE(parametersFor(32767, 1));
}

TEST(RateFilters, HoldKnownNumbers) {
  const auto some = [](std::span<const std::int16_t> table) {
    return std::vector<int>{table[1], table[2], table[3], table[7], table[256], table.back()};
  };
  EXPECT_EQ(smallFilter().coef.size(), 1536u);
  EXPECT_EQ(largeFilter().coef.size(), 8192u);
  EXPECT_EQ(some(smallFilter().coef), (std::vector{32766, 32764, 32760, 32731, 3180, -1}));
  EXPECT_EQ(some(largeFilter().coef), (std::vector{32766, 32764, 32761, 32734, 3566, 0}));
}

class RateFilterTables : public testing::TestWithParam<const Filter*> {};

// Another road to the same design: the square root taken, the Bessel function summed term by term, libm's
// sine.
TEST_P(RateFilterTables, AreAWindowedSinc) {
  const auto bessel = [](long double x) {
    long double sum = 1, term = 1;
    for (int k = 1; k < 60; ++k) sum += term *= (x / 2 / k) * (x / 2 / k);
    return sum;
  };
  const auto length = static_cast<long double>(GetParam()->coef.size() - 1);
  for (std::size_t i = 0; i < GetParam()->coef.size(); ++i) {
    const auto place = static_cast<long double>(i);
    const long double angle = std::numbers::pi_v<long double> * 0.9L * place / 256;
    const long double sinc = i == 0 ? 1 : std::sin(angle) / angle;
    const long double window = bessel(9 * std::sqrt(1 - place * place / (length * length))) / bessel(9);
    ASSERT_EQ(GetParam()->coef[i], static_cast<int>(32767 * sinc * window + 0.5L)) << i;
  }
}

TEST_P(RateFilterTables, KnowTheNextEntryAndTheLargestStillToCome) {
  const auto& [coef, coefDelta, peaks] = *GetParam();
  ASSERT_EQ(coefDelta.size(), coef.size());
  ASSERT_EQ(peaks.size() * kPeakSpacing, coef.size());
  for (std::size_t i = 0; i < coef.size(); ++i) {
    ASSERT_EQ(coef[i] + coefDelta[i], i + 1 < coef.size() ? coef[i + 1] : 0) << i;
  }
  for (std::size_t i = 0; i < peaks.size(); ++i) {
    const auto [lowest, highest] = std::ranges::minmax(coef.subspan(i * kPeakSpacing));
    ASSERT_EQ(peaks[i], std::max(std::abs(lowest), std::abs(highest))) << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Both, RateFilterTables, testing::Values(&smallFilter(), &largeFilter()));

}  // namespace
}  // namespace rate
