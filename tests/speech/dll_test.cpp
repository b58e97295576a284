// A host of the DLL itself: what crosses its boundary.

#include <speech/text_to_speech.h>

#include <gtest/gtest.h>

#include <speech/audio.h>

namespace {

TEST(Dll, ItsOneExceptionIsCaughtByTheHost) {
  try {
    ITextToSpeech::getISOListAt(-1);
    FAIL() << "no exception";
  } catch (CException* exception) {
    exception->Delete();
  }
}

TEST(Dll, TextsAndSamplesAreFreedByTheHost) {
  ITextToSpeech* const engine =
      ITextToSpeech::getInstance(nullptr, 0, ITextToSpeech::getLXAPIProductList()->GetHead());
  ASSERT_NE(engine, nullptr);
  EXPECT_FALSE(ITextToSpeech::getCurrentProduct()->getKeyLabel().IsEmpty());
  EXPECT_EQ(engine->escapeXml(L"<"), L"&lt;");
  unsigned char* samples = nullptr;
  EXPECT_GT(engine->synthesizeToBuffer(L"One.", false, &samples), 1000);
  ExternFree(samples);
  ITextToSpeech::releaseInstance();
}

}  // namespace
