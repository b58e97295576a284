#include "tests/engines/local/local_engine_test.h"
#include "tests/support/file_content.h"
#include "tests/support/scoped_environment.h"
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

TEST_F(LocalUtilities, TheDictionaryEditorGetsTheFileInQuotesAndTheRestAsItStands) {
  const TemporaryFolder folder;
  const ScopedEnvironment log(L"FAKE_SOX_LOG", (folder / L"calls").wstring());
  const ScopedEnvironment mode(L"FAKE_SOX_MODE", L"fail");
  wchar_t program[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  LXAPIProduct* const product = ITextToSpeech::getCurrentProduct();
  product->setUserDictEditorPath(std::filesystem::path(program).replace_filename("fake_sox.exe").c_str());
  product->setUserDictPath3(L"C:\\my words.csv");

  EXPECT_TRUE(engine_->runUserDictEditor(L"", L" /edit now"));
  EXPECT_TRUE(engine_->runUserDictEditor(L"D:\\other.csv", nullptr));
  const std::string calls = readFile(folder / L"calls");
  EXPECT_THAT(calls, ::testing::HasSubstr(" \"C:\\my words.csv\" /edit now\n"));
  EXPECT_THAT(calls, ::testing::HasSubstr(" \"D:\\other.csv\"\n"));

  product->setUserDictEditorPath(L"C:\\no such editor.exe");
  EXPECT_FALSE(engine_->runUserDictEditor(L"", L""));
}

}  // namespace
}  // namespace speech::test
