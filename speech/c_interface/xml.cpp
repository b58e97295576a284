// Putting text into SSML documents.

#include "engines/shared/engine_utilities.h"
#include "speech/c_interface/failure.h"
#include "speech/c_interface/text.h"

namespace speech::c_interface {
namespace {

template <class Char>
std::int32_t escapeXml(const Char* text, Char* buffer, std::uint32_t capacity, std::uint32_t* length) {
  std::string ignored;
  return resultOf(ignored, [&] {
    const CStringW escaped = escapedXml(textOf(text).c_str());
    handOut(std::wstring_view(escaped.GetString(), static_cast<std::size_t>(escaped.GetLength())), buffer,
            capacity, length);
  });
}

}  // namespace
}  // namespace speech::c_interface

using namespace speech::c_interface;

int32_t SPEECH_CALL speech_escape_xml(const char* text, char* buffer, uint32_t capacity, uint32_t* length) {
  return escapeXml(text, buffer, capacity, length);
}

int32_t SPEECH_CALL speech_escape_xml_w(const wchar_t* text, wchar_t* buffer, uint32_t capacity,
                                        uint32_t* length) {
  return escapeXml(text, buffer, capacity, length);
}
