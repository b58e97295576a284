#pragma once

namespace speech {

/// Shows a message to the user in a modal box with an OK button; returns once the user has closed it.
void showUserMessage(const wchar_t* text);

/// How showUserMessage shows its text.
using UserMessageBox = void (*)(const wchar_t* text);

/// Replaces the box, so that tests need no user; null restores it.
void setUserMessageBox(UserMessageBox box);

}  // namespace speech
