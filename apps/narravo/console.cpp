#include "apps/narravo/console.h"

#include <algorithm>
#include <array>
#include <exception>
#include <utility>

#include <windows.h>

#include "apps/narravo/commands.h"
#include "win32/text.h"

namespace narravo {
namespace {

using speech::fromUtf8;
using speech::toUtf8;

bool isConsole(HANDLE stream) {
  DWORD mode = 0;
  return GetConsoleMode(stream, &mode) != 0;
}

bool writeConsole(HANDLE stream, std::wstring_view text) {
  constexpr std::size_t kConsoleBlock = 8192;  // larger writes can fail for want of console memory
  while (!text.empty()) {
    const DWORD wanted = static_cast<DWORD>(std::min(text.size(), kConsoleBlock));
    DWORD written = 0;
    if (!WriteConsoleW(stream, text.data(), wanted, &written, nullptr) || written == 0) return false;
    text.remove_prefix(written);
  }
  return true;
}

bool writeBytes(HANDLE stream, std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD written = 0;
    if (!WriteFile(stream, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr)) return false;
    bytes.remove_prefix(written);
  }
  return true;
}

/// Console input ends with a line that begins with Ctrl-Z.
std::string readConsole(HANDLE stream) {
  constexpr wchar_t kEndOfInput = 0x1A;
  std::wstring text;
  std::array<wchar_t, 4096> line{};
  DWORD count = 0;
  while (ReadConsoleW(stream, line.data(), static_cast<DWORD>(line.size()), &count, nullptr) && count > 0 &&
         line.front() != kEndOfInput) {
    text.append(line.data(), count);
  }
  return toUtf8(text);
}

void writeErrorText(std::string_view utf8) noexcept {
  try {
    const HANDLE stream = GetStdHandle(STD_ERROR_HANDLE);
    if (isConsole(stream)) {
      writeConsole(stream, fromUtf8(utf8));
    } else {
      writeBytes(stream, utf8);
    }
  } catch (const std::exception&) {
    // Out of memory while reporting: the exit code remains.
  }
}

}  // namespace

void writeOutput(std::wstring_view text) {
  const HANDLE stream = GetStdHandle(STD_OUTPUT_HANDLE);
  const bool written = isConsole(stream) ? writeConsole(stream, text) : writeBytes(stream, toUtf8(text));
  if (!written) throw HostError(kExitFile, "standard output cannot be written");
}

void writeOutput(std::string_view utf8) { writeOutput(fromUtf8(utf8)); }

void writeErrorLine(std::string_view utf8) noexcept {
  try {
    writeErrorText("narravo: " + std::string(utf8) + "\n");
  } catch (const std::exception&) {
    // As above.
  }
}

bool errorIsConsole() { return isConsole(GetStdHandle(STD_ERROR_HANDLE)); }

std::string readInput() {
  const HANDLE stream = GetStdHandle(STD_INPUT_HANDLE);
  if (isConsole(stream)) return readConsole(stream);
  std::string text;
  std::array<char, 65536> block{};
  DWORD count = 0;
  do {
    if (!ReadFile(stream, block.data(), static_cast<DWORD>(block.size()), &count, nullptr)) {
      // A pipe whose writer is gone is the ordinary end.
      if (GetLastError() == ERROR_BROKEN_PIPE) break;
      throw HostError(kExitFile, "standard input cannot be read");
    }
    text.append(block.data(), count);
  } while (count > 0);
  return text;
}

WorkingNotice::Pace WorkingNotice::usualPace() {
  using std::chrono::seconds;
  return errorIsConsole() ? Pace{seconds(1), seconds(1)} : Pace{seconds(2), seconds(10)};
}

WorkingNotice::WorkingNotice(std::string what, Pace pace, std::function<std::string()> extent)
    : what_(std::move(what)),
      pace_(pace),
      extent_(std::move(extent)),
      isConsole_(errorIsConsole()),
      thread_([this] { run(); }) {}

WorkingNotice::~WorkingNotice() {
  {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
  }
  ended_.notify_one();
  thread_.join();
}

void WorkingNotice::run() {
  const auto isEnding = [this] { return isEnding_; };
  std::unique_lock lock(mutex_);
  if (pace_.first.count() > 0 && ended_.wait_for(lock, pace_.first, isEnding)) return;
  do {
    report();
  } while (!ended_.wait_for(lock, pace_.interval, isEnding));
  report();
  if (isConsole_) writeErrorText("\n");
}

void WorkingNotice::report() {
  using std::chrono::seconds;
  const auto elapsed = std::chrono::duration_cast<seconds>(std::chrono::steady_clock::now() - start_).count();
  writeErrorText((isConsole_ ? "\r" : "") + what_ + ", " + std::to_string(elapsed) + " s" +
                 (extent_ ? extent_() : "") + (isConsole_ ? "" : "\n"));
}

}  // namespace narravo
