// What the synthesizer really says: events among its samples, and pauses. No sound device takes part.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "lxapi/bundled/speech_renderer.h"
#include "lxapi/bundled/synthesizer.h"

namespace speech::lxapi {
namespace {

struct Rendering : SpeechSink {
  explicit Rendering(const std::string& text, bool isSsml) {
    EXPECT_TRUE(Synthesizer::instance().start(ESPEAK_FOLDER));
    VoiceSettings settings;
    settings.commaPauseMs = 200;
    settings.sentencePauseMs = 500;
    EXPECT_EQ(renderSpeech({text, isSsml, "gmw/en-US", settings, {}}, *this, {}), LX_OK);
  }
  bool samples(std::span<const int16_t> samples) override {
    sound.insert(sound.end(), samples.begin(), samples.end());
    return true;
  }
  void event(const SpeechEvent& event) override { events.push_back(event); }

  std::vector<int16_t> sound;
  std::vector<SpeechEvent> events;
};

TEST(Rendering, EventsOfTheCallersTextLieWhereTheirSoundBegins) {
  // The synthesizer gets a text of this length in two pieces, cut behind its first sentence.
  const std::string blanks(400, ' ');
  const std::string text = "<speak>Hello, w\xC3\xB6rld &amp; you. " + blanks +
                           "\xF0\x9D\x92\xB3 <mark name=\"#m\"/>isn't<mark name=\"#n\"/></speak>";
  const std::u16string utf16 = u"<speak>Hello, w\u00F6rld &amp; you. " +
                               std::u16string(blanks.begin(), blanks.end()) +
                               u"\U0001D4B3 <mark name=\"#m\"/>isn't<mark name=\"#n\"/></speak>";
  const Rendering rendering(text, true);
  std::vector<std::u16string> heard;
  std::vector<uint64_t> frames;
  for (const SpeechEvent& event : rendering.events) {
    heard.push_back(event.name.empty() ? utf16.substr(event.offset, event.length)
                                       : std::u16string(event.name.begin(), event.name.end()));
    frames.push_back(event.frame);
  }
  ASSERT_THAT(heard, testing::ElementsAre(u"Hello, w\u00F6rld &amp; you.", u"Hello", u"w\u00F6rld", u"&amp;",
                                          u"you", u"\U0001D4B3 <mark name=\"#m\"/>isn't", u"\U0001D4B3",
                                          u"#m", u"isn't", u"#n"));
  std::vector<std::pair<double, double>> sounds;  // where one begins, and how long it was quiet before
  for (size_t frame = 0, quiet = 0; frame < rendering.sound.size(); ++frame, ++quiet) {
    if (std::abs(rendering.sound[frame]) <= 32) continue;
    if (quiet > kSynthesizerRateHz / 6) sounds.emplace_back(frame, quiet);
    quiet = 0;
  }
  ASSERT_EQ(sounds.size(), 2U);
  EXPECT_NEAR(sounds[0].first, static_cast<double>(frames[2]), 100);
  EXPECT_NEAR(sounds[0].second, 0.2 * kSynthesizerRateHz, 100);
  EXPECT_NEAR(sounds[1].first, static_cast<double>(frames[6]), 100);
  EXPECT_NEAR(sounds[1].second, 0.5 * kSynthesizerRateHz, 100);
}

}  // namespace
}  // namespace speech::lxapi
