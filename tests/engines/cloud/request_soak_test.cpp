// Many requests in a row, most of them answered badly: 1,000 with SPEECH_SOAK_ROUNDS=40, which takes a while.

#include <windows.h>

#include <array>
#include <cstdio>
#include <cstdlib>

#include "tests/engines/cloud/cloud_engine_test.h"
#include "tests/engines/cloud/faulty_service.h"
#include "tests/support/handle_count.h"

namespace speech {
namespace {

// The service answers as a voice's name asks it to.
constexpr std::array kReplies = {
    "speech",
    "parameters",
    "chunked",
    "until-close",
    "stutter:4000:1",
    "redirect",
    "text",
    "lines",
    "long-line:5000",
    "error:500:out of order",
    "empty",
    "mpeg",
    "no-type",
    "cut:1000",
    "chunked:cut",
    "cut-header",
    "close",
    "reset",
    "garbage",
    "redirect:error:404:none",
    "redirect-nowhere",
    "empty-text",
    "not-a-wav",
    "endless-body:200000",
    "endless-header:400000",
};

/// How often every reply is asked for.
int soakRounds() {
  constexpr int kRounds = 6;
  const char* const wanted = std::getenv("SPEECH_SOAK_ROUNDS");
  return wanted != nullptr ? std::atoi(wanted) : kRounds;
}

/// The bytes in use on all heaps of the process.
std::size_t busyHeapBytes() {
  std::array<HANDLE, 64> heaps;
  const DWORD count = GetProcessHeaps(heaps.size(), heaps.data());
  EXPECT_LE(count, heaps.size());
  std::size_t sum = 0;
  for (DWORD i = 0; i < std::min<DWORD>(count, heaps.size()); ++i) {
    HeapLock(heaps[i]);
    PROCESS_HEAP_ENTRY entry = {};
    while (HeapWalk(heaps[i], &entry)) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) sum += entry.cbData;
    }
    HeapUnlock(heaps[i]);
  }
  return sum;
}

struct Use {
  double bytes;
  double handles;

  static Use now() {
    return {static_cast<double>(busyHeapBytes()), static_cast<double>(test::openHandleCount())};
  }
};

struct Loss {
  double bytes;
  double handles;

  Loss(const Use& before, const Use& after, std::size_t count)
      : bytes((after.bytes - before.bytes) / static_cast<double>(count)),
        handles((after.handles - before.handles) / static_cast<double>(count)) {}
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
      const auto drop = [](char*, std::size_t size, std::size_t count, void*) -> std::size_t {
        return size * count;
      };
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

  static CStringW voiceFor(const char* reply) { return CStringW(L"fault-") + fromUtf8(reply).c_str(); }

  test::FaultyService service_;
  Skyvo engine_{&voice_, service_.url()};
};

TEST_F(RequestSoak, LosesOnlyTheTransferHandles) {
  const int succeededPerRound = requestEach();
  EXPECT_EQ(succeededPerRound, 8);

  const int rounds = soakRounds();
  ASSERT_GT(rounds, 0);
  const Use beforeTransfers = Use::now();
  constexpr int kTransferRounds = 4;
  for (int round = 0; round < kTransferRounds; ++round) transferEach();
  const Use before = Use::now();
  for (int round = 0; round < rounds; ++round) ASSERT_EQ(requestEach(), succeededPerRound) << round;
  const Use after = Use::now();

  const Loss perTransfer(beforeTransfers, before, kTransferRounds * kReplies.size());
  const Loss perRequest(before, after, static_cast<std::size_t>(rounds) * kReplies.size());
  std::printf(
      "lost per request: %.0f bytes, %.2f handles; of which by the transfer: %.0f bytes, %.2f handles\n",
      perRequest.bytes, perRequest.handles, perTransfer.bytes, perTransfer.handles);
  EXPECT_GT(perTransfer.bytes, 1000);
  EXPECT_LT(perRequest.bytes, perTransfer.bytes * 1.05 + 100);
  EXPECT_LT(perRequest.handles, perTransfer.handles + 0.1);
}

}  // namespace
}  // namespace speech
