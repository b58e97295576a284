#pragma once

// eSpeak NG as an object: its voices, and one piece of text at a time turned into samples and marks.
//
// eSpeak NG keeps its state in globals, so there is one synthesizer in the process and every call of it goes
// through one lock, taken in the order of asking and held while one piece is computed, never while one is
// played.

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <span>
#include <string>
#include <vector>

namespace speech::lxapi {

inline constexpr uint32_t kSynthesizerRateHz = 22050;

struct SynthesizerVoice {
  std::string name;        ///< UTF-8, as users know it.
  std::string identifier;  ///< As the synthesizer knows it.
  std::string language;    ///< As the synthesizer writes it, for instance "en-us".
};

/// What the synthesizer reports at a place among the samples.
struct SynthesizerMark {
  enum class Kind { kWord, kSentence, kBookmark, kClauseEnd };
  Kind kind;
  size_t sample;              ///< Index into the samples that the mark comes with; at most their number.
  int64_t characterPosition;  ///< In code points of the piece, from 1.
  int32_t characterCount;
  const char* name;  ///< Of a bookmark, UTF-8.
};

struct SynthesisRequest {
  std::string voice;  ///< An identifier of `voices`, with "+" and a variant's name where one is wanted.
  int32_t pitch = 100;
  int32_t speed = 100;
  bool isSsml = false;
  bool hasPhonemes = false;  ///< The text holds phonemes between "[[" and "]]".
  bool pauseAtEnd = false;
};

/// A mutex that is taken in the order of asking, so that a long export, which takes it again and again,
/// cannot keep it from a speech that is being heard.
class FairMutex {
 public:
  void lock() {
    std::unique_lock guard(mutex_);
    const uint64_t ticket = nextTicket_++;
    turn_.wait(guard, [&] { return ticket == serving_; });
  }

  void unlock() {
    {
      const std::lock_guard guard(mutex_);
      ++serving_;
    }
    turn_.notify_all();
  }

 private:
  std::mutex mutex_;
  std::condition_variable turn_;
  uint64_t nextTicket_ = 0;
  uint64_t serving_ = 0;
};

class Synthesizer {
 public:
  /// Takes samples and the marks among them, in order; returns false to abort.
  using Sink = std::function<bool(std::span<const int16_t>, std::span<const SynthesizerMark>)>;

  static Synthesizer& instance();

  /// Starts eSpeak NG; does nothing when it is already running.
  /// @param folder  holds "espeak-ng-data"; in the code page of narrow file functions
  bool start(const std::string& folder);

  /// eSpeak NG's own buffer for the folder's name is shorter than the system's.
  static constexpr size_t kLongestFolder = 200;

  /// Every voice that needs no further program. Empty while not started.
  std::vector<SynthesizerVoice> voices() const;

  /// For instance "1.52.0". Empty while not started.
  std::string version() const;

  /// Renders a piece of valid UTF-8 without zero bytes. `sink` runs on the calling thread, under the lock.
  /// @return false when the voice cannot be loaded or the synthesizer fails; true also when `sink` aborted
  bool render(const std::string& utf8, const SynthesisRequest& request, const Sink& sink);

 private:
  Synthesizer() = default;

  void listVoices();
  bool selectVoice(const std::string& voice);

  mutable FairMutex mutex_;
  bool started_ = false;
  std::vector<SynthesizerVoice> voices_;
  std::string currentVoice_;
};

}  // namespace speech::lxapi
