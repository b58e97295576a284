#include "service/child_process.h"

#include <gtest/gtest.h>
#include <signal.h>

#include "service/spool_file.h"

namespace speech::service {
namespace {

using namespace std::chrono_literals;

std::string contentOf(const SpoolFile& file) {
  std::string content(file.size(), '\0');
  content.resize(file.readAt(0, content));
  return content;
}

ChildResult runShell(const std::string& script, const SpoolFile& input, const SpoolFile& output) {
  return runChild({"/bin/sh", "-c", script}, input, output, 60s);
}

TEST(ChildProcess, ReadsItsInputAndWritesItsOutputAndTellsHowItEnded) {
  SpoolFile input;
  input.append("some text");
  input.rewind();
  const SpoolFile output;
  const ChildResult exited = runShell("cat; exit 7", input, output);
  EXPECT_EQ(exited.end, ChildEnd::kExited);
  EXPECT_EQ(exited.code, 7);
  EXPECT_EQ(contentOf(output), "some text");
  const ChildResult killed = runShell("kill -KILL $$", input, output);
  EXPECT_EQ(killed.end, ChildEnd::kKilled);
  EXPECT_EQ(killed.code, SIGKILL);
}

TEST(ChildProcess, InheritsNothingButItsStandardStreams) {
  const SpoolFile input;
  const SpoolFile output;
  const FileDescriptor inheritable(::dup(input.descriptor()));
  ASSERT_GT(inheritable.get(), STDERR_FILENO);
  runShell("for f in /proc/$$/fd/*; do [ \"${f##*/}\" -gt 2 ] && readlink $f; done", input, output);
  EXPECT_EQ(contentOf(output), "");
}

TEST(SpoolFile, ReadsAnywhereAndStopsAtTheEnd) {
  SpoolFile file;
  file.append("0123456789");
  char bytes[4] = {};
  EXPECT_EQ(file.readAt(8, bytes), 2U);
  EXPECT_EQ(std::string_view(bytes, 2), "89");
  EXPECT_EQ(file.readAt(100, bytes), 0U);
  file.append("ab");
  EXPECT_EQ(contentOf(file), "0123456789ab");
}

}  // namespace
}  // namespace speech::service
