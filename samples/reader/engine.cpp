#include "engine.h"

#include <windows.h>

namespace {

void SPEECH_CALL notifyListener(void* user, const SpeechEvent* event) {
  const auto& listener = *static_cast<const Engine::Listener*>(user);
  listener(*event);
}

std::wstring fromUtf8(const std::string& text) {
  const int size = static_cast<int>(text.size());
  std::wstring wide(text.size(), L'\0');  // UTF-16 never has more units than UTF-8 has bytes
  wide.resize(static_cast<std::size_t>(
      MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()))));
  return wide;
}

}  // namespace

std::wstring describeError(std::int32_t error) {
  std::uint32_t length = 0;
  speech_error_detail(nullptr, 0, &length);
  std::string detail(length + 1, '\0');
  speech_error_detail(detail.data(), length + 1, nullptr);
  detail.resize(length);

  std::string text = speech_error_text(error);
  if (!detail.empty()) text += " " + detail;
  return fromUtf8(text);
}

std::int32_t Engine::use(std::int32_t voice) {
  std::int32_t current = -1;
  if (speech_engine_voice(handle_, &current) == SPEECH_OK && current == voice) return SPEECH_OK;
  close();
  return speech_engine_open(voice, notifyListener, &listener_, &handle_);
}

void Engine::close() {
  if (handle_ != nullptr && speech_engine_close(handle_) == SPEECH_OK) handle_ = nullptr;
}
