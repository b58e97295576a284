#include "tests/engines/local/local_engine_test.h"
#include "tests/support/file_content.h"
#include "tests/support/temporary_folder.h"

namespace speech::test {
namespace {

using LocalUtilities = LocalEngineTest;

TEST_F(LocalUtilities, WavFilesArePathsOfTheSystemsCodePage) {
  const TemporaryFolder folder;
  const std::wstring input = (folder / L"caf\u00e9.wav").wstring();
  const std::wstring output = (folder / L"\u00e0.wav").wstring();
  ASSERT_EQ(engine_->makeWavHeader(input.c_str(), 16000, 16000, 16, 1), 0);
  EXPECT_EQ(readFile(input).size(), 44u);
  writeFile(input, readFile(input) + std::string(16000, '\0'));
  EXPECT_EQ(engine_->convertWavRate(input.c_str(), 8000, 16, 1, output.c_str()), 1);
  EXPECT_NEAR(static_cast<double>(readFile(output).size()), 44 + 8000, 16);
}

}  // namespace
}  // namespace speech::test
