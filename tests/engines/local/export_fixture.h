#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/engines/local/local_engine_test.h"
#include "tests/support/export_traces.h"
#include "tests/support/file_content.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/wav_files.h"
#include "win32/paths.h"
#include "win32/text.h"

namespace speech::test {

/// A canonical WAV file of 16-bit mono samples.
inline std::string wavFile(int sampleRateHz, const std::string& samples) {
  const PcmFile file{.sampleRate = static_cast<std::uint32_t>(sampleRateHz),
                     .data = {samples.begin(), samples.end()}};
  const Bytes bytes = file.bytes();
  return {bytes.begin(), bytes.end()};
}

inline std::vector<std::wstring> namesIn(const std::filesystem::path& folder) {
  std::vector<std::wstring> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    names.push_back(entry.path().filename());
  std::ranges::sort(names);
  return names;
}

/// A local engine at 22050 Hz over the recording engine library, with folders of its own for results,
/// temporary files and a SoX that only says how it was called.
class Export : public LocalEngineTest {
 protected:
  static constexpr int kProductRateIndex = 2;

  void SetUp() override {
    LocalEngineTest::SetUp();
    std::string samples;
    for (int i = 0; i < 22050; ++i) {
      samples += static_cast<char>(i);
      samples += static_cast<char>(i / 97);
    }
    const std::string file = wavFile(22050, samples);
    recording().audio.assign(file.begin(), file.end());
    engine_->setToolFolder((tools_.path().wstring() + L"\\").c_str());
  }

  void installFakeSox() {
    std::filesystem::copy_file(executableFolder() / "fake_sox.exe", tools_ / "sox.exe");
  }

  static std::filesystem::path executableFolder() {
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::filesystem::path(path).parent_path();
  }

  std::vector<std::string> soxCalls() const { return traces_.soxCalls(); }
  std::string newLogText() const { return traces_.newLogText(); }

  /// The path of a result as the engine library, the rate converter and the log get it.
  static std::string narrow(const std::wstring& path) { return toSystemCodePage(path); }

  std::wstring destination(const std::wstring& name = L"out") const { return (results_ / name).wstring(); }

  TemporaryFolder results_{L"r\u00e9sultats"};
  TemporaryFolder temporary_{L"temp\u00f3"};
  TemporaryFolder tools_{L"tools"};
  ScopedEnvironment tmp_{L"TMP", temporary_.path().wstring()};
  ScopedEnvironment temp_{L"TEMP", temporary_.path().wstring()};
  ExportTraces traces_{tools_.path()};
};

}  // namespace speech::test
