#include "service/child_process.h"

#include <gtest/gtest.h>

namespace speech::service {
namespace {

TEST(ChildProcess, InheritsNothingButItsStandardStreams) {
  const SpoolFile input, output;
  const FileDescriptor inheritable(::dup(input.descriptor()));
  ASSERT_GT(inheritable.get(), STDERR_FILENO);
  const std::string script =
      "for f in /proc/$$/fd/*; do [ \"${f##*/}\" -gt 2 ] && readlink $f; done; echo over";
  runChild({"/bin/sh", "-c", script}, input, output, std::chrono::seconds(60));
  std::string written(100, '\0');
  written.resize(output.readAt(0, written));
  EXPECT_EQ(written, "over\n");
}

}  // namespace
}  // namespace speech::service
