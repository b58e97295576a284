// window_driver WINDOW_CLASS: uses a window of another program as somebody at the keyboard does. It takes one
// command a line from standard input, with a blank and an argument, and answers each with one line in UTF-8.
//
//   keys ctrl+s          presses keys together: ctrl, alt, a letter, or one of kKeys
//   type TEXT            types a text, whatever the keyboard's layout
//   front                title of the window in front
//   text NUMBER          text of a control
//   selection NUMBER     begin and end of what is selected in a text box

#include <windows.h>

#include <algorithm>
#include <iostream>
#include <map>
#include <string>

#include "win32/text.h"

namespace {

const std::map<std::string, WORD> kKeys = {{"ctrl", VK_CONTROL}, {"alt", VK_MENU}, {"enter", VK_RETURN},
                                           {"esc", VK_ESCAPE},   {"f4", VK_F4},    {"f5", VK_F5},
                                           {"f6", VK_F6}};

std::string textOf(HWND window) {
  std::wstring text(32768, L'\0');
  const LRESULT length = SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(length));
  std::ranges::replace_if(
      text, [](wchar_t unit) { return unit == L'\r' || unit == L'\n'; }, L' ');
  return speech::toUtf8(text);
}

void send(WORD code, WORD scan, DWORD flags) {
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = code;
  input.ki.wScan = scan;
  input.ki.dwFlags = flags;
  SendInput(1, &input, sizeof input);
}

void press(const std::string& names) {
  const std::size_t end = std::min(names.find('+'), names.size());
  const std::string name = names.substr(0, end);
  const WORD code = kKeys.contains(name) ? kKeys.at(name) : static_cast<WORD>(name[0] - 'a' + 'A');
  const auto scan = static_cast<WORD>(MapVirtualKeyW(code, MAPVK_VK_TO_VSC));
  send(code, scan, 0);
  if (end < names.size()) press(names.substr(end + 1));
  send(code, scan, KEYEVENTF_KEYUP);
}

void type(const std::string& text) {
  for (const wchar_t unit : speech::fromUtf8(text)) {
    send(0, unit, KEYEVENTF_UNICODE);
    send(0, unit, KEYEVENTF_UNICODE | KEYEVENTF_KEYUP);
  }
}

std::string answerTo(HWND window, const std::string& command, const std::string& argument) {
  if (command == "keys") return press(argument), "ok";
  if (command == "type") return type(argument), "ok";
  if (command == "front") return textOf(GetForegroundWindow());
  HWND const control = GetDlgItem(window, std::stoi(argument));
  if (command == "text") return textOf(control);
  DWORD begin = 0, end = 0;
  SendMessageW(control, EM_GETSEL, reinterpret_cast<WPARAM>(&begin), reinterpret_cast<LPARAM>(&end));
  return std::to_string(begin) + " " + std::to_string(end);
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count != 2) return 2;
  for (std::string line; std::getline(std::cin, line);) {
    if (line.ends_with('\r')) line.pop_back();
    const std::size_t blank = line.find(' ');
    // Windows come and go, so each command looks for it anew.
    HWND const window = FindWindowW(arguments[1], nullptr);
    std::cout << answerTo(window, line.substr(0, blank), line.substr(blank + 1)) << std::endl;
  }
  return 0;
}
