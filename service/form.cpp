#include "service/form.h"

#include <algorithm>

namespace speech::service {
namespace {

int hexDigit(char character) {
  if (character >= '0' && character <= '9') return character - '0';
  if (character >= 'a' && character <= 'f') return character - 'a' + 10;
  if (character >= 'A' && character <= 'F') return character - 'A' + 10;
  return -1;
}

}  // namespace

std::optional<std::string> percentDecode(std::string_view encoded, bool plusIsSpace) {
  std::string decoded;
  decoded.reserve(encoded.size());
  for (size_t i = 0; i < encoded.size(); ++i) {
    if (encoded[i] == '+' && plusIsSpace) {
      decoded += ' ';
    } else if (encoded[i] != '%') {
      decoded += encoded[i];
    } else {
      if (encoded.size() - i < 3) return std::nullopt;
      const int high = hexDigit(encoded[i + 1]);
      const int low = hexDigit(encoded[i + 2]);
      if (high < 0 || low < 0) return std::nullopt;
      decoded += static_cast<char>(high * 16 + low);
      i += 2;
    }
  }
  return decoded;
}

Form::Form(std::string_view body) {
  while (!body.empty()) {
    const std::string_view pair = body.substr(0, body.find('&'));
    body.remove_prefix(std::min(body.size(), pair.size() + 1));
    if (pair.empty()) continue;
    const size_t equals = pair.find('=');
    fields_.emplace_back(pair.substr(0, equals),
                         equals == std::string_view::npos ? std::string_view() : pair.substr(equals + 1));
  }
}

std::optional<std::string_view> Form::encodedValue(std::string_view name) const {
  const auto field = std::find_if(fields_.begin(), fields_.end(), [&](auto& f) { return f.first == name; });
  if (field == fields_.end()) return std::nullopt;
  return field->second;
}

int Form::count(std::string_view name) const {
  return static_cast<int>(
      std::count_if(fields_.begin(), fields_.end(), [&](auto& field) { return field.first == name; }));
}

}  // namespace speech::service
