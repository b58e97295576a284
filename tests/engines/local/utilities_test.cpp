#include "tests/engines/local/local_engine_test.h"
#include "tests/support/file_content.h"
#include "tests/support/temporary_folder.h"

namespace speech::test {
namespace {

using LocalUtilities = LocalEngineTest;

TEST_F(LocalUtilities, SampleRatesByIndex) {
  const int rates[] = {-1, 8000, 16000, 22050, 44100, 48000, -1};
  for (int index = -1; index <= 5; ++index) EXPECT_EQ(engine_->getSampleRate(index), rates[index + 1]);
}

TEST_F(LocalUtilities, XmlIsEscapedOnceMoreEachTime) {
  EXPECT_EQ(engine_->escapeXml(L"<a href='x'>\"&amp;"), L"&lt;a href=&apos;x&apos;&gt;&quot;&amp;amp;");
  EXPECT_EQ(engine_->escapeXml(L""), L"");
}

TEST_F(LocalUtilities, AWavHeaderGoesToAPathOfTheThreadsCodePage) {
  const TemporaryFolder folder;
  const std::wstring path = (folder / L"caf\u00e9.wav").wstring();
  EXPECT_EQ(engine_->makeWavHeader(path.c_str(), 1000, 16000, 16, 1), 0);
  EXPECT_EQ(readFile(path).size(), 44u);
  EXPECT_EQ(engine_->makeWavHeader(path.c_str(), 1000, 16000, 24, 1), -1);
  EXPECT_EQ(engine_->makeWavHeader(nullptr, 1000, 16000, 16, 1), -1);
}

}  // namespace
}  // namespace speech::test
