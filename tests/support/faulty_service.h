#pragma once

// The misbehaving speech service that this program runs beside: what it is told to answer, what it was asked.

#include <curl/curl.h>

#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace speech::test {

class FaultyService {
 public:
  /// The speech service's URL.
  const char* url() const { return url_.c_str(); }

  /// What it answers to the next request. Forgets what it was told before.
  void answerNext(const std::string& reply) const { ask("/faults?clear=1&next=" + escaped(reply)); }

  /// How many requests have come so far.
  int requestCount() const { return std::stoi(ask("/requests")); }
  /// The form of the last request, byte for byte; one of its fields, decoded.
  std::string lastForm() const { return ask("/requests/last"); }
  std::string lastField(const std::string& name) const { return ask("/requests/last?field=" + name); }

 private:
  using Handle = std::unique_ptr<CURL, decltype([](CURL* handle) { curl_easy_cleanup(handle); })>;

  static std::string addressFromEnvironment() {
    const char* const url = std::getenv("NARRAVO_FAULTY_URL");
    if (url == nullptr) throw std::runtime_error("run this program with narravo-faulty-service");
    return url;
  }

  static std::string escaped(const std::string& text) {
    std::unique_ptr<char, decltype([](char* made) { curl_free(made); })> made(
        curl_easy_escape(nullptr, text.c_str(), static_cast<int>(text.size())));
    return made.get();
  }

  std::string ask(const std::string& path) const {
    const std::string address = url_.substr(0, url_.find("/a/speak")) + path;
    const Handle handle(curl_easy_init());
    std::string answer;
    const auto append = [](char* data, std::size_t size, std::size_t count, void* text) -> std::size_t {
      static_cast<std::string*>(text)->append(data, size * count);
      return size * count;
    };
    curl_easy_setopt(handle.get(), CURLOPT_URL, address.c_str());
    curl_easy_setopt(handle.get(), CURLOPT_FAILONERROR, 1L);
    curl_easy_setopt(handle.get(), CURLOPT_WRITEFUNCTION, +append);
    curl_easy_setopt(handle.get(), CURLOPT_WRITEDATA, &answer);
    if (curl_easy_perform(handle.get()) != CURLE_OK) throw std::runtime_error("no answer to " + address);
    return answer;
  }

  std::string url_ = addressFromEnvironment();
};

}  // namespace speech::test
