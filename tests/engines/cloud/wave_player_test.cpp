#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <memory>

#include "engines/cloud/wave_player.h"
#include "engines/shared/module_state.h"
#include "tests/engines/cloud/test_sounds.h"
#include "tests/engines/cloud/wav_bytes.h"
#include "tests/support/file_content.h"
#include "tests/support/handle_count.h"
#include "tests/support/host_window.h"
#include "tests/support/temporary_folder.h"

namespace speech {
namespace {

using test::Notice;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kRateHz = 22050;
constexpr Notice kStarted = {kNoticePlaybackStarted, kDetailPlaybackStarted};
constexpr Notice kEnded = {kNoticePlaybackEnded, kDetailPlaybackEnded};

/// Longer than anything that might still be under way.
constexpr DWORD kQuietMilliseconds = 300;

class WavePlayerTest : public testing::Test {
 protected:
  WavePlayerTest() {
    g_hostWindow = host_.handle();
    g_noticeMessage = test::HostWindow::kNoticeMessage;
    g_endNoticeHeld = false;
  }

  std::wstring soundFile(double seconds, const wchar_t* name = L"sound.wav") {
    return file(
        name, test::wavFile(std::vector<std::int16_t>(static_cast<std::size_t>(kRateHz * seconds)), kRateHz));
  }

  std::wstring file(const wchar_t* name, std::string_view content) {
    const auto path = folder_ / name;
    test::writeFile(path, content);
    return path.wstring();
  }

  std::vector<Notice> noticesUntilQuiet() {
    Sleep(kQuietMilliseconds);
    return host_.takeNotices();
  }

  test::TemporaryFolder folder_;
  test::HostWindow host_;
  std::unique_ptr<WavePlayer> player_ = std::make_unique<WavePlayer>();
};

TEST_F(WavePlayerTest, OpensTheDeviceOnceAndForAHostWindowOnly) {
  g_hostWindow = nullptr;
  EXPECT_EQ(player_->openDevice(), WavePlayer::kNoHostWindow);
  EXPECT_FALSE(player_->playFile(soundFile(0.1).c_str()));
  g_hostWindow = host_.handle();
  EXPECT_EQ(player_->openDevice(), WavePlayer::kOpened);
  EXPECT_EQ(player_->openDevice(), WavePlayer::kAlreadyOpen);
  player_->close();
  EXPECT_EQ(player_->openDevice(), WavePlayer::kOpened);
}

class OpenPlayer : public WavePlayerTest {
 protected:
  OpenPlayer() { EXPECT_EQ(player_->openDevice(), WavePlayer::kOpened); }
};

TEST_F(OpenPlayer, PostsOneStartAndOneEndNotice) {
  for (int round = 0; round < 3; ++round) {
    ASSERT_TRUE(player_->playFile(soundFile(0.2).c_str()));
    EXPECT_EQ(host_.waitForNotice(), kStarted);
    EXPECT_EQ(host_.waitForNotice(), kEnded);
  }
  EXPECT_THAT(noticesUntilQuiet(), IsEmpty());
  player_->stop();
  EXPECT_THAT(noticesUntilQuiet(), IsEmpty());
}

TEST_F(OpenPlayer, PostsBothNoticesForTheShortestSound) {
  for (int round = 0; round < 20; ++round) {
    ASSERT_TRUE(
        player_->playFile(file(L"short.wav", test::wavFile(test::pcmFormat(1, 8000, 8), "abcd")).c_str()));
    EXPECT_EQ(host_.waitForNotice(), kStarted);
    EXPECT_EQ(host_.waitForNotice(), kEnded);
  }
}

TEST_F(OpenPlayer, TellsFilesApartByTheirExtension) {
  EXPECT_TRUE(player_->playFile(soundFile(0.1, L"CAPITALS.WAV").c_str()));
  EXPECT_EQ(host_.waitForNotice(), kStarted);
  EXPECT_EQ(host_.waitForNotice(), kEnded);
  for (const wchar_t* name : {L"sound.ogg", L"sound", L"wav", L"folder.wav.txt"}) {
    EXPECT_FALSE(player_->playFile(soundFile(0.1, name).c_str())) << testing::PrintToString(name);
  }
  EXPECT_FALSE(player_->playFile(nullptr));
  EXPECT_FALSE(player_->playFile(L""));
  EXPECT_THAT(noticesUntilQuiet(), IsEmpty());
}

TEST_F(OpenPlayer, PlaysAnMp3FileAndLeavesNoTemporaryFile) {
  const auto wavFilesInTemporaryFolder = [] {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::temp_directory_path())) {
      count += entry.path().extension() == L".wav";
    }
    return count;
  };
  const int before = wavFilesInTemporaryFolder();
  const std::string mp3 =
      test::readFile(std::filesystem::path(SPEECH_MP3_SAMPLES) / "mpeg2_mono_constant.mp3");
  ASSERT_TRUE(player_->playFile(file(L"sound.Mp3", mp3.substr(0, 3000)).c_str()));
  EXPECT_EQ(host_.waitForNotice(), kStarted);
  EXPECT_EQ(host_.waitForNotice(), kEnded);
  EXPECT_EQ(wavFilesInTemporaryFolder(), before);
}

TEST_F(OpenPlayer, RefusesWhatCannotBePlayed) {
  const std::string emptySound = test::wavFile(test::pcmFormat(1, kRateHz, 16), "");
  EXPECT_FALSE(player_->playFile(file(L"empty.wav", emptySound).c_str()));
  EXPECT_FALSE(player_->playFile(file(L"text.wav", "not a sound").c_str()));
  EXPECT_FALSE(player_->playFile(file(L"text.mp3", "not a sound").c_str()));
  EXPECT_FALSE(player_->playFile((folder_ / L"missing.wav").c_str()));
  EXPECT_THAT(noticesUntilQuiet(), IsEmpty());
}

TEST_F(OpenPlayer, DoesNotBelieveAFormatAboutItsOwnLength) {
  const std::string claimsToBeLong = "\x34\x12" + test::pcmFormat(1, kRateHz, 16).substr(2) + "\xFF\xFF";
  const bool played =
      player_->playFile(file(L"sound.wav", test::wavFile(claimsToBeLong, "abcdefgh")).c_str());
  EXPECT_THAT(noticesUntilQuiet(), testing::SizeIs(played ? 2 : 0));
}

TEST_F(OpenPlayer, StoppingPostsTheEndNoticeAtOnceAndOnlyOnce) {
  ASSERT_TRUE(player_->playFile(soundFile(5).c_str()));
  player_->stop();
  EXPECT_THAT(host_.takeNotices(), ElementsAre(kStarted, kEnded));
  player_->stop();
  EXPECT_THAT(noticesUntilQuiet(), IsEmpty());
}

TEST_F(OpenPlayer, PausingPostsNoEndNotice) {
  ASSERT_TRUE(player_->playFile(soundFile(0.6).c_str()));
  EXPECT_EQ(host_.waitForNotice(), kStarted);
  for (int round = 0; round < 3; ++round) {
    Sleep(100);
    player_->pause();
    EXPECT_THAT(noticesUntilQuiet(), IsEmpty());
    player_->resume();
  }
  EXPECT_EQ(host_.waitForNotice(), kEnded);
  EXPECT_THAT(noticesUntilQuiet(), IsEmpty());
}

TEST_F(OpenPlayer, StoppingWhilePausedPostsTheEndNotice) {
  ASSERT_TRUE(player_->playFile(soundFile(5).c_str()));
  Sleep(100);
  player_->pause();
  EXPECT_THAT(noticesUntilQuiet(), ElementsAre(kStarted));
  player_->stop();
  EXPECT_THAT(host_.takeNotices(), ElementsAre(kEnded));
  player_->resume();
  EXPECT_THAT(noticesUntilQuiet(), IsEmpty());
}

TEST_F(OpenPlayer, AReplacedUtteranceHasNoEndNotice) {
  const std::wstring sound = soundFile(0.3);
  ASSERT_TRUE(player_->playFile(soundFile(5, L"long.wav").c_str()));
  ASSERT_TRUE(player_->playFile(sound.c_str()));
  EXPECT_EQ(host_.waitForNotice(), kStarted);
  EXPECT_EQ(host_.waitForNotice(), kStarted);
  EXPECT_EQ(host_.waitForNotice(), kEnded);
  EXPECT_THAT(noticesUntilQuiet(), IsEmpty());
}

TEST_F(OpenPlayer, AnUtteranceThatReplacesAPausedOneHasItsEndNotice) {
  ASSERT_TRUE(player_->playFile(soundFile(5).c_str()));
  Sleep(100);
  player_->pause();
  ASSERT_TRUE(player_->playFile(soundFile(0.2).c_str()));
  EXPECT_EQ(host_.waitForNotice(), kStarted);
  EXPECT_EQ(host_.waitForNotice(), kStarted);
  EXPECT_EQ(host_.waitForNotice(), kEnded);
}

TEST_F(OpenPlayer, AFailedReplacementLeavesTheOldUtterancePlayingWithoutItsEndNotice) {
  ASSERT_TRUE(player_->playFile(soundFile(0.3).c_str()));
  EXPECT_FALSE(player_->playFile(file(L"text.wav", "not a sound").c_str()));
  Sleep(600);
  EXPECT_THAT(host_.takeNotices(), ElementsAre(kStarted));
}

TEST_F(OpenPlayer, NoticesStayInStepWhenUtterancesAreCutOffAtAnyMoment) {
  const std::wstring sound = soundFile(0.06);
  for (DWORD wait = 0; wait < 40; ++wait) {
    ASSERT_TRUE(player_->playFile(sound.c_str()));
    Sleep(40 + wait);
    player_->stop();
    ASSERT_THAT(host_.takeNotices(), ElementsAre(kStarted, kEnded)) << wait;
  }
}

TEST_F(OpenPlayer, DestructionInTheMiddleOfPlaybackEndsIt) {
  ASSERT_TRUE(player_->playFile(soundFile(5).c_str()));
  const int handlesBefore = test::openHandleCount();
  const ULONGLONG start = GetTickCount64();
  player_.reset();
  RecordProperty("milliseconds", std::to_string(GetTickCount64() - start));
  EXPECT_THAT(noticesUntilQuiet(), ElementsAre(kStarted, kEnded));
  EXPECT_LT(test::openHandleCount(), handlesBefore);
}

TEST_F(OpenPlayer, EveryPlayerGivesItsHandlesBack) {
  player_.reset();
  const auto playOnce = [&] {
    WavePlayer player;
    EXPECT_EQ(player.openDevice(), WavePlayer::kOpened);
    EXPECT_TRUE(player.playFile(soundFile(5).c_str()));
  };
  playOnce();
  const int before = test::openHandleCount();
  for (int round = 0; round < 10; ++round) playOnce();
  EXPECT_LE(test::openHandleCount(), before + 3);
}

TEST_F(OpenPlayer, DestructionWhilePausedPostsNothing) {
  ASSERT_TRUE(player_->playFile(soundFile(5).c_str()));
  Sleep(100);
  player_->pause();
  player_.reset();
  EXPECT_THAT(noticesUntilQuiet(), ElementsAre(kStarted));
}

/// What the sound server has heard since this was made.
class Recording {
 public:
  Recording() : start_(bytes().size()) {}

  /// The samples so far, once there are at least so many.
  std::vector<std::int16_t> samples(std::size_t count) const {
    std::string heard;
    while ((heard = bytes()).size() < start_ + count * sizeof(std::int16_t)) Sleep(20);
    std::vector<std::int16_t> result((heard.size() - start_) / sizeof(std::int16_t));
    std::memcpy(result.data(), heard.data() + start_, result.size() * sizeof(std::int16_t));
    return result;
  }

  static constexpr int kRateHz = 44100;

 private:
  static std::string bytes() { return test::readFile(SPEECH_RECORDING); }
  std::size_t start_;
};

struct SoundKind {
  int rateHz;
  int channels;
};

class HeardSound : public OpenPlayer, public testing::WithParamInterface<SoundKind> {
 protected:
  /// Plays a sound of the kind and compares what was heard with it.
  test::Hearing playAndHear() {
    const auto [rateHz, channels] = GetParam();
    const auto sound = test::murmur(rateHz, 1);
    std::vector<std::int16_t> interleaved;
    for (const std::int16_t sample : sound)
      interleaved.insert(interleaved.end(), static_cast<std::size_t>(channels), sample);
    const std::string_view data(reinterpret_cast<const char*>(interleaved.data()), interleaved.size() * 2);
    const std::wstring path = file(L"sound.wav", test::wavFile(test::pcmFormat(channels, rateHz, 16), data));

    Sleep(kQuietMilliseconds);
    const Recording recording;
    EXPECT_TRUE(player_->playFile(path.c_str()));
    EXPECT_EQ(host_.waitForNotice(), kStarted);
    EXPECT_EQ(host_.waitForNotice(), kEnded);
    const auto heard = recording.samples(2 * Recording::kRateHz);
    return test::hear(test::atRate(sound, rateHz, Recording::kRateHz), heard);
  }
};

TEST_P(HeardSound, EqualsThePayload) {
  // On a busy machine the sound server falls silent now and then; some attempt will find it at leisure.
  test::Hearing best;
  for (int attempt = 0; attempt < 8 && (best.correlation < 0.995 || best.wholeShare < 0.8); ++attempt) {
    const test::Hearing hearing = playAndHear();
    if (hearing.wholeShare * hearing.correlation > best.wholeShare * best.correlation) best = hearing;
  }
  RecordProperty("correlation", std::to_string(best.correlation));
  RecordProperty("wholeShare", std::to_string(best.wholeShare));
  EXPECT_GT(best.correlation, 0.99);
  EXPECT_GT(best.wholeShare, 0.3);
}

INSTANTIATE_TEST_SUITE_P(, HeardSound,
                         testing::Values(SoundKind{44100, 1}, SoundKind{22050, 1}, SoundKind{16000, 1},
                                         SoundKind{48000, 2}),
                         [](const auto& instance) {
                           return "At" + std::to_string(instance.param.rateHz) + "Hz" +
                                  (instance.param.channels == 2 ? "Stereo" : "Mono");
                         });

}  // namespace
}  // namespace speech
