#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>

#include <speech/speech_c.h>
#include <speech/text_to_speech.h>

#include "engines/local/orvane_lxapi.h"
#include "speech/c_interface/engine_events.h"

namespace speech::c_interface {

/// The live engine as the C interface sees it: what it is doing, and where its events go.
class OpenEngine : public std::enable_shared_from_this<OpenEngine> {
 public:
  struct Listener {
    SpeechCallback callback = nullptr;
    void* user = nullptr;
    HWND window = nullptr;
    UINT message = 0;
    bool isOn = true;
  };

  OpenEngine(SpeechEngine handle, std::int32_t voice, LXAPIProduct& product, Listener listener);

  /// Makes the module's instance for the voice. Fails when the engine cannot be loaded.
  void load();

  SpeechEngine handle() const { return handle_; }
  std::int32_t voice() const { return voice_; }
  LXAPIProduct& product() const { return product_; }
  bool isCloud() const { return isCloud_; }
  ITextToSpeech& instance() const { return *instance_; }
  /// The same as a local engine. Fails for a cloud voice.
  OrvaneLXAPI& local() const;
  SpeechState state() const { return state_; }
  const std::wstring& toolFolder() const { return toolFolder_; }

  /// False once another instance has taken this one's place.
  bool isCurrent() const;
  void setWindow(HWND window, UINT message);
  void setEventsOn(bool on) { listener_.isOn = on; }
  void setToolFolder(std::wstring folder);
  void applyOptions();

  void speak(std::wstring text, bool isSsml);
  void pause();
  void resume();
  void stop();
  void unload();
  void loadAgain();

  /// Delivers the events that are due; true when nothing is spoken then. Fails when a callback has closed the
  /// engine.
  bool deliverDue();
  /// The same, but fails while the engine is speaking: exports need it for themselves.
  void requireIdle();

  /// What the service has said since the last call of this, UTF-8.
  std::string takeServiceMessage();
  /// Discards the notices of an export; true when a failure was among them.
  bool dropNotices() const { return window_->dropNotices(); }

  /// Stops and unloads; no event comes after this.
  void close();
  /// The same where the instance is already gone.
  void abandon();

 private:
  struct SpeakFailure {
    std::int32_t error;
    std::string message;
  };

  void receive(UINT message, WPARAM wParam, LPARAM lParam);
  void receiveNotice(WPARAM wParam, LPARAM lParam);
  void receiveCloudNotice(WPARAM wParam);
  SpeechEvent newEvent(SpeechEventKind kind) const;
  void deliver(SpeechEventKind kind);
  void deliver(const SpeechEvent& event);

  SpeechEngine handle_;
  std::int32_t voice_;
  LXAPIProduct& product_;
  bool isCloud_;
  Listener listener_;
  std::wstring toolFolder_;
  std::unique_ptr<EventWindow> window_;
  ITextToSpeech* instance_ = nullptr;
  std::uint32_t instanceNumber_ = 0;

  SpeechState state_ = SPEECH_STATE_IDLE;
  /// Cloud: the end notice of a stopped speech can come late, but always before the start of the next.
  bool playbackStarted_ = false;
  SpokenText spoken_;
  std::string serviceMessage_;
  /// One for each kFailed that is posted.
  std::deque<SpeakFailure> failures_;
};

}  // namespace speech::c_interface
