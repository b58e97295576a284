#pragma once

// One line on standard error for every request, without its text and its key.

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace speech::service {

// What a handler found out about the request that this thread is serving. Kept per thread because the HTTP
// library logs on the thread that ran the handler and hands the logger nothing of ours.
struct RequestNotes {
  std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
  std::string voice;  // as the list of voices writes it, never as the request did
  std::string_view form;
  size_t characterCount = 0;
  uint64_t replyBytes = 0;
};

RequestNotes& currentNotes();

// Writes the line from the notes and makes them ready for the thread's next request. Requests for other paths
// than the service's own are logged as "other": what a stranger writes there has no place in a log.
void logRequest(std::string_view method, std::string_view path, int status);

}  // namespace speech::service
