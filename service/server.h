// The HTTP side: routes, limits, statuses.
#pragma once

#include <httplib.h>
#include <sys/socket.h>

#include <atomic>

#include "service/options.h"
#include "service/places.h"
#include "service/synthesis.h"
#include "service/voice_catalogue.h"

namespace speech::service {

// Two things that the library does not let its user choose.
class HttpServer : public httplib::Server {
 public:
  // The library queues five connections that it has not accepted yet; a burst of more would be turned away.
  bool lengthenQueue() { return ::listen(svr_sock_, SOMAXCONN) == 0; }

  // The library's own stop() cuts replies short that are being sent. Without it the loop ends when the
  // listening socket gives it nothing any more, and every connection that was accepted is served to its end.
  void stopAccepting() { ::shutdown(svr_sock_, SHUT_RDWR); }
};

class Server {
 public:
  Server(const Options& options, const Synthesis& synthesis, const VoiceCatalogue& catalogue);

  // Takes the port and returns its number, or -1.
  int bind();

  // Serves until stop, and until every request under way is answered. False when the socket failed.
  bool run();

  // From any thread, once it runs.
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
  HttpServer server_;
  std::atomic<bool> isStopping_ = false;
};

}  // namespace speech::service
