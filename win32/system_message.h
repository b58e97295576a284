#pragma once

#include <string>

namespace speech {

/// What the system says of one of its errors, such as ERROR_ACCESS_DENIED, in the user's language.
/// @param error  from GetLastError
/// @return a sentence without a line end; the number alone where the system has none
std::wstring systemMessage(unsigned long error);

}  // namespace speech
