// speech/c/engines.h: opening engines and setting them up.

#include "speech/c_interface/open_engine.h"
#include "speech/c_interface/session.h"
#include "speech/c_interface/text.h"

namespace speech::c_interface {
namespace {

/// Handles are numbers that no two engines share. Odd ones, so that none looks like an address.
SpeechEngine newHandle() {
  session().lastHandle += 2;
  return reinterpret_cast<SpeechEngine>(session().lastHandle | 1);
}

bool isWindowOfThisThread(HWND window) {
  return GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId();
}

template <class Char>
std::int32_t setToolFolder(SpeechEngine handle, const Char* folder) {
  return answeredBy(handle, [&](OpenEngine& engine) { engine.setToolFolder(textOf(folder)); });
}

}  // namespace
}  // namespace speech::c_interface

using namespace speech::c_interface;

std::int32_t SPEECH_CALL speech_engine_open(std::int32_t voice, SpeechCallback callback, void* user,
                                            SpeechEngine* engine) {
  return answeredWhenFree([&] {
    required(engine);
    requireNoForeignEngine();
    if (session().engine != nullptr) throw Failure(SPEECH_ERROR_ENGINE_OPEN);
    const auto opened = std::make_shared<OpenEngine>(newHandle(), voice, voiceAt(voice),
                                                     OpenEngine::Listener{callback, user});
    opened->load();
    session().engine = opened;
    *engine = opened->handle();
  });
}

std::int32_t SPEECH_CALL speech_engine_window(SpeechEngine engine, void* window, std::uint32_t message) {
  return answeredBy(engine, [&](OpenEngine& open) {
    auto* const target = static_cast<HWND>(window);
    if (target != nullptr && !isWindowOfThisThread(target)) throw Failure(SPEECH_ERROR_ARGUMENT);
    open.setWindow(target, message);
  });
}

std::int32_t SPEECH_CALL speech_engine_events(SpeechEngine engine, std::int32_t on) {
  return answeredBy(engine, [&](OpenEngine& open) { open.setEventsOn(on != 0); });
}

std::int32_t SPEECH_CALL speech_engine_voice(SpeechEngine engine, std::int32_t* voice) {
  return answeredBy(engine, [&](OpenEngine& open) { *required(voice) = open.voice(); });
}

std::int32_t SPEECH_CALL speech_engine_reload(SpeechEngine engine) {
  return answeredBy(engine, [](OpenEngine& open) {
    open.unload();
    open.loadAgain();
  });
}

std::int32_t SPEECH_CALL speech_engine_unload(SpeechEngine engine) {
  return answeredBy(engine, [](OpenEngine& open) { open.unload(); });
}

std::int32_t SPEECH_CALL speech_engine_load(SpeechEngine engine) {
  return answeredBy(engine, [](OpenEngine& open) { open.loadAgain(); });
}

std::int32_t SPEECH_CALL speech_engine_close(SpeechEngine engine) {
  return answeredBy(engine, [](OpenEngine&) { closeEngine(); });
}

std::int32_t SPEECH_CALL speech_set_tool_folder(SpeechEngine engine, const char* folder) {
  return setToolFolder(engine, folder);
}

std::int32_t SPEECH_CALL speech_set_tool_folder_w(SpeechEngine engine, const wchar_t* folder) {
  return setToolFolder(engine, folder);
}

std::int32_t SPEECH_CALL speech_set_output_device(SpeechEngine engine, std::int32_t device) {
  return answeredBy(engine, [&](OpenEngine& open) {
    if (device < -1 || device == INT32_MAX) throw Failure(SPEECH_ERROR_ARGUMENT);
    open.instance().setOutputAudio(device + 1);  // which counts devices from 1
  });
}
