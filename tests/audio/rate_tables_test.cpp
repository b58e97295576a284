// The numbers behind the rate converter: conversion parameters and filter tables.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <numbers>
#include <tuple>
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

class RateParameters : public testing::TestWithParam<RateRow> {};

TEST_P(RateParameters, AreTheKnownRow) {
  EXPECT_EQ(parametersFor(GetParam().inputRate, GetParam().outputRate), GetParam().parameters);
}

INSTANTIATE_TEST_SUITE_P(Rows, RateParameters,
                         testing::Values(RateRow{8000, 16000, {16384, 32768, 12471, 14008, 17, 43}},
                                         RateRow{16000, 8000, {65536, 16384, 6236, 7004, 24, 76}},
                                         RateRow{22050, 16000, {45158, 23777, 9049, 10165, 19, 55}},
                                         RateRow{48000, 6000, {262144, 4096, 1559, 1751, 66, 274}},
                                         RateRow{48000, 8000, {196608, 5461, 2079, 2335, 52, 208}},
                                         RateRow{48000, 16000, {98304, 10923, 4157, 4669, 31, 109}},
                                         RateRow{32075, 32075, {32768, 32768, 12471, 14008, 17, 43}},
                                         // By the rule: a stored row's ratio, but rates that have no row.
                                         RateRow{24000, 4000, {196608, 5461, 2079, 2335, 51, 207}},
                                         RateRow{12000, 24000, {16384, 32768, 12471, 14008, 17, 43}}));

TEST(RateParameters, GuardsTooLongForTheirFieldStayTooLong) {
  // 65536 + 43 would pass for a guard of 43 if the upper bits were lost.
  const auto far = parametersFor(20000, 10);
  ASSERT_TRUE(far);
  EXPECT_EQ(far->guardLarge, std::numeric_limits<std::uint16_t>::max());
}

TEST(RateParameters, RatesTooFarApartForTheClockHaveNone) {
  EXPECT_FALSE(parametersFor(1, 65537));
  EXPECT_FALSE(parametersFor(1, std::numeric_limits<std::int32_t>::max()));
  EXPECT_FALSE(parametersFor(std::numeric_limits<std::int32_t>::max(), 1));
  EXPECT_FALSE(parametersFor(32768, 1));
  EXPECT_TRUE(parametersFor(32767, 1));
}

std::vector<int> firstEight(std::span<const std::int16_t> table) {
  return {table.begin(), table.begin() + 8};
}

TEST(RateFilters, SmallStartsAndEndsAsKnown) {
  const Filter& filter = smallFilter();
  ASSERT_EQ(filter.coef.size(), 1536u);
  EXPECT_EQ(firstEight(filter.coef), (std::vector{32767, 32766, 32764, 32760, 32755, 32749, 32741, 32731}));
  EXPECT_EQ(firstEight(filter.coefDelta), (std::vector{-1, -2, -4, -5, -6, -8, -10, -10}));
  EXPECT_EQ(filter.coef[256], 3180);
  EXPECT_EQ(filter.coef[1534], -1);
  EXPECT_EQ(filter.coef[1535], -1);
  EXPECT_EQ(filter.coefDelta[1535], 1);
}

TEST(RateFilters, LargeStartsAndEndsAsKnown) {
  const Filter& filter = largeFilter();
  ASSERT_EQ(filter.coef.size(), 8192u);
  EXPECT_EQ(firstEight(filter.coef), (std::vector{32767, 32766, 32764, 32761, 32756, 32750, 32743, 32734}));
  EXPECT_EQ(firstEight(filter.coefDelta), (std::vector{-1, -2, -3, -5, -6, -7, -9, -10}));
  EXPECT_EQ(filter.coef[256], 3566);
  EXPECT_EQ(filter.coef[8191], 0);
  EXPECT_EQ(filter.coefDelta[8191], 0);
}

TEST(RateFilters, SmallChangesSignWhereTheCutoffPutsIt) {
  const auto coef = smallFilter().coef;
  std::vector<std::size_t> changes;
  int sign = 1;
  for (std::size_t i = 0; i < coef.size() && changes.size() < 4; ++i) {
    if (coef[i] * sign >= 0) continue;
    changes.push_back(i);
    sign = -sign;
  }
  EXPECT_EQ(changes, (std::vector<std::size_t>{285, 569, 854, 1139}));
}

class RateFilterTables : public testing::TestWithParam<const Filter*> {};

TEST_P(RateFilterTables, DeltasLeadToTheNextEntry) {
  const Filter& filter = *GetParam();
  ASSERT_EQ(filter.coefDelta.size(), filter.coef.size());
  for (std::size_t i = 0; i < filter.coef.size(); ++i) {
    const int next = i + 1 < filter.coef.size() ? filter.coef[i + 1] : 0;
    ASSERT_EQ(filter.coef[i] + filter.coefDelta[i], next) << i;
  }
}

TEST_P(RateFilterTables, PeaksAreTheLargestStillToCome) {
  const auto& [coef, coefDelta, peaks] = *GetParam();
  ASSERT_EQ(peaks.size() * kPeakSpacing, coef.size());
  for (std::size_t i = 0; i < peaks.size(); ++i) {
    const auto rest = coef.subspan(i * kPeakSpacing);
    const auto [lowest, highest] = std::ranges::minmax(rest);
    ASSERT_EQ(peaks[i], std::max(std::abs(lowest), std::abs(highest))) << i;
  }
}

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

// Both bounds keep the converter's 32-bit sums from overflowing and its 16-bit products exact.
TEST_P(RateFilterTables, StayWithinTheBoundsOfTheArithmetic) {
  const auto& coef = GetParam()->coef;
  for (std::size_t phase = 0; phase < 256; ++phase) {
    int magnitudes = 0;
    for (std::size_t i = phase; i < coef.size(); i += 256) magnitudes += std::abs(coef[i]);
    ASSERT_LT(magnitudes, 2 * 32767);
  }
  for (std::size_t i = 256; i < coef.size(); ++i) ASSERT_LT(std::abs(coef[i]), 16384);
}

INSTANTIATE_TEST_SUITE_P(Both, RateFilterTables, testing::Values(&smallFilter(), &largeFilter()));

}  // namespace
}  // namespace rate
