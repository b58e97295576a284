#pragma once

// The installed engines: two for each voice of the synthesizer, then those of engines.ini.

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lxapi/bundled/engines_ini.h"

namespace speech::lxapi {

class InstalledEngines {
 public:
  /// Looks for engines. @param folder  the DLL's own, where the voice data and engines.ini lie
  explicit InstalledEngines(const std::filesystem::path& folder);

  const std::vector<InstalledEngine>& engines() const { return engines_; }

  /// Index of the engine that the two keys name, in the thread's code page and without regard to case.
  std::optional<size_t> find(std::string_view key1, std::string_view key2) const;

 private:
  using Keys = std::pair<std::wstring, std::wstring>;

  std::vector<InstalledEngine> engines_;
  std::map<Keys, size_t> indexes_;  ///< By the keys in upper case.
};

/// The folder of the DLL that holds this code.
std::filesystem::path libraryFolder();

}  // namespace speech::lxapi
