#include "service/request_log.h"

#include <cstdio>
#include <ctime>

namespace speech::service {
namespace {

std::string timeStamp() {
  using std::chrono::system_clock;
  const auto now = system_clock::now();
  const auto milliseconds =
      std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
  const std::time_t seconds = system_clock::to_time_t(now);
  std::tm parts{};
  ::gmtime_r(&seconds, &parts);
  char text[64];
  const size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
  std::snprintf(text + length, sizeof text - length, ".%03dZ", static_cast<int>(milliseconds));
  return text;
}

}  // namespace

RequestNotes& currentNotes() {
  thread_local RequestNotes notes;
  return notes;
}

void logRequest(std::string_view method, std::string_view path, int status) {
  RequestNotes& notes = currentNotes();
  const auto elapsed =
      std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - notes.start);
  const bool isOurs = path == "/a/speak" || path == "/health";
  std::string line = timeStamp() + " " + std::to_string(status) + " " +
                     std::string(method.empty() ? "-" : method) + " " + std::string(isOurs ? path : "other");
  if (!notes.voice.empty()) {
    line += " voice=\"" + notes.voice + "\" form=" + std::string(notes.form) +
            " characters=" + std::to_string(notes.characterCount);
  }
  line += " bytes=" + std::to_string(notes.replyBytes) + " ms=" + std::to_string(elapsed.count()) + "\n";
  // One call, so that the lines of several threads do not mix.
  std::fwrite(line.data(), 1, line.size(), stderr);
  notes = RequestNotes();
}

}  // namespace speech::service
