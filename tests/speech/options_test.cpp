#include <speech/options.h>

#include <gtest/gtest.h>

#include <climits>

#include "tests/speech/shown_options.h"

namespace speech::test {
namespace {

using Options = TextToSpeech_Options;

TEST(Options, AFreshRecordIsUnsetAndItsDefaultsAreNotEvenThat) {
  static Options options;  // what the constructor leaves alone is 0 in static memory
  EXPECT_EQ(shown(options), "-1 0 -1 -1 -1; -1 0 -1 -1 -1; -1 0 -1 -1 -1; -1 0 -1 -1 -1; -1 0 -1 -1 -1; 1 0");
  options.reset();
  EXPECT_EQ(shown(options), "0 0 -1 -1 0; 0 0 -1 -1 0; 0 0 -1 -1 0; 0 0 -1 -1 0; 0 0 -1 -1 0; 1 0 changed");
}

TEST(Options, EverySettingKeepsItsOwnNumbersUnchecked) {
  Options options;
  int number = 0;
  for (const Setting& setting : kSettings) {
    (options.*setting.setDefault)(number += 10);
    (options.*setting.setRange)(number + 2, number + 1);
  }
  EXPECT_FALSE(options.isChanged());
  for (const Setting& setting : kSettings) (options.*setting.set)(number += 10);
  EXPECT_EQ(shown(options),
            "60 10 12 11 60; 70 20 22 21 70; 80 30 32 31 80; 90 40 42 41 90; 100 50 52 51 100; 1 0 changed");
  Options copy;
  copy = options;
  EXPECT_EQ(shown(copy), shown(options));
  copy.reset();
  EXPECT_EQ(shown(copy),
            "10 10 12 11 10; 20 20 22 21 20; 30 30 32 31 30; 40 40 42 41 40; 50 50 52 51 50; 1 0 changed");
}

TEST(Options, OnlyADifferentValueMarksTheRecordChanged) {
  Options options;
  for (const Setting& setting : kSettings) (options.*setting.setDefault)(-1);
  const auto expectMark = [&](auto change, bool isMarked) {
    change();
    EXPECT_EQ(options.isChanged(), isMarked);
    options.applied();
  };
  for (const Setting& setting : kSettings) {
    expectMark([&] { (options.*setting.set)(-1); }, false);
    expectMark([&] { (options.*setting.set)(INT_MIN); }, true);
    EXPECT_STREQ((options.*setting.toString)(), L"-2147483648");
    expectMark([&] { options.reset(); }, true);
  }
  expectMark([&] { options.setFormat(Options::OPTION_FORMAT_DEFAULT), options.setALDEnable(0); }, false);
  expectMark([&] { options.reset(); }, false);
  for (int which = 0; which < 2; ++which) {
    expectMark([&] { which == 0 ? options.setFormat(Options::OPTION_FORMAT{7}) : options.setALDEnable(1); },
               true);
    expectMark([&] { options.reset(); }, true);
  }
  options.setALDEnable(1);
  options.reset();
  options.reset();
  EXPECT_TRUE(options.isChanged()) << "reset never clears the mark";
  EXPECT_EQ(shown(options).substr(shown(options).rfind(';')), "; 1 0 changed");
}

}  // namespace
}  // namespace speech::test
