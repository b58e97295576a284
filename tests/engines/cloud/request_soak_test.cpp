// Many requests in a row, most of them answered badly: 1,000 with SPEECH_SOAK_ROUNDS=40, which takes a while.

#include <cstdlib>
#include <iostream>

#include "tests/engines/cloud/cloud_engine_test.h"
#include "tests/engines/cloud/faulty_service.h"
#include "tests/support/process_figures.h"

namespace speech {
namespace {

using test::ProcessFigures;

// The service answers as a voice's name asks it to.
constexpr const char* kReplies[] = {
    "speech",
    "content-type:audio/wave",
    "chunked",
    "until-close",
    "stutter:4000:1",
    "redirect",
    "text",
    "lines",
    "long-line:5000",
    "error:500:out of order",
    "empty",
    "content-type:audio/mpeg",
    "content-type:",
    "cut:1000",
    "chunked:cut",
    "cut-header",
    "close",
    "reset",
    "garbage",
    "redirect:error:404:none",
    "empty-text",
    "redirect-nowhere",
    "not-a-wav",
    "endless-body:200000",
    "endless-header:400000",
};

CStringW voiceFor(const char* reply) { return CStringW(L"fault-") + fromUtf8(reply).c_str(); }

/// Bytes and handles lost by each request.
struct Loss {
  double bytes, handles;

  Loss(const ProcessFigures& before, const ProcessFigures& after, int rounds)
      : bytes(static_cast<double>(after.heapBytes) - static_cast<double>(before.heapBytes)),
        handles(static_cast<double>(after.handles) - static_cast<double>(before.handles)) {
    bytes /= rounds * std::ssize(kReplies);
    handles /= static_cast<double>(rounds * std::ssize(kReplies));
  }
};

class RequestSoak : public test::CloudEngineTest {
 protected:
  /// One request for each kind of reply; the number of those that brought sound.
  int requestEach() {
    int succeeded = 0;
    for (const char* reply : kReplies) {
      voice_.setEngineKey1(voiceFor(reply));
      succeeded += engine_.requestSpeech(L"some text", false, output().c_str());
    }
    host_.takeNotices();
    for (const auto& file : temporaryFiles(L".txt")) std::filesystem::remove(file);
    return succeeded;
  }

  /// The same transfers with nothing around them; like the engine's, their handles are never cleaned up.
  void transferEach() const {
    for (const char* reply : kReplies) {
      const std::string form = "voice=" + toUtf8(voiceFor(reply).GetString()) + "&text=some%20text";
      const auto drop = [](char*, std::size_t size, std::size_t count, void*) { return size * count; };
      curl_global_init(CURL_GLOBAL_ALL);
      CURL* const handle = curl_easy_init();
      curl_easy_setopt(handle, CURLOPT_URL, service_.url());
      curl_easy_setopt(handle, CURLOPT_FOLLOWLOCATION, 1L);
      curl_easy_setopt(handle, CURLOPT_POSTFIELDS, form.c_str());
      curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, +drop);
      static_cast<void>(curl_easy_perform(handle));
      curl_global_cleanup();
    }
  }

  test::FaultyService service_;
  Skyvo engine_{&voice_, service_.url()};
};

TEST_F(RequestSoak, LosesOnlyTheTransferHandles) {
  const char* const wanted = std::getenv("SPEECH_SOAK_ROUNDS");
  const int rounds = wanted != nullptr ? std::atoi(wanted) : 4;
  ASSERT_GT(rounds, 0);
  ASSERT_EQ(requestEach(), 8);
  const ProcessFigures beforeTransfers = ProcessFigures::now();
  constexpr int kTransferRounds = 3;
  for (int round = 0; round < kTransferRounds; ++round) transferEach();
  const ProcessFigures before = ProcessFigures::now();
  for (int round = 0; round < rounds; ++round) ASSERT_EQ(requestEach(), 8) << round;

  const Loss perTransfer(beforeTransfers, before, kTransferRounds);
  const Loss perRequest(before, ProcessFigures::now(), rounds);
  std::cout << "lost per request: " << perRequest.bytes << " bytes, " << perRequest.handles
            << " handles; of which by the transfer: " << perTransfer.bytes << " bytes, "
            << perTransfer.handles << " handles\n";
  EXPECT_GT(perTransfer.bytes, 1000);
  EXPECT_LT(perRequest.bytes, perTransfer.bytes * 1.05 + 100);
  EXPECT_LT(perRequest.handles, perTransfer.handles + 0.1);
}

}  // namespace
}  // namespace speech
