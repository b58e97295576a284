#pragma once

#include <cstdint>
#include <string>

namespace lxapi {

/// What the catalogue says of one engine.
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

}  // namespace lxapi
