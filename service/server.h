#pragma once

// The HTTP side: routes, limits, statuses.

#include <memory>

#include "service/options.h"
#include "service/synthesis.h"
#include "service/voices.h"

namespace speech::service {

// Refers to what it is made from, which must outlive it.
class Server {
 public:
  Server(const Options& options, const Synthesis& synthesis, const VoiceList& voices);
  ~Server();

  // Takes the port and returns its number, or -1.
  int bind();

  // Serves until stop, and until every request under way is answered. False when the socket failed.
  bool run();

  // From any thread, once it runs.
  void stop();
  bool isRunning() const;

 private:
  class Implementation;  // keeps the HTTP library's large header out of this one
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace speech::service
