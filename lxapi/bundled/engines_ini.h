#pragma once

// What is known of an installed engine, and engines.ini, the list of further engines beside the DLL. The file
// that is shipped explains its rules.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace speech::lxapi {

struct InstalledEngine {
  std::wstring key1;  ///< The voice's name.
  std::wstring key2;  ///< The variety; engines that share key 1 differ in it.
  std::wstring text3;
  std::wstring text4;
  std::wstring text5;
  std::wstring gender;
  std::wstring text7;
  std::wstring language;
  std::wstring engineType;
  int32_t sampleRateHz = 0;
  int32_t number9 = 16;          ///< Bits per sample.
  std::string synthesizerVoice;  ///< Empty for an engine that speaks elsewhere, such as a cloud voice.
};

struct EnginesIni {
  std::vector<InstalledEngine> engines;
  /// One line for each thing that was ignored: its line number and why.
  std::vector<std::string> complaints;
};

/// Never fails: what cannot be understood is left out, with a complaint.
EnginesIni parseEnginesIni(std::string_view text);

/// A language tag in its usual letter case: "en-us" becomes "en-US", "zh-hant" "zh-Hant", "en-gb-x-rp"
/// "en-GB-x-rp".
std::string formatLanguageCode(std::string_view tag);

}  // namespace speech::lxapi
