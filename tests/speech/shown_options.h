#pragma once

#include <speech/options.h>

#include <string>

namespace speech::test {

struct Setting {
  int (TextToSpeech_Options::*get)() const;
  void (TextToSpeech_Options::*set)(int);
  int (TextToSpeech_Options::*getDefault)();
  void (TextToSpeech_Options::*setDefault)(int);
  void (TextToSpeech_Options::*getRange)(int&, int&);
  void (TextToSpeech_Options::*setRange)(int, int);
  const wchar_t* (TextToSpeech_Options::*toString)() const;
};

// clang-format off
#define SETTING(name)                                                                   \
  {&TextToSpeech_Options::get##name, &TextToSpeech_Options::set##name,                  \
   &TextToSpeech_Options::getDef##name, &TextToSpeech_Options::setDef##name,            \
   &TextToSpeech_Options::get##name##Range, &TextToSpeech_Options::set##name##Range,    \
   &TextToSpeech_Options::get##name##ToString}
// clang-format on
constexpr Setting kSettings[] = {SETTING(Speed), SETTING(Volume), SETTING(Pitch), SETTING(Pause),
                                 SETTING(CommaPause)};
#undef SETTING

/// Each setting's value, default, minimum, maximum and text; then format, ALD and whether it is changed.
inline std::string shown(TextToSpeech_Options& options) {
  std::string all;
  for (const Setting& setting : kSettings) {
    int minimum = 0, maximum = 0;
    (options.*setting.getRange)(minimum, maximum);
    for (const int number : {(options.*setting.get)(), (options.*setting.getDefault)(), minimum, maximum})
      all += std::to_string(number) + ' ';
    const std::wstring text = (options.*setting.toString)();
    all += std::string(text.begin(), text.end()) + "; ";
  }
  return all + std::to_string(options.getFormat()) + ' ' + std::to_string(options.getALDEnable()) +
         (options.isChanged() ? " changed" : "");
}

}  // namespace speech::test
