// The HTTP side: routes, limits, statuses.
#pragma once

#include <httplib.h>

#include "service/options.h"
#include "service/places.h"
#include "service/synthesis.h"
#include "service/voice_catalogue.h"

namespace speech::service {

class Server {
 public:
  Server(const Options& options, const Synthesis& synthesis, const VoiceCatalogue& catalogue);

  // Takes the port and returns its number, or -1.
  int bind();

  // Serves until stop, and until every request under way is answered. False when the socket failed.
  bool run();

  // From any thread.
  void stop();
  bool isRunning() const { return server_.is_running(); }

 private:
  void setLimits();
  void setRoutes();
  void handleSpeak(const httplib::Request& request, httplib::Response& response,
                   const httplib::ContentReader& readContent);
  void answer(SpeechRequest request, httplib::Response& response);

  const Options& options_;
  const Synthesis& synthesis_;
  const VoiceCatalogue& catalogue_;
  Places places_;
  httplib::Server server_;
};

}  // namespace speech::service
