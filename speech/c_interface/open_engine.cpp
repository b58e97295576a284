#include "speech/c_interface/open_engine.h"

#include "engines/engine_kind.h"
#include "speech/c_interface/session.h"
#include "speech/facade.h"
#include "win32/paths.h"

namespace speech::c_interface {

OpenEngine::OpenEngine(SpeechEngine handle, std::int32_t voice, LXAPIProduct& product, Listener listener)
    : handle_(handle),
      voice_(voice),
      product_(product),
      isCloud_(isCloudVoice(product.getEngineType())),
      listener_(listener) {}

void OpenEngine::load() {
  // Handling a message may close the engine; it must live to the end of that.
  window_ =
      std::make_unique<EventWindow>([weak = weak_from_this()](UINT message, WPARAM wParam, LPARAM lParam) {
        if (const auto self = weak.lock()) self->receive(message, wParam, lParam);
      });
  instance_ = ITextToSpeech::getInstance(window_->handle(), EventWindow::kNotice, &product_);
  session().ownInstance = instanceNumber_ = currentInstanceNumber();
  if (instance_ == nullptr) throw Failure(SPEECH_ERROR_LOAD);
  setToolFolder(moduleFolder(thisModule()));
  // An engine that lacks one of the settings speaks all the same.
  instance_->applyOptions(*product_.getOptions());
  product_.getOptions()->applied();
}

bool OpenEngine::isCurrent() const {
  return instance_ != nullptr && currentInstanceNumber() == instanceNumber_;
}

void OpenEngine::setWindow(HWND window, UINT message) {
  listener_.window = window;
  listener_.message = message;
}

void OpenEngine::setToolFolder(std::wstring folder) {
  if (!folder.empty() && folder.back() != L'\\' && folder.back() != L'/') folder += L'\\';
  toolFolder_ = std::move(folder);
  instance_->setToolFolder(toolFolder_.c_str());
}

void OpenEngine::applyOptions() {
  TextToSpeech_Options& options = *product_.getOptions();
  if (instance_->applyOptions(options) != 0) throw Failure(SPEECH_ERROR_REFUSED);
  options.applied();
}

void OpenEngine::speak(std::wstring text, bool isSsml) {
  window_->dropNotices();
  serviceMessage_.clear();
  playbackStarted_ = false;
  spoken_ = SpokenText(std::move(text));
  // The local engine does not announce its start, and its first word may come before it returns.
  if (!isCloud_) window_->post(EventWindow::kStarted);

  bool isAccepted = false;
  {
    const Busy busy;
    isAccepted = instance_->speak(spoken_.text().c_str(), isSsml);
  }
  if (isAccepted) {
    state_ = SPEECH_STATE_SPEAKING;
    return;
  }

  const bool serviceFailed = window_->dropNotices() && isCloud_;
  const std::int32_t error = serviceFailed ? SPEECH_ERROR_SERVICE : SPEECH_ERROR_REFUSED;
  failures_.push_back({error, takeServiceMessage()});
  window_->post(EventWindow::kFailed);
  throw Failure(error, failures_.back().message);
}

void OpenEngine::pause() {
  if (state_ == SPEECH_STATE_IDLE) throw Failure(SPEECH_ERROR_STATE);
  if (state_ == SPEECH_STATE_SPEAKING) instance_->pauseResume();
  state_ = SPEECH_STATE_PAUSED;
}

void OpenEngine::resume() {
  if (state_ == SPEECH_STATE_IDLE) throw Failure(SPEECH_ERROR_STATE);
  if (state_ == SPEECH_STATE_PAUSED) instance_->pauseResume();
  state_ = SPEECH_STATE_SPEAKING;
}

void OpenEngine::stop() {
  instance_->stop();
  state_ = SPEECH_STATE_IDLE;
}

void OpenEngine::unload() {
  stop();
  if (!instance_->unloadEngine()) throw Failure(SPEECH_ERROR_LOAD);
}

void OpenEngine::loadAgain() {
  if (!instance_->loadEngine()) throw Failure(SPEECH_ERROR_LOAD);
}

OrvaneLXAPI& OpenEngine::local() const {
  if (isCloud_) throw Failure(SPEECH_ERROR_UNSUPPORTED);
  return static_cast<OrvaneLXAPI&>(*instance_);
}

bool OpenEngine::deliverDue() {
  EventWindow::deliverPending(window_->handle());
  if (window_ == nullptr) throw Failure(SPEECH_ERROR_HANDLE);
  return state_ == SPEECH_STATE_IDLE;
}

void OpenEngine::requireIdle() {
  if (!deliverDue()) throw Failure(SPEECH_ERROR_BUSY);
}

std::string OpenEngine::takeServiceMessage() { return std::exchange(serviceMessage_, {}); }

void OpenEngine::close() {
  if (isCurrent()) {
    instance_->stop();
    instance_->unloadEngine();
    ITextToSpeech::setEventHandle(nullptr);
  }
  abandon();
}

void OpenEngine::abandon() {
  state_ = SPEECH_STATE_IDLE;
  listener_ = {};
  instance_ = nullptr;
  window_.reset();
}

}  // namespace speech::c_interface
