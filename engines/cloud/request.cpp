// The exchange with the speech service: one POST of a form for each text.

#include <curl/curl.h>
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <new>
#include <string>
#include <string_view>

#include "base/file.h"
#include "engines/cloud/skyvo.h"
#include "engines/guarded.h"
#include "engines/host_notices.h"
#include "win32/paths.h"
#include "win32/text.h"

namespace speech {

const char* const kServiceEndpoint = SPEECH_CLOUD_ENDPOINT;

namespace {

constexpr std::string_view kServiceKey = "9e4b1c7a2d6f8e0a3b5c7d9f1e2a4c6b";
constexpr const char* kAudioType = "audio/wav";
constexpr int kLineBytes = 1024;

/// Where a reply goes.
struct ReplyFiles {
  File body, headers;
};

std::size_t writeBody(const char* data, std::size_t size, std::size_t count, void* reply) {
  return std::fwrite(data, size, count, static_cast<ReplyFiles*>(reply)->body.get());
}

std::size_t writeHeader(const char* data, std::size_t size, std::size_t count, void* reply) {
  return std::fwrite(data, size, count, static_cast<ReplyFiles*>(reply)->headers.get());
}

struct CurlTextDeleter {
  void operator()(char* text) const { curl_free(text); }
};
struct GlobalCleanUp {
  ~GlobalCleanUp() { curl_global_cleanup(); }
};

/// What is posted. Kept: voice and language go out as they stand; only the text is escaped.
std::string makeForm(const LXAPIProduct& product, CURL* transfer, const wchar_t* text, bool isSsml) {
  const CStringW voice = product.getEngineKey1(), language = product.getLanguageCode();
  const std::string utf8 = toUtf8(textOrEmpty(text));
  const std::unique_ptr<char, CurlTextDeleter> escaped(
      curl_easy_escape(transfer, utf8.c_str(), static_cast<int>(utf8.size())));
  if (!escaped) throw std::bad_alloc();  // longer than the transfer library takes

  std::string form;
  // Kept: far more than the form needs, since every character of the text counts three times.
  form.reserve(kServiceKey.size() + static_cast<std::size_t>(voice.GetLength() + language.GetLength()) +
               3 * std::strlen(escaped.get()) + 67);
  form.append("streaming=0&key=").append(kServiceKey);
  form.append("&voice=").append(toThreadCodePage(voice.GetString()));
  form.append("&lang=").append(toThreadCodePage(language.GetString()));
  form.append(isSsml ? "&ssml=" : "&text=").append(escaped.get());
  return form.append("&audioformat=pcm");
}

/// @param errorText  receives what went wrong; of CURL_ERROR_SIZE bytes
CURLcode post(CURL* transfer, const char* url, const std::string& form, ReplyFiles& reply, char* errorText) {
  curl_easy_setopt(transfer, CURLOPT_URL, url);
  curl_easy_setopt(transfer, CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(transfer, CURLOPT_HEADERFUNCTION, writeHeader);
  curl_easy_setopt(transfer, CURLOPT_HEADERDATA, &reply);
  curl_easy_setopt(transfer, CURLOPT_POSTFIELDS, form.c_str());
  curl_easy_setopt(transfer, CURLOPT_POSTFIELDSIZE, static_cast<long>(form.size()));
  curl_easy_setopt(transfer, CURLOPT_WRITEFUNCTION, writeBody);
  curl_easy_setopt(transfer, CURLOPT_WRITEDATA, &reply);
  curl_easy_setopt(transfer, CURLOPT_ERRORBUFFER, errorText);
  return curl_easy_perform(transfer);
}

/// Whether any header line names WAV sound, those of redirecting replies included.
bool isAudioReply(const std::string& headerPath) {
  const File headers = openFile(headerPath.c_str(), "rb");
  char line[kLineBytes];
  while (headers && std::fgets(line, kLineBytes, headers.get()) != nullptr) {
    if (std::strstr(line, kAudioType) != nullptr) return true;
  }
  return false;
}

/// Sends the host a text that says what went wrong.
void sendErrorText(char* text) {
  COPYDATASTRUCT copy = {};
  copy.cbData = static_cast<DWORD>(std::strlen(text));
  copy.lpData = text;
  SendMessageW(g_hostWindow, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&copy));
}

void sendFirstLine(const std::string& bodyPath) {
  const File body = openFile(bodyPath.c_str(), "rb");
  char line[kLineBytes] = {};
  if (body) static_cast<void>(std::fgets(line, kLineBytes, body.get()));
  sendErrorText(line);
}

}  // namespace

bool Skyvo::requestSpeech(const wchar_t* text, bool isSsml, const wchar_t* path) {
  if (guarded(false, [&] { return exchange(text, isSsml, path); })) return true;
  postNotice(kNoticeFinishedOrFailed, kDetailFinishedOrFailed);
  return false;
}

bool Skyvo::exchange(const wchar_t* text, bool isSsml, const wchar_t* path) const {
  curl_global_init(CURL_GLOBAL_ALL);
  CURL* const transfer = curl_easy_init();  // Kept: never cleaned up, so every request leaks it.
  if (transfer == nullptr) return false;

  const std::string bodyPath = toThreadCodePage(textOrEmpty(path));
  const std::string headerPath = toThreadCodePage(newTemporaryPath(L".txt"));
  ReplyFiles reply{openFile(bodyPath.c_str(), "wb"), openFile(headerPath.c_str(), "wb")};
  if (!reply.body || !reply.headers) {
    // Kept: when one of the two cannot be opened, the other stays open.
    static_cast<void>(reply.body.release());
    static_cast<void>(reply.headers.release());
    return false;
  }

  const GlobalCleanUp cleanUp;
  char errorText[CURL_ERROR_SIZE] = {};
  const CURLcode result =
      post(transfer, serviceEndpoint_, makeForm(*product_, transfer, text, isSsml), reply, errorText);
  reply = {};
  if (result != CURLE_OK) {
    sendErrorText(errorText);
    return false;
  }
  if (isAudioReply(headerPath)) return true;
  sendFirstLine(bodyPath);
  return false;
}

}  // namespace speech
