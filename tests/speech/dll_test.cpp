// A host of the DLL itself: what crosses its boundary.

#include <speech/text_to_speech.h>

#include <gtest/gtest.h>

#include <speech/audio.h>

namespace {

class Dll : public ::testing::Test {
 protected:
  void TearDown() override { ITextToSpeech::releaseInstance(); }
};

TEST_F(Dll, ItsOneExceptionIsCaughtByTheHost) {
  try {
    ITextToSpeech::getISOListAt(-1);
    FAIL() << "no exception";
  } catch (CException* exception) {
    exception->Delete();
  }
}

TEST_F(Dll, VoicesAndTheirTextsAreTheHosts) {
  LXAPIProductList* const voices = ITextToSpeech::getLXAPIProductList();
  ASSERT_NE(voices, nullptr);
  EXPECT_GT(voices->GetCount(), 200);
  for (POSITION at = voices->GetHeadPosition(); at != nullptr;) {
    LXAPIProduct* const voice = voices->GetNext(at);
    EXPECT_FALSE(voice->getKeyLabel().IsEmpty());
    EXPECT_FALSE(voice->getLanguageCode().IsEmpty());
  }
  EXPECT_GT(ITextToSpeech::getISOListCount(), 50);
}

TEST_F(Dll, SamplesAreFreedByTheHost) {
  ITextToSpeech* const engine =
      ITextToSpeech::getInstance(nullptr, 0, ITextToSpeech::getLXAPIProductList()->GetHead());
  ASSERT_NE(engine, nullptr);
  EXPECT_EQ(engine->escapeXml(L"<"), L"&lt;");
  unsigned char* samples = nullptr;
  const int size = engine->synthesizeToBuffer(L"One.", false, &samples);
  EXPECT_GT(size, 1000);
  ASSERT_NE(samples, nullptr);
  EXPECT_EQ(samples[size], 0);
  ExternFree(samples);
}

}  // namespace
