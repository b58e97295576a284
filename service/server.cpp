#include "service/server.h"

#include <fcntl.h>
#include <httplib.h>
#include <sys/socket.h>

#include <atomic>
#include <exception>
#include <memory>
#include <vector>

#include "service/places.h"
#include "service/replies.h"
#include "service/request_log.h"
#include "service/synthesizer_exit.h"

namespace speech::service {
namespace {

constexpr size_t kLongTextCharacters = 5'000;  // some six minutes of speech
constexpr int kIoTimeoutSeconds = 20;
// Threads beside those that synthesize: for requests that wait their turn, arrive or leave.
constexpr size_t kSpareThreads = 64;
constexpr size_t kReplyBlockBytes = 65'536;
// How much of a body that is too large is still read, so that its sender gets to see the answer.
constexpr size_t kDrainFactor = 8;

void refuse(httplib::Response& response, const Refusal& refusal) {
  response.status = refusal.status;
  response.set_content(refusal.message + "\n", "text/plain; charset=utf-8");
  response.set_header("X-Content-Type-Options", "nosniff");
  if (refusal.status == 503) response.set_header("Retry-After", "5");
  currentNotes().replyBytes = response.body.size();
}

Refusal bodyTooLarge(size_t limit) {
  return {413, "the request body is larger than " + std::to_string(limit) + " bytes"};
}

bool isForm(const httplib::Request& request) {
  const std::string type = request.get_header_value("Content-Type");
  return type.substr(0, type.find_first_of("; ")) == "application/x-www-form-urlencoded";
}

bool declaresTooMuch(const httplib::Request& request, size_t limit) {
  return request.has_header("Content-Length") && request.get_header_value<uint64_t>("Content-Length") > limit;
}

// What an error of the HTTP library itself says to the caller.
std::string textForStatus(int status) {
  switch (status) {
    case 400:
      return "the request is malformed";
    case 404:
      return "there is nothing here; requests go to /a/speak";
    case 414:
      return "the address is too long";
    default:
      return "the request failed with status " + std::to_string(status);
  }
}

// Sends a header and then a file, in blocks.
void sendFile(httplib::Response& response, std::string header, SpoolFile file, const char* contentType) {
  const auto content =
      std::make_shared<const std::pair<std::string, SpoolFile>>(std::move(header), std::move(file));
  const uint64_t headerBytes = content->first.size();
  const uint64_t totalBytes = headerBytes + content->second.size();
  currentNotes().replyBytes = totalBytes;
  response.status = 200;
  response.set_content_provider(
      totalBytes, contentType, [content, headerBytes](size_t offset, size_t length, httplib::DataSink& sink) {
        if (offset < headerBytes) {
          const auto part = std::string_view(content->first).substr(offset, length);
          return sink.write(part.data(), part.size());
        }
        std::vector<char> block(std::min(length, kReplyBlockBytes));
        const size_t count = content->second.readAt(offset - headerBytes, block);
        return count > 0 && sink.write(block.data(), count);
      });
}

void setSocketOptions(socket_t socket) {
  // Not the library's default, SO_REUSEPORT: that would let a second service share the port unnoticed.
  const int on = 1;
  ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  ::fcntl(socket, F_SETFD, FD_CLOEXEC);
}

// Two things that the library does not let its user choose.
class HttpServer : public httplib::Server {
 public:
  // The library queues five connections that it has not accepted yet; a burst of more would be turned away.
  bool lengthenQueue() { return ::listen(svr_sock_, SOMAXCONN) == 0; }

  // The library's own stop() cuts replies short that are being sent. Without it the loop ends when the
  // listening socket gives it nothing any more, and every connection that was accepted is served to its end.
  void stopAccepting() { ::shutdown(svr_sock_, SHUT_RDWR); }
};

}  // namespace

class Server::Implementation {
 public:
  Implementation(const Options& options, const Synthesis& synthesis, const VoiceList& voices);

  int bind();
  bool run() { return server_.listen_after_bind() || isStopping_; }
  void stop();
  bool isRunning() const { return server_.is_running(); }

 private:
  void setLimits();
  void setRoutes();
  void setErrorReplies();
  void handleSpeak(const httplib::Request& request, httplib::Response& response,
                   const httplib::ContentReader& readContent);
  void answer(const SpeechRequest& request, httplib::Response& response);

  const Options& options_;
  const Synthesis& synthesis_;
  const VoiceList& voices_;
  Places places_;
  HttpServer server_;
  std::atomic<bool> isStopping_ = false;
};

Server::Implementation::Implementation(const Options& options, const Synthesis& synthesis,
                                       const VoiceList& voices)
    : options_(options), synthesis_(synthesis), voices_(voices), places_(options.concurrent) {
  setLimits();
  setRoutes();
  setErrorReplies();
}

void Server::Implementation::setLimits() {
  const auto threadCount = static_cast<size_t>(options_.concurrent) + kSpareThreads;
  server_.new_task_queue = [threadCount] { return new httplib::ThreadPool(threadCount); };
  server_.set_socket_options(setSocketOptions);
  server_.set_tcp_nodelay(true);
  server_.set_read_timeout(kIoTimeoutSeconds);
  server_.set_write_timeout(kIoTimeoutSeconds);
  // A connection holds one of the threads as long as it is open, and the module's client never closes its
  // own: so every connection serves one request.
  server_.set_keep_alive_max_count(1);
}

void Server::Implementation::setRoutes() {
  server_.set_pre_routing_handler([](const httplib::Request& request, httplib::Response& response) {
    currentNotes() = RequestNotes();
    const bool isReading = request.method == "GET" || request.method == "HEAD";
    const bool isWrongForSpeak = request.path == "/a/speak" && request.method != "POST";
    const bool isWrongForHealth = request.path == "/health" && !isReading;
    if (!isWrongForSpeak && !isWrongForHealth) return httplib::Server::HandlerResponse::Unhandled;
    const char* const allowed = isWrongForSpeak ? "POST" : "GET, HEAD";
    response.set_header("Allow", allowed);
    refuse(response, {405, std::string("this address takes ") + allowed + " only"});
    return httplib::Server::HandlerResponse::Handled;
  });
  server_.Get("/health", [](const httplib::Request&, httplib::Response& response) {
    response.set_content("ok\n", "text/plain; charset=utf-8");
    currentNotes().replyBytes = response.body.size();
  });
  server_.Post("/a/speak", [this](const httplib::Request& request, httplib::Response& response,
                                  const httplib::ContentReader& readContent) {
    handleSpeak(request, response, readContent);
  });
  // A large body is announced before it is sent: the answer can spare the sender the trouble.
  server_.set_expect_100_continue_handler(
      [this](const httplib::Request& request, httplib::Response& response) {
        if (!declaresTooMuch(request, options_.maxBodyBytes)) return 100;
        refuse(response, bodyTooLarge(options_.maxBodyBytes));
        return 413;
      });
  server_.set_logger([](const httplib::Request& request, const httplib::Response& response) {
    logRequest(request.method, request.path, response.status);
  });
}

void Server::Implementation::setErrorReplies() {
  server_.set_exception_handler(
      [](const httplib::Request&, httplib::Response& response, const std::exception_ptr& failure) {
        try {
          std::rethrow_exception(failure);
        } catch (const std::exception& error) {
          refuse(response, {500, std::string("the request failed: ") + error.what()});
        } catch (...) {
          refuse(response, {500, "the request failed"});
        }
      });
  server_.set_error_handler([](const httplib::Request&, httplib::Response& response) {
    if (response.body.empty()) refuse(response, {response.status, textForStatus(response.status)});
  });
}

void Server::Implementation::handleSpeak(const httplib::Request& request, httplib::Response& response,
                                         const httplib::ContentReader& readContent) {
  if (!request.has_header("Content-Length") && !request.has_header("Transfer-Encoding")) {
    return refuse(response, {411, "the request must give the length of its body"});
  }

  std::string body;
  size_t received = 0;
  const size_t limit = options_.maxBodyBytes;
  const bool arrived = readContent([&](const char* bytes, size_t count) {
    received += count;
    if (received <= limit) body.append(bytes, count);
    return received <= kDrainFactor * limit;
  });
  if (received > limit) return refuse(response, bodyTooLarge(limit));
  if (!arrived) return refuse(response, {400, "the request body did not arrive whole"});
  if (!isForm(request))
    return refuse(response, {415, "the request must be a form (application/x-www-form-urlencoded)"});

  auto read = readSpeechRequest(body, voices_, {options_.key, options_.maxTextCharacters});
  if (const auto* refusal = std::get_if<Refusal>(&read)) return refuse(response, *refusal);
  answer(std::get<SpeechRequest>(read), response);
}

void Server::Implementation::answer(const SpeechRequest& request, httplib::Response& response) {
  RequestNotes& notes = currentNotes();
  notes.voice = request.voice.label;
  notes.form = request.isSsml ? "ssml" : "text";
  notes.characterCount = request.characterCount;

  const bool isLong = request.characterCount > kLongTextCharacters;
  const auto place = places_.enter(isLong, std::chrono::seconds(options_.waitSeconds));
  if (!place) return refuse(response, {503, "the service is busy; try again later"});

  auto spoken = synthesis_.speak(request);
  if (const auto* refusal = std::get_if<Refusal>(&spoken)) return refuse(response, *refusal);
  SpoolFile samples = std::move(std::get<SpoolFile>(spoken));
  if (request.format == AudioFormat::kMp3) {
    sendFile(response, "", encodeMp3(samples, kSampleRateHz), "audio/mpeg");
  } else {
    const auto dataBytes = static_cast<uint32_t>(samples.size());
    sendFile(response, wavHeader(dataBytes, kSampleRateHz), std::move(samples), "audio/wav");
  }
}

int Server::Implementation::bind() {
  int port = options_.port;
  if (port == 0) {
    port = server_.bind_to_any_port(options_.host);
  } else if (!server_.bind_to_port(options_.host, port)) {
    port = -1;
  }
  return port > 0 && server_.lengthenQueue() ? port : -1;
}

void Server::Implementation::stop() {
  isStopping_ = true;
  server_.stopAccepting();
}

Server::Server(const Options& options, const Synthesis& synthesis, const VoiceList& voices)
    : implementation_(std::make_unique<Implementation>(options, synthesis, voices)) {}

Server::~Server() = default;

int Server::bind() { return implementation_->bind(); }

bool Server::run() { return implementation_->run(); }

void Server::stop() { implementation_->stop(); }

bool Server::isRunning() const { return implementation_->isRunning(); }

}  // namespace speech::service
