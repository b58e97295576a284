#include "lxapi/bundled/installed_engines.h"

#include <windows.h>

#include <fstream>
#include <iterator>

#include "lxapi/bundled/engines_ini.h"
#include "lxapi/bundled/synthesizer.h"
#include "win32/paths.h"
#include "win32/text.h"

namespace speech::lxapi {
namespace {

constexpr const wchar_t* kEngineType = L"espeak";
constexpr const wchar_t* kMaker = L"eSpeak NG";

/// The voices are of one speaker; a variant changes its formants and pitch to a woman's.
struct Variety {
  const wchar_t* key2;  // No capital N: hosts take that letter for an engine that must be called differently.
  const wchar_t* gender;
  const char* variant;
};
constexpr Variety kVarieties[] = {{L"Male", L"M", ""}, {L"Female", L"F", "+f2"}};

constexpr std::uintmax_t kLargestIniBytes = 1'000'000;

void tellDebugger(const std::string& line) {
  OutputDebugStringW((L"liblxapi: " + fromUtf8(line) + L"\n").c_str());
}

void addSynthesizerVoices(std::vector<InstalledEngine>& engines, const std::filesystem::path& folder) {
  for (const SynthesizerVoice& voice : Synthesizer::instance().voices()) {
    const std::string language = formatLanguageCode(voice.language);
    for (const Variety& variety : kVarieties) {
      InstalledEngine engine;
      engine.key1 = fromUtf8(voice.name);
      engine.key2 = variety.key2;
      engine.text3 = fromUtf8(voice.identifier);
      engine.text4 = folder.wstring();
      engine.text5 = fromUtf8(language);
      engine.gender = variety.gender;
      engine.text7 = kMaker;
      engine.language = engine.text5;
      engine.engineType = kEngineType;
      engine.sampleRateHz = static_cast<int32_t>(kSynthesizerRateHz);
      engine.synthesizerVoice = voice.identifier + variety.variant;
      engines.push_back(std::move(engine));
    }
  }
}

void addListedEngines(std::vector<InstalledEngine>& engines, const std::filesystem::path& folder) {
  const std::filesystem::path path = folder / L"engines.ini";
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  if (error) return;
  if (size > kLargestIniBytes) return tellDebugger("engines.ini is too large to be a list of engines");
  std::ifstream file(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  EnginesIni ini = parseEnginesIni(text);
  for (const std::string& complaint : ini.complaints) tellDebugger(complaint);
  std::move(ini.engines.begin(), ini.engines.end(), std::back_inserter(engines));
}

std::wstring upperCase(std::wstring text) {
  CharUpperBuffW(text.data(), static_cast<DWORD>(text.size()));
  return text;
}

}  // namespace

InstalledEngines::InstalledEngines(const std::filesystem::path& folder) {
  const std::optional<std::string> dataFolder =
      narrowPath(folder.native(), CodePage::kSystem, Synthesizer::kLongestFolder);
  if (!Synthesizer::instance().start(dataFolder.value_or("")))
    tellDebugger("no voice data in " + toUtf8(folder.wstring()));
  std::vector<InstalledEngine> found;
  addSynthesizerVoices(found, folder);
  addListedEngines(found, folder);
  for (InstalledEngine& engine : found) {
    const Keys keys(upperCase(engine.key1), upperCase(engine.key2));
    // Two engines with the same keys could not be told apart; the first one stays.
    if (indexes_.emplace(keys, engines_.size()).second) {
      engines_.push_back(std::move(engine));
    } else {
      tellDebugger("two engines have the keys " + toUtf8(engine.key1 + L", " + engine.key2));
    }
  }
}

std::optional<size_t> InstalledEngines::find(std::string_view key1, std::string_view key2) const {
  const Keys wanted(upperCase(fromThreadCodePage(key1)), upperCase(fromThreadCodePage(key2)));
  if (const auto exact = indexes_.find(wanted); exact != indexes_.end()) return exact->second;
  // The caller's keys went through the code page, which may lack some of a name's letters: compare what is
  // left.
  const auto throughCodePage = [](const std::wstring& key) {
    return fromThreadCodePage(toThreadCodePage(key));
  };
  for (const auto& [keys, index] : indexes_) {
    if (throughCodePage(keys.second) == wanted.second && throughCodePage(keys.first) == wanted.first)
      return index;
  }
  return std::nullopt;
}

std::filesystem::path libraryFolder() {
  return std::filesystem::path(moduleFolder(thisModule())).parent_path();
}

}  // namespace speech::lxapi
