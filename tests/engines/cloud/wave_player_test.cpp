#include "engines/cloud/wave_player.h"

#include <functional>
#include <memory>
#include <set>
#include <thread>

#include "tests/engines/cloud/cloud_engine_test.h"
#include "tests/support/process_figures.h"
#include "tests/support/waiting.h"
#include "tests/support/wav_files.h"

namespace speech {
namespace {

using test::Notice;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kRateHz = 22050;

/// Sees what players ask of their devices, and refuses to play and to stop on request: it stands in for three
/// methods of the device's classes as long as it lives.
class DeviceCalls {
 public:
  DeviceCalls() {
    g_calls = this;
    EXPECT_EQ(DirectSoundCreate8(nullptr, device_.put(), nullptr), DS_OK);
    WAVEFORMATEX format = {WAVE_FORMAT_PCM, 1, kRateHz, 2 * kRateHz, 2, 16, 0};
    const DSBUFFERDESC description = {sizeof description, 0, 1000, 0, &format, {}};
    EXPECT_EQ(device_->CreateSoundBuffer(&description, buffer_.put(), nullptr), DS_OK);
    swapMethods();
  }
  DeviceCalls(const DeviceCalls&) = delete;
  DeviceCalls& operator=(const DeviceCalls&) = delete;
  ~DeviceCalls() { swapMethods(); }

  HWND cooperativeWindow = nullptr;
  DWORD cooperativeLevel = 0;
  std::set<DWORD> threadsBeforeTheWatcher = {};
  std::vector<DWORD> playedFrom = {};  ///< The play cursor at each call of Play.
  bool refusing = false;
  std::function<void()> beforeStop = {};  ///< Called once, before the device is asked to stop.

  /// Where the buffer that plays stands.
  DWORD cursor() const {
    DWORD cursor = 0;
    playing_->GetCurrentPosition(&cursor, nullptr);
    return cursor;
  }

  /// What the buffer that plays holds, and in what format.
  std::string content(WAVEFORMATEX& format) const {
    playing_->GetFormat(&format, sizeof format, nullptr);
    void* bytes = nullptr;
    DWORD size = 0;
    playing_->Lock(0, 0, &bytes, &size, nullptr, nullptr, DSBLOCK_ENTIREBUFFER);
    return {static_cast<const char*>(bytes), size};
  }

 private:
  static HRESULT STDMETHODCALLTYPE setCooperativeLevel(IDirectSound8* device, HWND window, DWORD level) {
    g_calls->cooperativeWindow = window;
    g_calls->cooperativeLevel = level;
    g_calls->threadsBeforeTheWatcher = test::threadIds();
    return g_calls->setCooperativeLevel_(device, window, level);
  }
  static HRESULT STDMETHODCALLTYPE play(IDirectSoundBuffer8* buffer, DWORD, DWORD, DWORD flags) {
    if (g_calls->refusing) return DSERR_BUFFERLOST;
    g_calls->playing_ = buffer;
    g_calls->playedFrom.push_back(g_calls->cursor());
    return g_calls->play_(buffer, 0, 0, flags);
  }
  static HRESULT STDMETHODCALLTYPE stop(IDirectSoundBuffer8* buffer) {
    if (const auto call = std::exchange(g_calls->beforeStop, nullptr)) call();
    return g_calls->refusing ? DSERR_GENERIC : g_calls->stop_(buffer);
  }

  template <class Method>
  static void swapMethod(void* object, int slot, Method& method) {
    auto* const entry = reinterpret_cast<Method*>(*static_cast<void***>(object) + slot);
    DWORD protection = 0;
    VirtualProtect(entry, sizeof *entry, PAGE_READWRITE, &protection);
    std::swap(*entry, method);
  }
  void swapMethods() {
    swapMethod(device_.get(), 6, setCooperativeLevel_);
    swapMethod(buffer_.get(), 12, play_);
    swapMethod(buffer_.get(), 18, stop_);
  }

  static inline DeviceCalls* g_calls = nullptr;
  ComPtr<IDirectSound8> device_;
  ComPtr<IDirectSoundBuffer> buffer_;
  IDirectSoundBuffer8* playing_ = nullptr;
  // The device's own ones while these stand in for them.
  decltype(&setCooperativeLevel) setCooperativeLevel_ = setCooperativeLevel;
  decltype(&play) play_ = play;
  decltype(&stop) stop_ = stop;
};

class WavePlayerTest : public test::CloudEngineTest {
 protected:
  WavePlayerTest() { EXPECT_EQ(player_->openDevice(), WavePlayer::kOpened); }

  std::wstring file(const wchar_t* name, std::string_view content) const {
    test::writeFile(temporary_ / name, content);
    return (temporary_ / name).wstring();
  }

  std::wstring soundFile(double seconds, const wchar_t* name = L"sound.wav") const {
    const std::vector<std::int16_t> samples(static_cast<std::size_t>(kRateHz * seconds), 5000);
    return file(name, test::wavFile(samples, kRateHz));
  }

  bool play(double seconds) { return player_->playFile(soundFile(seconds).c_str()); }

  void waitUntilUnderWay() const {
    test::waitUntil("sound", [this] { return calls_.cursor() > 0; });
  }

  void expectNotices(std::initializer_list<Notice> notices) {
    for (const Notice& notice : notices) EXPECT_EQ(host_.waitForNotice(), notice);
  }

  DeviceCalls calls_;
  std::unique_ptr<WavePlayer> player_ = std::make_unique<WavePlayer>();
};

TEST_F(WavePlayerTest, OpensTheDeviceOnceAndForAHostWindowOnly) {
  EXPECT_EQ(player_->openDevice(), WavePlayer::kAlreadyOpen);
  player_->close();
  calls_.cooperativeWindow = nullptr;
  g_hostWindow = nullptr;
  EXPECT_EQ(player_->openDevice(), WavePlayer::kNoHostWindow);
  EXPECT_FALSE(play(0.1));
  g_hostWindow = host_.handle();
  EXPECT_EQ(player_->openDevice(), WavePlayer::kOpened);
  EXPECT_EQ(calls_.cooperativeWindow, host_.handle());
  EXPECT_EQ(calls_.cooperativeLevel, DWORD{DSSCL_PRIORITY});
}

TEST_F(WavePlayerTest, PlaysThePayloadInItsFormatAndIsHeard) {
  for (const auto& [rateHz, channels, bits] : {std::tuple{44100, 2, 16}, {48000, 1, 16}, {11025, 2, 8}}) {
    std::string payload(static_cast<std::size_t>(rateHz / 50 * channels * bits / 8), '\0');
    for (std::size_t i = 0; i < payload.size(); ++i) payload[i] = static_cast<char>(i * i);
    const std::size_t before = test::readFile(SPEECH_RECORDING).size();
    const auto path = file(L"sound.wav", test::wavFile(test::pcmFormat(channels, rateHz, bits), payload));
    ASSERT_TRUE(player_->playFile(path.c_str()));
    WAVEFORMATEX format = {};
    EXPECT_EQ(calls_.content(format), payload);
    EXPECT_EQ(std::tuple(format.nSamplesPerSec, format.nChannels, format.wBitsPerSample),
              std::tuple(rateHz, channels, bits));
    expectNotices({kStarted, kEnded});
    test::waitUntil("sound in the recording", [&] {
      return test::readFile(SPEECH_RECORDING).substr(before).find_first_not_of('\0') != std::string::npos;
    });
  }
}

TEST_F(WavePlayerTest, PostsOneStartAndOneEndNoticeEvenForTheShortestSound) {
  const auto shortest = file(L"short.wav", test::wavFile(test::pcmFormat(1, 8000, 8), "abcd"));
  for (int round = 0; round < 20; ++round) {
    ASSERT_TRUE(player_->playFile(shortest.c_str()));
    expectNotices({kStarted, kEnded});
  }
  player_->stop();
  EXPECT_THAT(noticesUntilQuiet(), IsEmpty());
}

TEST_F(WavePlayerTest, PostsTheEndWhereAndAsTheStartWasPosted) {
  for (const UINT number : {UINT{WM_NULL}, test::HostWindow::kNoticeMessage}) {
    g_noticeMessage = number;
    g_hostWindow = host_.handle();
    ASSERT_TRUE(play(5));
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

TEST_F(WavePlayerTest, TellsFilesApartByTheirExtension) {
  const std::string wav = test::wavFile(std::vector<std::int16_t>(2000), kRateHz), text = "not a sound";
  const std::string mp3 =
      test::readFile(std::filesystem::path(SPEECH_MP3_SAMPLES) / "22050x1.mp3").substr(0, 3000);
  for (const auto& [name, content] : {std::pair{L"CAPITALS.WAV", wav}, {L"sound.Mp3", mp3}}) {
    ASSERT_TRUE(player_->playFile(file(name, content).c_str()));
    EXPECT_THAT(temporaryFiles(L".wav"), IsEmpty());
    expectNotices({kStarted, kEnded});
  }
  for (const auto& [name, content] : {std::pair{L"sound.ogg", wav},
                                      {L"sound", wav},
                                      {L"wav", wav},
                                      {L"folder.wav.txt", wav},
                                      {L"text.wav", text},
                                      {L"text.mp3", text},
                                      {L"empty.wav", test::wavFile({}, kRateHz)}})
    EXPECT_FALSE(player_->playFile(file(name, content).c_str())) << testing::PrintToString(name);
  for (const wchar_t* path : {static_cast<const wchar_t*>(nullptr), L"", L"missing.wav"})
    EXPECT_FALSE(player_->playFile(path));
  // Here the device may refuse, but must not read further than the format is long.
  const std::string claimsToBeLong = "\x34\x12" + test::pcmFormat(1, kRateHz, 16).substr(2) + "\xFF\xFF";
  const bool isPlayed = player_->playFile(file(L"x.wav", test::wavFile(claimsToBeLong, "abcdefgh")).c_str());
  EXPECT_THAT(noticesUntilQuiet(), testing::SizeIs(isPlayed ? 2 : 0));
}

TEST_F(WavePlayerTest, StoppingPostsTheEndNoticeAtOnceAndOnlyOncePausedOrNot) {
  for (const bool paused : {false, true}) {
    ASSERT_TRUE(play(5));
    waitUntilUnderWay();
    if (paused) player_->pause();
    player_->stop();
    EXPECT_THAT(host_.takeNotices(), ElementsAre(kStarted, kEnded));
    player_->stop();
    player_->resume();
    EXPECT_THAT(noticesUntilQuiet(), IsEmpty());
  }
  EXPECT_EQ(calls_.playedFrom.size(), 2u) << "nothing was resumed";
}

TEST_F(WavePlayerTest, ResumesWhereItWasPausedAndNotWhatHasEnded) {
  ASSERT_TRUE(play(0.5));
  waitUntilUnderWay();
  player_->pause();
  EXPECT_THAT(noticesUntilQuiet(), ElementsAre(kStarted));
  player_->resume();
  EXPECT_EQ(host_.waitForNotice(), kEnded);
  EXPECT_THAT(calls_.playedFrom, ElementsAre(0, testing::Gt(0)));
  player_->pause();
  player_->resume();
  EXPECT_EQ(calls_.playedFrom.size(), 2u);
}

TEST_F(WavePlayerTest, ARefusedPauseOrResumeLeavesTheEndNoticeAsItWas) {
  ASSERT_TRUE(play(0.5));
  waitUntilUnderWay();
  calls_.refusing = true;
  player_->pause();
  player_->resume();
  expectNotices({kStarted, kEnded});
  calls_.refusing = false;
  ASSERT_TRUE(play(5));
  waitUntilUnderWay();
  player_->pause();
  calls_.refusing = true;
  player_->resume();
  EXPECT_TRUE(g_endNoticeHeld);
}

TEST_F(WavePlayerTest, AReplacedSoundHasNoEndNoticePausedOrNot) {
  for (const bool paused : {false, true}) {
    ASSERT_TRUE(play(5));
    if (paused) player_->pause();
    ASSERT_TRUE(play(0.2));
    expectNotices({kStarted, kStarted, kEnded});
    EXPECT_THAT(noticesUntilQuiet(), IsEmpty());
  }
  ASSERT_TRUE(play(0.2));
  EXPECT_FALSE(player_->playFile(L"missing.wav"));
  EXPECT_THAT(noticesUntilQuiet(), ElementsAre(kStarted)) << "it goes on, but its end is not told";
}

TEST_F(WavePlayerTest, NoticesAreRightHoweverLateTheWatcherIs) {
  std::set<DWORD> added = test::threadIds();
  for (const DWORD id : calls_.threadsBeforeTheWatcher) added.erase(id);
  ASSERT_EQ(added.size(), 1u);
  const UniqueHandle watcher(OpenThread(THREAD_SUSPEND_RESUME | SYNCHRONIZE, FALSE, *added.begin()));
  const auto resumedLater = [&] {
    return std::jthread([&] {
      Sleep(500);  // as long as a busy machine may keep it waiting
      ResumeThread(watcher.get());
    });
  };
  std::jthread late;
  const auto playWithALateWatcher = [&] {
    EXPECT_TRUE(play(5));
    waitUntilUnderWay();
    calls_.beforeStop = [&] {
      SuspendThread(watcher.get());
      late = resumedLater();
    };
  };
  playWithALateWatcher();
  player_->stop();
  EXPECT_THAT(host_.takeNotices(), ElementsAre(kStarted, kEnded)) << "stopped";
  ASSERT_TRUE(play(0.05));
  SuspendThread(watcher.get());
  test::waitUntil("the end", [this] { return calls_.cursor() > 0; });
  test::waitUntil("the end", [this] { return calls_.cursor() == 0; });
  late = resumedLater();
  player_->stop();
  EXPECT_THAT(host_.takeNotices(), ElementsAre(kStarted, kEnded)) << "ended and stopped";
  playWithALateWatcher();
  player_->pause();
  player_->resume();
  late.join();
  EXPECT_THAT(noticesUntilQuiet(), ElementsAre(kStarted)) << "resumed";
  playWithALateWatcher();
  player_->pause();
  EXPECT_TRUE(play(5));
  late.join();
  EXPECT_THAT(noticesUntilQuiet(), ElementsAre(kStarted, kStarted)) << "replaced";
  playWithALateWatcher();
  player_.reset();
  EXPECT_EQ(WaitForSingleObject(watcher.get(), 0), WAIT_OBJECT_0);
  EXPECT_THAT(host_.takeNotices(), ElementsAre(kStarted)) << "closed";
}

TEST_F(WavePlayerTest, KeepsNoPayloadOfWhatHasEndedAndNothingOfWhatWasStoppedOrClosed) {
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

  const auto playOnce = [&] {
    WavePlayer player;
    EXPECT_EQ(player.openDevice(), WavePlayer::kOpened);
    EXPECT_TRUE(player.playFile(soundFile(5).c_str()));
  };
  playOnce();
  const int handles = test::openHandleCount();
  for (int round = 0; round < 10; ++round) playOnce();
  EXPECT_LE(test::openHandleCount(), handles + 3);
}

}  // namespace
}  // namespace speech
