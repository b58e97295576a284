#pragma once

#include <functional>

namespace speech {

/// Where an operation reports what a user should know.
using UserReport = std::function<void(const wchar_t* text)>;

/// Shows a message to the user in a modal box with an OK button; returns once the user has closed it.
void showUserMessage(const wchar_t* text);

}  // namespace speech
