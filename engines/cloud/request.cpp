// The exchange with the speech service: one POST of a form for each text.

#include <curl/curl.h>
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include "base/file.h"
#include "engines/cloud/skyvo.h"
#include "engines/cloud/temporary_names.h"
#include "engines/shared/guarded.h"
#include "engines/shared/module_state.h"
#include "win32/text.h"

namespace speech {

const char* const kServiceEndpoint = SPEECH_CLOUD_ENDPOINT;

namespace {

constexpr const wchar_t* kServiceKey = L"9e4b1c7a2d6f8e0a3b5c7d9f1e2a4c6b";
constexpr const wchar_t* kAudioFormat = L"pcm";
constexpr const char* kAudioType = "audio/wav";
constexpr int kLineBytes = 1024;

/// Where a reply goes. One request runs at a time.
struct ReplyStreams {
  std::FILE* body;
  std::FILE* headers;
};
ReplyStreams g_replyStreams;

std::size_t writeHeader(const char* data, std::size_t size, std::size_t count, void* streams) {
  return std::fwrite(data, size, count, static_cast<ReplyStreams*>(streams)->headers);
}

std::size_t writeBody(const char* data, std::size_t size, std::size_t count, void* streams) {
  return std::fwrite(data, size, count, static_cast<ReplyStreams*>(streams)->body);
}

struct CurlTextDeleter {
  void operator()(char* text) const { curl_free(text); }
};
struct GlobalCleanUp {
  ~GlobalCleanUp() { curl_global_cleanup(); }
};

/// Kept: far more than the form needs, since every character of the text counts three times.
std::size_t formBufferSize(std::size_t voiceLength, std::size_t languageLength, std::size_t escapedLength) {
  return std::wcslen(kServiceKey) + voiceLength + languageLength + 3 * escapedLength + 67;
}

CDecoder::MallocBlock makeFormBuffer(const std::string& form, std::size_t size) {
  // A voice whose name takes several bytes a character may need more than the rule gives.
  CDecoder::MallocBlock buffer(static_cast<unsigned char*>(std::malloc(std::max(size, form.size() + 1))));
  if (!buffer) throw std::bad_alloc();
  std::memcpy(buffer.get(), form.c_str(), form.size() + 1);
  return buffer;
}

/// Sends the host a text that says what went wrong.
void sendErrorText(char* text) {
  COPYDATASTRUCT copy = {};
  copy.cbData = static_cast<DWORD>(std::strlen(text));
  copy.lpData = text;
  SendMessageW(g_hostWindow, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&copy));
}

/// Whether any header line speaks of WAV sound, those of redirecting replies included.
bool isAudioReply(const char* headerPath) {
  const File headers = openFile(headerPath, "rb");
  char line[kLineBytes];
  while (headers && std::fgets(line, kLineBytes, headers.get()) != nullptr) {
    if (std::strstr(line, kAudioType) != nullptr) return true;
  }
  return false;
}

void sendFirstLine(const char* bodyPath) {
  const File body = openFile(bodyPath, "rb");
  char line[kLineBytes] = {};
  if (body) static_cast<void>(std::fgets(line, kLineBytes, body.get()));
  sendErrorText(line);
}

}  // namespace

bool Skyvo::requestSpeech(const wchar_t* text, bool useSsml, const wchar_t* outputPath) {
  if (guarded(false, [&] { return exchange(text, useSsml, outputPath); })) return true;
  postNotice(kNoticeFinishedOrFailed, kDetailFinishedOrFailed);
  return false;
}

// Kept: the easy handle is never cleaned up; that is what a request leaks.
bool Skyvo::exchange(const wchar_t* text, bool useSsml, const wchar_t* outputPath) const {
  char errorText[CURL_ERROR_SIZE] = {};
  curl_global_init(CURL_GLOBAL_ALL);
  CURL* const handle = curl_easy_init();
  if (handle == nullptr) return false;
  curl_easy_setopt(handle, CURLOPT_URL, serviceEndpoint_);
  curl_easy_setopt(handle, CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(handle, CURLOPT_HEADERFUNCTION, writeHeader);

  const std::string headerPath = toThreadCodePage(makeTempPath(L".txt").GetString());
  const std::string bodyPath = toThreadCodePage(textOrEmpty(outputPath));
  g_replyStreams.body = std::fopen(bodyPath.c_str(), "wb");
  g_replyStreams.headers = std::fopen(headerPath.c_str(), "wb");
  curl_easy_setopt(handle, CURLOPT_HEADERDATA, &g_replyStreams);
  // Kept: when one of the two cannot be opened, the other stays open.
  if (g_replyStreams.body == nullptr || g_replyStreams.headers == nullptr) return false;

  CURLcode result = CURLE_OK;
  {
    const GlobalCleanUp cleanUp;
    CDecoder::MallocBlock form;
    std::unique_ptr<char, CurlTextDeleter> escaped;
    const File headers(g_replyStreams.headers);
    const File body(g_replyStreams.body);

    const std::string utf8 = toUtf8(textOrEmpty(text));
    escaped.reset(curl_easy_escape(handle, utf8.c_str(), static_cast<int>(utf8.size())));
    if (!escaped) return false;  // longer than the transfer library takes
    const std::wstring wideEscaped = fromThreadCodePage(escaped.get());
    form = makeFormBuffer(toThreadCodePage(formBody(wideEscaped.c_str(), useSsml).GetString()),
                          formBufferSize(static_cast<std::size_t>(product_->getEngineKey1().GetLength()),
                                         static_cast<std::size_t>(product_->getLanguageCode().GetLength()),
                                         wideEscaped.size()));
    const char* const fields = reinterpret_cast<const char*>(form.get());
    curl_easy_setopt(handle, CURLOPT_POSTFIELDS, fields);
    curl_easy_setopt(handle, CURLOPT_POSTFIELDSIZE, static_cast<long>(std::strlen(fields)));
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, writeBody);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &g_replyStreams);
    curl_easy_setopt(handle, CURLOPT_ERRORBUFFER, errorText);
    result = curl_easy_perform(handle);
  }
  if (result != CURLE_OK) {
    sendErrorText(errorText);
    return false;
  }
  if (isAudioReply(headerPath.c_str())) return true;
  sendFirstLine(bodyPath.c_str());
  return false;
}

// Kept: voice and language go out as they stand; only the text is escaped.
CStringW Skyvo::formBody(const wchar_t* escapedText, bool useSsml) const {
  CStringW form;
  form.Format(useSsml ? L"streaming=0&key=%s&voice=%s&lang=%s&ssml=%s&audioformat=%s"
                      : L"streaming=0&key=%s&voice=%s&lang=%s&text=%s&audioformat=%s",
              kServiceKey, product_->getEngineKey1().GetString(), product_->getLanguageCode().GetString(),
              escapedText, kAudioFormat);
  return form;
}

}  // namespace speech
