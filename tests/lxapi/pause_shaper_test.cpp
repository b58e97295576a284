#include "lxapi/bundled/pause_shaper.h"

#include <gtest/gtest.h>

namespace speech::lxapi {
namespace {

using Samples = std::vector<int16_t>;

struct Shaped {
  Samples output;
  PauseShaper shaper{1000, [this](std::span<const int16_t> samples) {
                       output.insert(output.end(), samples.begin(), samples.end());
                     }};
};

TEST(PauseShaper, AClausesQuietEndBecomesThePauseThatWasAskedFor) {
  Shaped shaped;
  shaped.shaper.write(Samples{500, 3, -2, 0});
  shaped.shaper.write(Samples{1, 1});
  shaped.shaper.endClause(3);
  shaped.shaper.write(Samples{700});
  shaped.shaper.endClause(0);
  shaped.shaper.write(Samples{600});
  EXPECT_EQ(shaped.output, (Samples{500, 0, 0, 0, 700, 600}));
  EXPECT_EQ(shaped.shaper.position(), 6U);
}

TEST(PauseShaper, QuietInTheMiddleOfAClausePassesUnchanged) {
  Shaped shaped;
  shaped.shaper.write(Samples{500, 3, -2});
  EXPECT_EQ(shaped.output, (Samples{500}));
  EXPECT_EQ(shaped.shaper.position(), 3U);
  shaped.shaper.write(Samples{0, 600, 5});
  shaped.shaper.flush();
  EXPECT_EQ(shaped.output, (Samples{500, 3, -2, 0, 600, 5}));
}

}  // namespace
}  // namespace speech::lxapi
