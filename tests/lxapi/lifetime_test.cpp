// Nothing is left behind by many speeches.

#include <gtest/gtest.h>

#include <iostream>

#include "tests/lxapi/session.h"
#include "tests/support/process_figures.h"

namespace speech::test {
namespace {

/// Runs a cycle often; a leak of one thing in each would be far more than what is allowed for the sound
/// system.
template <class Cycle>
void expectNothingLeftBy(int cycles, Cycle cycle) {
  for (int warmUp = 0; warmUp < cycles / 6; ++warmUp) cycle();
  const ProcessFigures before = ProcessFigures::now();
  for (int i = 0; i < cycles; ++i) cycle();
  const ProcessFigures after = ProcessFigures::now();
  std::cout << "[ measured ] before: " << before << "; after " << cycles << " cycles: " << after << "\n";
  const auto allowed = static_cast<std::size_t>(cycles) / 2;
  EXPECT_LT(after.handles, before.handles + allowed);
  EXPECT_LE(after.threads, before.threads + 2);
  EXPECT_LT(after.committedBytes, before.committedBytes + (4 << 20));
}

TEST(Lifetime, ManySpeechesLeaveNoHandleThreadOrMemory) {
  const Session session;
  expectNothingLeftBy(60, [&] {
    ASSERT_EQ(session.speak("A sentence of which little is heard."), LX_OK);
    ASSERT_EQ(LXAPI_Stop(session.tts), LX_OK);
  });
}

TEST(Lifetime, StartingAndEndingTheLibraryLeavesNothing) {
  expectNothingLeftBy(30, [] {
    const Session session;
    ASSERT_EQ(session.speak("One."), LX_OK);
    ASSERT_FALSE(session.samples("One.").empty());
  });
}

}  // namespace
}  // namespace speech::test
