// What the request asks of the transfer library, in order: a stand-in of the library keeps every call.

#include <curl/curl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdarg>
#include <cstring>
#include <map>

#include "engines/shared/module_state.h"
#include "tests/engines/cloud/cloud_engine_test.h"

namespace {

/// The stand-in's state.
struct Transfer {
  bool handleIsMissing = false;
  std::vector<std::string> headerLines = {};
  std::vector<std::string> bodyPieces = {};
  std::vector<std::string> calls = {};
  std::map<int, void*> pointers = {};
  std::string endpoint = {}, form = {};
};
Transfer* g_transfer;

using Sink = std::size_t (*)(const char*, std::size_t, std::size_t, void*);

void deliver(const std::vector<std::string>& pieces, CURLoption sink, CURLoption destination) {
  const auto write = reinterpret_cast<Sink>(g_transfer->pointers.at(sink));
  for (const std::string& piece : pieces) {
    EXPECT_EQ(write(piece.data(), 1, piece.size(), g_transfer->pointers.at(destination)), piece.size());
  }
}

}  // namespace

extern "C" {

CURLcode curl_global_init(long flags) {
  g_transfer->calls.push_back("curl_global_init " + std::to_string(flags));
  return CURLE_OK;
}

CURL* curl_easy_init() {
  g_transfer->calls.push_back("curl_easy_init");
  return g_transfer->handleIsMissing ? nullptr : reinterpret_cast<CURL*>(g_transfer);
}

CURLcode(curl_easy_setopt)(CURL*, CURLoption option, ...) {
  std::va_list arguments;
  va_start(arguments, option);
  if (option < CURLOPTTYPE_OBJECTPOINT) {
    g_transfer->calls.push_back(std::to_string(option) + " = " + std::to_string(va_arg(arguments, long)));
  } else {
    g_transfer->calls.push_back(std::to_string(option));
    g_transfer->pointers[option] = va_arg(arguments, void*);
  }
  va_end(arguments);
  return CURLE_OK;
}

char* curl_easy_escape(CURL*, const char* text, int length) {
  g_transfer->calls.push_back("curl_easy_escape " + std::string(text, static_cast<std::size_t>(length)));
  return strdup("ESCAPED");
}

CURLcode curl_easy_perform(CURL*) {
  g_transfer->calls.push_back("curl_easy_perform");
  g_transfer->endpoint = static_cast<const char*>(g_transfer->pointers.at(CURLOPT_URL));
  g_transfer->form = static_cast<const char*>(g_transfer->pointers.at(CURLOPT_POSTFIELDS));
  deliver(g_transfer->headerLines, CURLOPT_HEADERFUNCTION, CURLOPT_HEADERDATA);
  deliver(g_transfer->bodyPieces, CURLOPT_WRITEFUNCTION, CURLOPT_WRITEDATA);
  return CURLE_OK;
}

void curl_free(void* text) {
  g_transfer->calls.push_back("curl_free");
  std::free(text);
}

void curl_global_cleanup() { g_transfer->calls.push_back("curl_global_cleanup"); }

void curl_easy_cleanup(CURL*) { ADD_FAILURE() << "the handle is not to be cleaned up"; }

}  // extern "C"

namespace speech {
namespace {

using test::Notice;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kForm =
    "streaming=0&key=9e4b1c7a2d6f8e0a3b5c7d9f1e2a4c6b&voice=Vox&lang=en-US&text=ESCAPED&audioformat=pcm";

class RequestCalls : public test::CloudEngineTest {
 protected:
  RequestCalls() { g_transfer = &transfer_; }

  Transfer transfer_;
};

TEST_F(RequestCalls, FollowOneOrder) {
  transfer_.headerLines = {"Content-Type: audio/wav\r\n"};
  Skyvo engine(&voice_);
  EXPECT_TRUE(engine.requestSpeech(L"Grüße", false, output().c_str()));
  EXPECT_THAT(transfer_.calls,
              ElementsAre("curl_global_init 3", "curl_easy_init", "10002", "52 = 1", "20079", "10029",
                          "curl_easy_escape Gr\xC3\xBC\xC3\x9F"
                          "e",
                          "10015", "60 = " + std::to_string(std::strlen(kForm)), "20011", "10001", "10010",
                          "curl_easy_perform", "curl_free", "curl_global_cleanup"));
  EXPECT_EQ(transfer_.form, kForm);
  EXPECT_EQ(transfer_.endpoint, kServiceEndpoint);
}

TEST_F(RequestCalls, EndWithAFailureNoticeWhenThereIsNoHandle) {
  transfer_.handleIsMissing = true;
  EXPECT_FALSE(Skyvo(&voice_).requestSpeech(L"text", false, output().c_str()));
  EXPECT_THAT(transfer_.calls, ElementsAre("curl_global_init 3", "curl_easy_init"));
  EXPECT_THAT(host_.copiedTexts(), IsEmpty());
  EXPECT_THAT(host_.takeNotices(), ElementsAre(kFailure));
}

TEST_F(RequestCalls, EndWithAFailureNoticeAndAnOpenHeaderFileWhenTheOutputCannotBeOpened) {
  EXPECT_FALSE(Skyvo(&voice_).requestSpeech(L"text", false, (temporary_ / L"none" / L"out.wav").c_str()));
  EXPECT_THAT(transfer_.calls,
              ElementsAre("curl_global_init 3", "curl_easy_init", "10002", "52 = 1", "20079", "10029"));
  EXPECT_THAT(host_.copiedTexts(), IsEmpty());
  EXPECT_THAT(host_.takeNotices(), ElementsAre(kFailure));
  ASSERT_EQ(temporaryFiles(L".txt").size(), 1u);
  EXPECT_FALSE(DeleteFileW(temporaryFiles(L".txt")[0].c_str()));
  EXPECT_EQ(GetLastError(), DWORD{ERROR_SHARING_VIOLATION});
  EXPECT_EQ(_fcloseall(), 1);
}

TEST_F(RequestCalls, LookForTheTypeAnywhereInAHeaderLine) {
  for (const auto& [header, isAudio] : {std::pair{"content-type: audio/wav; rate=22050\r\n", true},
                                        {"X-Anything: once audio/wave\r\n", true},
                                        {"Content-Type: audio/WAV\r\n", false},
                                        {"Content-Type: audio/x-wav\r\n", false},
                                        {"", false}}) {
    transfer_ = {.headerLines = {"HTTP/1.1 200 OK\r\n", header, "\r\n"},
                 .bodyPieces = {"first ", std::string("\0\x1A", 2), "last"}};
    EXPECT_EQ(Skyvo(&voice_).requestSpeech(L"text", false, output().c_str()), isAudio) << header;
    EXPECT_EQ(test::readFile(output()), std::string("first \0\x1Alast", 12));
    EXPECT_EQ(host_.takeNotices().size(), isAudio ? 0u : 1u) << header;
  }
}

TEST_F(RequestCalls, FindRoomForAVoiceWhoseNameTakesSeveralBytesACharacter) {
  voice_.setEngineKey1(std::wstring(3000, L'語').c_str());
  EXPECT_FALSE(Skyvo(&voice_).requestSpeech(L"", false, output().c_str()));
  EXPECT_NE(transfer_.form.find("&voice=" + toThreadCodePage(std::wstring(3000, L'語')) + "&lang="),
            std::string::npos);
}

}  // namespace
}  // namespace speech
