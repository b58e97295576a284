// console_cpp [TEXT]: speaks a text with the first English voice and shows each word as it is heard.

#include <cwchar>
#include <string>

#include <speech/text_to_speech.h>

int wmain(int count, wchar_t** arguments) {
  const std::wstring text = count > 1 ? arguments[1] : L"Hello, world.";
  HWND window = CreateWindowW(L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);

  LXAPIProductList* voices = ITextToSpeech::getLXAPIProductList();
  LXAPIProduct* voice = nullptr;
  for (POSITION at = voices->GetHeadPosition(); at != nullptr && voice == nullptr;) {
    LXAPIProduct* candidate = voices->GetNext(at);
    if (std::wcsncmp(candidate->getLanguageCode(), L"en", 2) == 0) voice = candidate;
  }
  ITextToSpeech* engine = ITextToSpeech::getInstance(window, WM_APP, voice);
  if (engine == nullptr || !engine->speak(text.c_str(), false)) {
    std::fputws(L"No English voice could speak the text.\n", stderr);
    ITextToSpeech::releaseInstance();
    return 1;
  }

  MSG notice;
  while (GetMessageW(&notice, window, WM_APP, WM_APP) > 0 &&
         notice.wParam != speech::kNoticeFinishedOrFailed) {
    const std::wstring word = text.substr(notice.wParam, static_cast<std::size_t>(notice.lParam));
    std::wprintf(L"%ls\n", word.c_str());
  }
  ITextToSpeech::releaseInstance();
  return 0;
}
