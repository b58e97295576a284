// The body of a form request: "name=value" pairs joined by "&", and the decoding of their values.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace speech::service {

// Undoes percent-encoding; with plusIsSpace a "+" stands for a space, as forms write it.
// Nothing when a "%" is not followed by two hexadecimal digits.
std::optional<std::string> percentDecode(std::string_view encoded, bool plusIsSpace);

// Keeps views into the body it was parsed from, which must outlive it.
class Form {
 public:
  explicit Form(std::string_view body);

  // The value as it was sent, still encoded; the first one when the field is repeated.
  std::optional<std::string_view> encodedValue(std::string_view name) const;

  // How often the field was sent.
  int count(std::string_view name) const;

 private:
  std::vector<std::pair<std::string_view, std::string_view>> fields_;
};

}  // namespace speech::service
