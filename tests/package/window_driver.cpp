// window_driver WINDOW_CLASS: uses a window of another program as somebody at the keyboard does, and tells
// what is to be seen of it. Takes one command a line from standard input and answers each with one line;
// texts are UTF-8.
//
//   keys ctrl+s          presses keys together: ctrl, alt, shift, a letter, or one of kKeys
//   type TEXT            types a text, whatever the keyboard's layout; "¶" stands for the Enter key
//   front                title of the window in front
//   focus                number of the control that has the keyboard's focus, 0 for none
//   text NUMBER          text of a control, with "¶" for each end of a line
//   enabled NUMBER       whether a control can be used: 1 or 0
//   visible NUMBER       whether a control is to be seen: 1 or 0
//   selection NUMBER     begin and end of what is selected in a text box
//   progress NUMBER      how far a progress bar is
//   misplaced            numbers of the controls that overlap another one or lie outside the window
//   picture PATH         writes the window's picture as a PNG file
//   close                asks the window to close
//
// An answer that begins with "error:" says why a command could not be carried out.

#include <windows.h>

#include <commctrl.h>
#include <objidl.h>

#include <gdiplus.h>

#include <algorithm>
#include <iostream>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "win32/text.h"

namespace {

const std::map<std::string, WORD> kKeys = {{"ctrl", VK_CONTROL}, {"alt", VK_MENU},    {"shift", VK_SHIFT},
                                           {"enter", VK_RETURN}, {"esc", VK_ESCAPE},  {"tab", VK_TAB},
                                           {"space", VK_SPACE},  {"right", VK_RIGHT}, {"down", VK_DOWN},
                                           {"end", VK_END},      {"f5", VK_F5},       {"f6", VK_F6}};

std::wstring windowClass;

/// Windows come and go, so each command looks for it anew.
HWND mainWindow() {
  HWND window = FindWindowW(windowClass.c_str(), nullptr);
  if (window == nullptr) throw std::runtime_error("no such window");
  return window;
}

HWND control(const std::string& number) {
  HWND found = GetDlgItem(mainWindow(), std::stoi(number));
  if (found == nullptr) throw std::runtime_error("no control " + number);
  return found;
}

std::string textOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)) + 1, L'\0');
  text.resize(static_cast<std::size_t>(
      SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
  std::string shown;
  for (const char c : speech::toUtf8(text)) {
    if (c == '\n')
      shown += "\u00B6";
    else if (c != '\r')
      shown += c;
  }
  return shown;
}

INPUT key(WORD code, WORD scan, DWORD flags) {
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = code;
  input.ki.wScan = scan;
  input.ki.dwFlags = flags;
  return input;
}

void send(std::vector<INPUT>& inputs) {
  if (SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT)) != inputs.size()) {
    throw std::runtime_error("the keys could not be pressed");
  }
}

void press(const std::string& names) {
  std::vector<INPUT> inputs, releases;
  for (std::size_t at = 0; at <= names.size();) {
    const std::size_t end = std::min(names.find('+', at), names.size());
    const std::string name = names.substr(at, end - at);
    const auto known = kKeys.find(name);
    if (known == kKeys.end() && name.size() != 1) throw std::runtime_error("no key " + name);
    const WORD code = known != kKeys.end() ? known->second : static_cast<WORD>(name[0] - 'a' + 'A');
    const auto scan = static_cast<WORD>(MapVirtualKeyW(code, MAPVK_VK_TO_VSC));
    inputs.push_back(key(code, scan, 0));
    releases.insert(releases.begin(), key(code, scan, KEYEVENTF_KEYUP));
    at = end + 1;
  }
  inputs.insert(inputs.end(), releases.begin(), releases.end());
  send(inputs);
}

void type(const std::string& text) {
  std::vector<INPUT> inputs;
  std::wstring units = speech::fromUtf8(text);
  for (std::size_t at = units.find(L"\u00B6"); at != units.npos; at = units.find(L"\u00B6"))
    units.replace(at, 1, L"\r");
  for (const wchar_t unit : units) {
    inputs.push_back(key(0, unit, KEYEVENTF_UNICODE));
    inputs.push_back(key(0, unit, KEYEVENTF_UNICODE | KEYEVENTF_KEYUP));
  }
  send(inputs);
}

std::string misplaced() {
  struct Placed {
    HWND control;
    RECT place;
  };
  std::vector<Placed> placed;
  for (HWND child = GetWindow(mainWindow(), GW_CHILD); child != nullptr;
       child = GetWindow(child, GW_HWNDNEXT)) {
    Placed next = {child, {}};
    GetWindowRect(child, &next.place);
    MapWindowPoints(nullptr, mainWindow(), reinterpret_cast<POINT*>(&next.place), 2);
    if (IsWindowVisible(child)) placed.push_back(next);
  }
  RECT client, common;
  GetClientRect(mainWindow(), &client);
  std::set<int> numbers;
  for (const Placed& one : placed) {
    IntersectRect(&common, &one.place, &client);
    bool isWrong = !EqualRect(&common, &one.place) || IsRectEmpty(&one.place);
    for (const Placed& other : placed) {
      isWrong = isWrong || (&one != &other && IntersectRect(&common, &one.place, &other.place));
    }
    if (isWrong) numbers.insert(GetDlgCtrlID(one.control));
  }
  std::string answer;
  for (const int number : numbers) answer += std::to_string(number) + " ";
  return answer;
}

void takePicture(const std::string& path) {
  constexpr CLSID kPng = {0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};
  RECT place;
  GetWindowRect(mainWindow(), &place);
  const int width = place.right - place.left, height = place.bottom - place.top;
  HDC screen = GetDC(nullptr);
  HDC memory = CreateCompatibleDC(screen);
  HBITMAP pixels = CreateCompatibleBitmap(screen, width, height);
  const HGDIOBJ former = SelectObject(memory, pixels);
  BitBlt(memory, 0, 0, width, height, screen, place.left, place.top, SRCCOPY);
  SelectObject(memory, former);
  const Gdiplus::Status status =
      Gdiplus::Bitmap(pixels, nullptr).Save(speech::fromUtf8(path).c_str(), &kPng, nullptr);
  DeleteObject(pixels);
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
  if (status != Gdiplus::Ok)
    throw std::runtime_error("the picture could not be written: " + std::to_string(status));
}

std::string focusedControl() {
  GUITHREADINFO info = {};
  info.cbSize = sizeof info;
  GetGUIThreadInfo(GetWindowThreadProcessId(mainWindow(), nullptr), &info);
  return std::to_string(info.hwndFocus != nullptr ? GetDlgCtrlID(info.hwndFocus) : 0);
}

std::string answerTo(const std::string& command, const std::string& argument) {
  if (command == "keys") return press(argument), "ok";
  if (command == "type") return type(argument), "ok";
  if (command == "front") return textOf(GetForegroundWindow());
  if (command == "focus") return focusedControl();
  if (command == "text") return textOf(control(argument));
  if (command == "enabled") return std::to_string(IsWindowEnabled(control(argument)));
  if (command == "visible") return std::to_string(IsWindowVisible(control(argument)));
  if (command == "progress") return std::to_string(SendMessageW(control(argument), PBM_GETPOS, 0, 0));
  if (command == "selection") {
    DWORD begin = 0, end = 0;
    SendMessageW(control(argument), EM_GETSEL, reinterpret_cast<WPARAM>(&begin),
                 reinterpret_cast<LPARAM>(&end));
    return std::to_string(begin) + " " + std::to_string(end);
  }
  if (command == "misplaced") return misplaced();
  if (command == "picture") return takePicture(argument), "ok";
  if (command == "close") return PostMessageW(mainWindow(), WM_CLOSE, 0, 0), "ok";
  throw std::runtime_error("no command " + command);
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count != 2) return 2;
  windowClass = arguments[1];
  SetProcessDPIAware();  // or places would be those of a window without scaling
  ULONG_PTR token = 0;
  const Gdiplus::GdiplusStartupInput input;
  Gdiplus::GdiplusStartup(&token, &input, nullptr);
  for (std::string line; std::getline(std::cin, line);) {
    if (line.ends_with('\r')) line.pop_back();
    const std::size_t blank = std::min(line.find(' '), line.size());
    std::string answer;
    try {
      answer = answerTo(line.substr(0, blank), line.substr(std::min(blank + 1, line.size())));
    } catch (const std::exception& problem) {
      answer = std::string("error: ") + problem.what();
    }
    std::cout << answer << std::endl;
  }
  Gdiplus::GdiplusShutdown(token);
  return 0;
}
