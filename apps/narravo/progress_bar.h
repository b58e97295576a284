#pragma once

// A line that shows how far a long piece of work has come.

#include <chrono>
#include <string>

namespace narravo {

using Seconds = std::chrono::duration<double>;

/// The line for work that has taken `elapsed` of the `expected` time. Work that takes longer than expected
/// stays at 99 %: only its end is 100 %.
std::string progressLine(Seconds elapsed, Seconds expected);

/// The line for work that is done.
std::string finishedLine();

}  // namespace narravo
