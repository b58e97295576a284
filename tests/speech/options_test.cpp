#include <speech/options.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using Options = TextToSpeech_Options;

struct Setting {
  const char* name;
  int (Options::*get)() const;
  void (Options::*set)(int);
  int (Options::*getDefault)();
  void (Options::*setDefault)(int);
  void (Options::*getRange)(int&, int&);
  void (Options::*setRange)(int, int);
  const wchar_t* (Options::*toString)() const;
};

#define SETTING(name)                                                                                \
  {                                                                                                  \
#name, &Options::get##name, &Options::set##name, &Options::getDef##name, &Options::setDef##name, \
        &Options::get##name##Range, &Options::set##name##Range, &Options::get##name##ToString        \
  }

constexpr Setting kSettings[] = {SETTING(Speed), SETTING(Volume), SETTING(Pitch), SETTING(Pause),
                                 SETTING(CommaPause)};

Options withDefaults(int value) {
  Options options;
  for (const Setting& setting : kSettings) (options.*setting.setDefault)(value);
  return options;
}

TEST(Options, AFreshRecordIsUnsetAndUnchanged) {
  Options options;
  for (const Setting& setting : kSettings) {
    int minimum = 0, maximum = 0;
    (options.*setting.getRange)(minimum, maximum);
    EXPECT_EQ((options.*setting.get)(), -1) << setting.name;
    EXPECT_EQ(minimum, -1) << setting.name;
    EXPECT_EQ(maximum, -1) << setting.name;
    EXPECT_STREQ((options.*setting.toString)(), L"-1") << setting.name;
  }
  EXPECT_EQ(options.getFormat(), 1);
  EXPECT_EQ(options.getALDEnable(), 0);
  EXPECT_FALSE(options.isChanged());
}

TEST(Options, EverySettingKeepsItsOwnNumbersUnchecked) {
  Options options;
  int number = 0;
  for (const Setting& setting : kSettings) {
    number += 100;
    (options.*setting.setDefault)(number);
    (options.*setting.setRange)(number + 10, number + 5);
  }
  EXPECT_FALSE(options.isChanged());
  for (const Setting& setting : kSettings) (options.*setting.set)(number += 100);
  number = 0;
  for (const Setting& setting : kSettings) {
    number += 100;
    int minimum = 0, maximum = 0;
    (options.*setting.getRange)(minimum, maximum);
    EXPECT_EQ((options.*setting.getDefault)(), number) << setting.name;
    EXPECT_EQ(minimum, number + 10) << setting.name;
    EXPECT_EQ(maximum, number + 5) << setting.name;
    EXPECT_EQ((options.*setting.get)(), number + 500) << setting.name;
    EXPECT_EQ((options.*setting.toString)(), std::to_wstring(number + 500)) << setting.name;
  }
}

TEST(Options, OnlyADifferentValueMarksTheRecordChanged) {
  for (const Setting& setting : kSettings) {
    Options options;
    (options.*setting.set)(-1);
    EXPECT_FALSE(options.isChanged()) << setting.name;
    (options.*setting.set)(-2147483647 - 1);
    EXPECT_TRUE(options.isChanged()) << setting.name;
    EXPECT_STREQ((options.*setting.toString)(), L"-2147483648");
    options.applied();
    EXPECT_FALSE(options.isChanged()) << setting.name;
  }
  Options options;
  options.setFormat(Options::OPTION_FORMAT_DEFAULT);
  options.setALDEnable(0);
  EXPECT_FALSE(options.isChanged());
  options.setFormat(static_cast<Options::OPTION_FORMAT>(7));
  EXPECT_TRUE(options.isChanged());
  options.applied();
  options.setALDEnable(1);
  EXPECT_TRUE(options.isChanged());
}

TEST(Options, ResetRestoresFormatAldAndDefaultsThatWereNeverSet) {
  static Options options;  // what the constructor leaves unset is 0 in static memory
  options.setFormat(static_cast<Options::OPTION_FORMAT>(7));
  options.setALDEnable(1);
  options.applied();
  options.reset();
  EXPECT_EQ(options.getFormat(), 1);
  EXPECT_EQ(options.getALDEnable(), 0);
  for (const Setting& setting : kSettings) EXPECT_EQ((options.*setting.get)(), 0) << setting.name;
  EXPECT_TRUE(options.isChanged());
}

TEST(Options, ResetRestoresDefaultsAndNeverClearsTheFlagWhichACopyTakesAlong) {
  for (const Setting& setting : kSettings) {
    Options options = withDefaults(50);
    options.reset();
    options.applied();
    options.reset();
    EXPECT_FALSE(options.isChanged()) << setting.name;
    (options.*setting.setDefault)(60);
    for (int round = 0; round < 2; ++round) {
      options.reset();
      EXPECT_TRUE(options.isChanged()) << setting.name;
      EXPECT_EQ((options.*setting.get)(), 60) << setting.name;
    }
    Options copy;
    copy = options;
    EXPECT_TRUE(copy.isChanged());
    EXPECT_EQ((copy.*setting.get)(), 60);
    EXPECT_EQ((copy.*setting.getDefault)(), 60);
  }
}

}  // namespace
