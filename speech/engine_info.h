#pragma once

#include <speech/product.h>

/// What a product is made from.
struct LXAPIProduct::EngineInfo {
  // What the engine library's enumeration reports.
  CStringW engineKey1;
  CStringW engineKey2;
  CStringW infoText3;
  CStringW infoText4;
  CStringW infoText5;
  CStringW genderCode;
  CStringW infoText7;
  int sampleRateHz = 0;
  int infoNumber9 = 0;
  CStringW languageCode;
  CStringW engineType;

  /// Where the user's documents lie, without a trailing backslash; empty when that is unknown.
  CStringW documentsFolder;
};
