#pragma once

namespace speech {

/// Starts a program hidden and waits for it to end, without a time-out, while the calling thread's messages
/// go on being dispatched.
/// @param file        the program's path
/// @param parameters  its command line, without the program
/// @return whether the program could be started; its exit code is not looked at
bool runProgram(const wchar_t* file, const wchar_t* parameters);

}  // namespace speech
