#include <cstring>
#include <memory>
#include <set>
#include <thread>

#include "engines/cloud/wave_player.h"
#include "tests/engines/cloud/cloud_engine_test.h"
#include "tests/engines/cloud/test_sounds.h"
#include "tests/engines/cloud/wav_bytes.h"
#include "tests/support/process_figures.h"
#include "tests/support/waiting.h"

namespace speech {
namespace {

using test::Notice;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kRateHz = 22050;

/// Longer than anything that might still be under way.
constexpr DWORD kQuietMilliseconds = 300;

/// Replaces one method of a COM class, for all its objects, as long as it lives.
template <class Method>
class Replaced {
 public:
  Replaced(void* object, int slot, Method replacement)
      : entry_(reinterpret_cast<Method*>(*static_cast<void***>(object) + slot)), original_(*entry_) {
    set(replacement);
  }
  Replaced(const Replaced&) = delete;
  Replaced& operator=(const Replaced&) = delete;
  ~Replaced() { set(original_); }

  Method original() const { return original_; }

 private:
  void set(Method method) const {
    DWORD protection = 0;
    VirtualProtect(entry_, sizeof *entry_, PAGE_READWRITE, &protection);
    *entry_ = method;
    VirtualProtect(entry_, sizeof *entry_, protection, &protection);
  }

  Method* entry_;
  Method original_;
};

/// Sees what a player asks of its device, and refuses to play and to stop on request.
class DeviceCalls {
 public:
  DeviceCalls() { g_calls = this; }
  DeviceCalls(const DeviceCalls&) = delete;
  DeviceCalls& operator=(const DeviceCalls&) = delete;
  ~DeviceCalls() { g_calls = nullptr; }

  HWND cooperativeWindow = nullptr;
  DWORD cooperativeLevel = 0;
  std::set<DWORD> threadsBeforeTheWatcher = {};
  std::vector<DWORD> playedFrom = {};  ///< The play cursor at each call of Play.
  bool refusing = false;

  /// Waits until what plays has left its beginning.
  void waitUntilUnderWay() const {
    test::waitUntil("sound", [this] { return cursor() > 0; });
  }

 private:
  using SetCooperativeLevel = HRESULT(STDMETHODCALLTYPE*)(IDirectSound8*, HWND, DWORD);
  using Play = HRESULT(STDMETHODCALLTYPE*)(IDirectSoundBuffer8*, DWORD, DWORD, DWORD);
  using Stop = HRESULT(STDMETHODCALLTYPE*)(IDirectSoundBuffer8*);

  static HRESULT STDMETHODCALLTYPE setCooperativeLevel(IDirectSound8* device, HWND window, DWORD level) {
    g_calls->cooperativeWindow = window;
    g_calls->cooperativeLevel = level;
    g_calls->threadsBeforeTheWatcher = test::threadIds();
    return g_calls->setCooperativeLevel_.original()(device, window, level);
  }
  static HRESULT STDMETHODCALLTYPE play(IDirectSoundBuffer8* buffer, DWORD, DWORD, DWORD flags) {
    if (g_calls->refusing) return DSERR_BUFFERLOST;
    g_calls->played_ = buffer;
    g_calls->playedFrom.push_back(g_calls->cursor());
    return g_calls->play_.original()(buffer, 0, 0, flags);
  }
  static HRESULT STDMETHODCALLTYPE stop(IDirectSoundBuffer8* buffer) {
    return g_calls->refusing ? DSERR_GENERIC : g_calls->stop_.original()(buffer);
  }

  DWORD cursor() const {
    DWORD cursor = 0;
    played_->GetCurrentPosition(&cursor, nullptr);
    return cursor;
  }

  static ComPtr<IDirectSound8> makeDevice() {
    ComPtr<IDirectSound8> device;
    EXPECT_EQ(DirectSoundCreate8(nullptr, device.put(), nullptr), DS_OK);
    return device;
  }
  ComPtr<IDirectSoundBuffer> makeBuffer() const {
    WAVEFORMATEX format = {WAVE_FORMAT_PCM, 1, kRateHz, 2 * kRateHz, 2, 16, 0};
    DSBUFFERDESC description = {sizeof description, 0, 1000, 0, &format, {}};
    ComPtr<IDirectSoundBuffer> buffer;
    EXPECT_EQ(device_->CreateSoundBuffer(&description, buffer.put(), nullptr), DS_OK);
    return buffer;
  }

  static inline DeviceCalls* g_calls = nullptr;
  IDirectSoundBuffer8* played_ = nullptr;
  ComPtr<IDirectSound8> device_ = makeDevice();
  ComPtr<IDirectSoundBuffer> buffer_ = makeBuffer();
  Replaced<SetCooperativeLevel> setCooperativeLevel_{device_.get(), 6, setCooperativeLevel};
  Replaced<Play> play_{buffer_.get(), 12, play};
  Replaced<Stop> stop_{buffer_.get(), 18, stop};
};

class WavePlayerTest : public test::CloudEngineTest {
 protected:
  std::wstring soundFile(double seconds, const wchar_t* name = L"sound.wav") {
    return file(
        name, test::wavFile(std::vector<std::int16_t>(static_cast<std::size_t>(kRateHz * seconds)), kRateHz));
  }

  std::wstring file(const wchar_t* name, std::string_view content) {
    const auto path = temporary_ / name;
    test::writeFile(path, content);
    return path.wstring();
  }

  void expectNotices(std::initializer_list<Notice> notices) {
    for (const Notice& notice : notices) EXPECT_EQ(host_.waitForNotice(), notice);
  }

  std::vector<Notice> noticesUntilQuiet() {
    Sleep(kQuietMilliseconds);
    return host_.takeNotices();
  }

  std::unique_ptr<WavePlayer> player_ = std::make_unique<WavePlayer>();
};

TEST_F(WavePlayerTest, OpensTheDeviceOnceAndForAHostWindowOnly) {
  DeviceCalls calls;
  g_hostWindow = nullptr;
  EXPECT_EQ(player_->openDevice(), WavePlayer::kNoHostWindow);
  EXPECT_FALSE(player_->playFile(soundFile(0.1).c_str()));
  g_hostWindow = host_.handle();
  EXPECT_EQ(player_->openDevice(), WavePlayer::kOpened);
  EXPECT_EQ(calls.cooperativeWindow, host_.handle());
  EXPECT_EQ(calls.cooperativeLevel, DWORD{DSSCL_PRIORITY});
  EXPECT_EQ(player_->openDevice(), WavePlayer::kAlreadyOpen);
  player_->close();
  EXPECT_EQ(player_->openDevice(), WavePlayer::kOpened);
}

class OpenPlayer : public WavePlayerTest {
 protected:
  OpenPlayer() { EXPECT_EQ(player_->openDevice(), WavePlayer::kOpened); }

  /// A handle of the player's second thread.
  UniqueHandle watcher() const {
    for (const DWORD id : test::threadIds()) {
      if (!calls_.threadsBeforeTheWatcher.contains(id))
        return UniqueHandle(OpenThread(THREAD_SUSPEND_RESUME | SYNCHRONIZE, FALSE, id));
    }
    return nullptr;
  }

  DeviceCalls calls_;
};

TEST_F(OpenPlayer, ResumesWhereItWasPausedAndNeverWhatHasEndedOrWasStopped) {
  ASSERT_TRUE(player_->playFile(soundFile(0.5).c_str()));
  calls_.waitUntilUnderWay();
  player_->pause();
  EXPECT_THAT(noticesUntilQuiet(), ElementsAre(kStarted));
  player_->resume();
  EXPECT_EQ(host_.waitForNotice(), kEnded);
  EXPECT_THAT(calls_.playedFrom, ElementsAre(0, testing::Gt(0)));
  player_->pause();
  player_->resume();
  EXPECT_EQ(calls_.playedFrom.size(), 2u) << "it has ended";

  ASSERT_TRUE(player_->playFile(soundFile(5).c_str()));
  calls_.waitUntilUnderWay();
  player_->pause();
  player_->stop();
  player_->resume();
  EXPECT_EQ(calls_.playedFrom.size(), 3u) << "it was stopped";
}

TEST_F(OpenPlayer, ARefusedPauseOrResumeLeavesTheEndNoticeAsItWas) {
  ASSERT_TRUE(player_->playFile(soundFile(0.5).c_str()));
  calls_.waitUntilUnderWay();
  calls_.refusing = true;
  player_->pause();
  player_->resume();
  expectNotices({kStarted, kEnded});

  calls_.refusing = false;
  ASSERT_TRUE(player_->playFile(soundFile(5).c_str()));
  calls_.waitUntilUnderWay();
  player_->pause();
  calls_.refusing = true;
  player_->resume();
  EXPECT_TRUE(g_endNoticeHeld);
}

TEST_F(OpenPlayer, KeepsNoPayloadOfWhatHasEndedAndNothingOfWhatWasStopped) {
  constexpr std::size_t kSize = 400'000, kSlack = 200'000;
  const auto sound =
      file(L"large.wav", test::wavFile(test::pcmFormat(2, 192'000, 16), std::string(kSize, '\0')));
  ASSERT_TRUE(player_->playFile(sound.c_str()));
  const std::size_t playing = test::busyHeapBytes();
  expectNotices({kStarted, kEnded});
  EXPECT_LT(test::busyHeapBytes(), playing - kSize + kSlack);
  player_->stop();
  const std::size_t before = test::busyHeapBytes();
  ASSERT_TRUE(player_->playFile(sound.c_str()));
  player_->stop();
  EXPECT_LT(test::busyHeapBytes(), before + kSlack);
}

TEST_F(OpenPlayer, PostsTheEndWhereAndAsTheStartWasPosted) {
  for (const UINT number : {UINT{WM_NULL}, test::HostWindow::kNoticeMessage}) {
    g_noticeMessage = number;
    g_hostWindow = host_.handle();
    ASSERT_TRUE(player_->playFile(soundFile(5).c_str()));
    g_noticeMessage = WM_APP;
    g_hostWindow = nullptr;
    player_->stop();
    MSG message = {};
    for (const Notice& notice : {kStarted, kEnded}) {
      EXPECT_TRUE(PeekMessageW(&message, host_.handle(), number, number, PM_REMOVE));
      EXPECT_EQ(message.message, number);
      EXPECT_EQ((Notice{message.wParam, message.lParam}), notice);
    }
  }
}

TEST_F(OpenPlayer, ClosesSilentlyWhenTheWatcherHasEnded) {
  ASSERT_TRUE(player_->playFile(soundFile(5).c_str()));
  const UniqueHandle thread = watcher();
  ASSERT_EQ(SuspendThread(thread.get()), 0u);
  const std::jthread late([&] {
    Sleep(200);  // as long as a busy machine may keep it waiting
    ResumeThread(thread.get());
  });
  player_.reset();
  EXPECT_EQ(WaitForSingleObject(thread.get(), 0), WAIT_OBJECT_0);
  EXPECT_THAT(host_.takeNotices(), ElementsAre(kStarted));
}

TEST_F(OpenPlayer, PostsOneStartAndOneEndNoticeEvenForTheShortestSound) {
  const std::string shortest = test::wavFile(test::pcmFormat(1, 8000, 8), "abcd");
  for (int round = 0; round < 20; ++round) {
    ASSERT_TRUE(
        player_->playFile(round == 0 ? soundFile(0.2).c_str() : file(L"short.wav", shortest).c_str()));
    expectNotices({kStarted, kEnded});
  }
  player_->stop();
  EXPECT_THAT(noticesUntilQuiet(), IsEmpty());
}

TEST_F(OpenPlayer, TellsFilesApartByTheirExtension) {
  EXPECT_TRUE(player_->playFile(soundFile(0.1, L"CAPITALS.WAV").c_str()));
  expectNotices({kStarted, kEnded});
  for (const wchar_t* name : {L"sound.ogg", L"sound", L"wav", L"folder.wav.txt"}) {
    EXPECT_FALSE(player_->playFile(soundFile(0.1, name).c_str())) << testing::PrintToString(name);
  }
  EXPECT_FALSE(player_->playFile(nullptr));
  EXPECT_FALSE(player_->playFile(L""));
  EXPECT_THAT(noticesUntilQuiet(), IsEmpty());
}

TEST_F(OpenPlayer, PlaysAnMp3FileAndLeavesNoTemporaryFile) {
  const std::string mp3 =
      test::readFile(std::filesystem::path(SPEECH_MP3_SAMPLES) / "mpeg2_mono_constant.mp3");
  ASSERT_TRUE(player_->playFile(file(L"sound.Mp3", mp3.substr(0, 3000)).c_str()));
  expectNotices({kStarted, kEnded});
  EXPECT_THAT(temporaryFiles(L".wav"), IsEmpty());
}

TEST_F(OpenPlayer, RefusesWhatCannotBePlayed) {
  const std::string emptySound = test::wavFile(test::pcmFormat(1, kRateHz, 16), "");
  for (const std::wstring& path :
       {file(L"empty.wav", emptySound), file(L"text.wav", "not a sound"), file(L"text.mp3", "not a sound"),
        (temporary_ / L"missing.wav").wstring()}) {
    EXPECT_FALSE(player_->playFile(path.c_str())) << testing::PrintToString(path);
  }
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

TEST_F(OpenPlayer, AReplacedUtteranceHasNoEndNoticePausedOrNot) {
  for (const bool paused : {false, true}) {
    ASSERT_TRUE(player_->playFile(soundFile(5, L"long.wav").c_str()));
    Sleep(100);
    if (paused) player_->pause();
    ASSERT_TRUE(player_->playFile(soundFile(0.2).c_str()));
    expectNotices({kStarted, kStarted, kEnded});
    EXPECT_THAT(noticesUntilQuiet(), IsEmpty());
  }
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

TEST_F(OpenPlayer, WhatIsHeardEqualsThePayload) {
  constexpr int kRecordedRateHz = 44100;
  const auto expected = test::murmur(kRecordedRateHz);
  for (const auto& [rateHz, channels] : {std::pair{44100, 1}, {22050, 1}, {16000, 1}, {48000, 2}}) {
    std::string frames;
    for (const std::int16_t sample : test::murmur(rateHz)) {
      for (int channel = 0; channel < channels; ++channel)
        frames.append(reinterpret_cast<const char*>(&sample), 2);
    }
    const auto sound = file(L"sound.wav", test::wavFile(test::pcmFormat(channels, rateHz, 16), frames));
    test::Hearing best;
    // On a busy machine the sound server falls silent now and then; some attempt will find it at leisure.
    for (int attempt = 0; attempt < 8 && best.wholeShare < 0.5; ++attempt) {
      Sleep(kQuietMilliseconds);
      const std::size_t before = test::readFile(SPEECH_RECORDING).size();
      EXPECT_TRUE(player_->playFile(sound.c_str()));
      expectNotices({kStarted, kEnded});
      std::string heard;
      do heard = test::readFile(SPEECH_RECORDING).substr(before);
      while (heard.size() < kRecordedRateHz * 3);
      std::vector<std::int16_t> samples(heard.size() / 2);
      std::memcpy(samples.data(), heard.data(), samples.size() * 2);
      const test::Hearing hearing = test::hear(expected, samples);
      if (hearing.wholeShare > best.wholeShare) best = hearing;
    }
    EXPECT_GT(best.correlation, 0.99) << rateHz << " Hz, " << channels << " channels";
    EXPECT_GT(best.wholeShare, 0.1) << rateHz << " Hz, " << channels << " channels";
  }
}

}  // namespace
}  // namespace speech
