#pragma once

// Runs a program to its end with files as its standard input and output.

#include <chrono>
#include <string>
#include <vector>

#include "service/spool_file.h"

namespace speech::service {

enum class ChildEnd {
  kExited,           // by itself; code is its exit code
  kKilled,           // by a signal; code is the signal's number
  kTimedOut,         // by us, because its time was over
  kCannotBeStarted,  // code is the error number
};

struct ChildResult {
  ChildEnd end;
  int code;
};

// Blocks until the program has ended, at the latest when the time limit kills it. The program inherits the
// two files and standard error, and nothing else that is open here: no connection outlives its request. May
// be called on any number of threads at once. arguments[0] is the program's path.
ChildResult runChild(const std::vector<std::string>& arguments, const SpoolFile& input,
                     const SpoolFile& output, std::chrono::milliseconds timeLimit);

}  // namespace speech::service
