#include "service/places.h"

#include <gtest/gtest.h>

#include <future>

namespace speech::service {
namespace {

using namespace std::chrono_literals;

TEST(Places, LongTextsLeaveHalfOfThemToShortOnes) {
  Places places(4);
  const auto long1 = places.enter(true, 0ms);
  auto long2 = places.enter(true, 0ms);
  ASSERT_TRUE(long1 && long2);
  EXPECT_FALSE(places.enter(true, 0ms));
  const auto short1 = places.enter(false, 0ms);
  const auto short2 = places.enter(false, 0ms);
  EXPECT_TRUE(short1 && short2);
  EXPECT_FALSE(places.enter(false, 0ms));
  long2.reset();
  EXPECT_TRUE(places.enter(true, 0ms));
}

TEST(Places, WhoeverWaitsGetsTheOneThatBecomesFreeEvenForALongText) {
  Places places(1);
  auto place = places.enter(false, 0ms);
  EXPECT_FALSE(places.enter(false, 0ms));
  auto waiting = std::async(std::launch::async, [&] { return places.enter(true, 60s).has_value(); });
  place.reset();
  EXPECT_TRUE(waiting.get());
}

}  // namespace
}  // namespace speech::service
