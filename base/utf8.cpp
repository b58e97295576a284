#include "base/utf8.h"

#include <algorithm>

namespace speech {
namespace {

bool isContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

/// Length of the well-formed sequence at the start of `text`, 0 when there is none.
size_t sequenceLength(std::string_view text) {
  const auto byte = [text](size_t index) { return static_cast<unsigned char>(text[index]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return 1;
  const size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return 0;
  for (size_t index = 1; index < length; ++index) {
    if (!isContinuation(byte(index))) return 0;
  }
  // The second byte shows overlong forms, surrogates and values above U+10FFFF.
  const unsigned char second = byte(1);
  if (lead == 0xE0 && second < 0xA0) return 0;
  if (lead == 0xED && second > 0x9F) return 0;
  if (lead == 0xF0 && second < 0x90) return 0;
  if (lead == 0xF4 && second > 0x8F) return 0;
  return length;
}

}  // namespace

bool isValidUtf8(std::string_view text) {
  while (!text.empty()) {
    const size_t length = sequenceLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

CodePoint decodeAt(std::string_view text, size_t position) {
  const auto byte = [&](size_t index) { return static_cast<unsigned char>(text[position + index]); };
  const auto tail = [&](size_t index) { return static_cast<char32_t>(byte(index) & 0x3F); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return {lead, 1};
  if (lead < 0xE0) return {static_cast<char32_t>(lead & 0x1F) << 6 | tail(1), 2};
  if (lead < 0xF0) return {static_cast<char32_t>(lead & 0x0F) << 12 | tail(1) << 6 | tail(2), 3};
  return {static_cast<char32_t>(lead & 0x07) << 18 | tail(1) << 12 | tail(2) << 6 | tail(3), 4};
}

size_t countCodePoints(std::string_view text) {
  return static_cast<size_t>(std::count_if(
      text.begin(), text.end(), [](char byte) { return !isContinuation(static_cast<unsigned char>(byte)); }));
}

void appendUtf8(std::string& text, char32_t value) {
  const auto put = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
  if (value < 0x80) {
    put(value);
  } else if (value < 0x800) {
    put(0xC0 | value >> 6);
    put(0x80 | (value & 0x3F));
  } else if (value < 0x10000) {
    put(0xE0 | value >> 12);
    put(0x80 | (value >> 6 & 0x3F));
    put(0x80 | (value & 0x3F));
  } else {
    put(0xF0 | value >> 18);
    put(0x80 | (value >> 12 & 0x3F));
    put(0x80 | (value >> 6 & 0x3F));
    put(0x80 | (value & 0x3F));
  }
}

std::string_view utf8Prefix(std::string_view text, size_t byteCount) {
  if (text.size() <= byteCount) return text;
  while (byteCount > 0 && isContinuation(static_cast<unsigned char>(text[byteCount]))) --byteCount;
  return text.substr(0, byteCount);
}

std::string latin1ToUtf8(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) appendUtf8(text, static_cast<unsigned char>(byte));
  return text;
}

}  // namespace speech
