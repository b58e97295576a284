#pragma once

// Reads engines.ini, the list of further engines beside the DLL. The file shipped with it explains its rules.

#include <string>
#include <string_view>
#include <vector>

#include "lxapi/bundled/installed_engine.h"

namespace lxapi {

struct EnginesIni {
  std::vector<InstalledEngine> engines;
  /// One line for each thing that was ignored: its line number and why.
  std::vector<std::string> complaints;
};

/// Never fails: what cannot be understood is left out and complained of.
EnginesIni parseEnginesIni(std::string_view text);

}  // namespace lxapi
