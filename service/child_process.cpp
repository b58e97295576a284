#include "service/child_process.h"

#include <poll.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): kill is in this one only
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>

namespace speech::service {
namespace {

class SpawnActions {
 public:
  SpawnActions(const SpoolFile& input, const SpoolFile& output) {
    ::posix_spawn_file_actions_init(&actions_);
    ::posix_spawn_file_actions_adddup2(&actions_, input.descriptor(), STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions_, output.descriptor(), STDOUT_FILENO);
    ::posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
  }
  SpawnActions(const SpawnActions&) = delete;
  SpawnActions& operator=(const SpawnActions&) = delete;
  ~SpawnActions() { ::posix_spawn_file_actions_destroy(&actions_); }

  const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

bool endsWithin(pid_t child, std::chrono::milliseconds timeLimit) {
  using Clock = std::chrono::steady_clock;
  const auto deadline = Clock::now() + timeLimit;
  const FileDescriptor handle(static_cast<int>(::syscall(SYS_pidfd_open, child, 0)));
  pollfd event{handle.get(), POLLIN, 0};
  for (;;) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    const int ready = ::poll(&event, 1, static_cast<int>(std::clamp<long long>(left, 0, INT_MAX)));
    if (ready >= 0 || errno != EINTR) return ready > 0;
  }
}

}  // namespace

ChildResult runChild(const std::vector<std::string>& arguments, const SpoolFile& input,
                     const SpoolFile& output, std::chrono::milliseconds timeLimit) {
  std::vector<char*> rawArguments;
  rawArguments.reserve(arguments.size() + 1);
  for (const std::string& argument : arguments) rawArguments.push_back(const_cast<char*>(argument.c_str()));
  rawArguments.push_back(nullptr);

  const SpawnActions actions(input, output);
  pid_t child = 0;
  const int error =
      ::posix_spawn(&child, arguments[0].c_str(), actions.get(), nullptr, rawArguments.data(), environ);
  if (error != 0) return {ChildEnd::kCannotBeStarted, error};

  const bool ended = endsWithin(child, timeLimit);
  if (!ended) ::kill(child, SIGKILL);
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  if (!ended) return {ChildEnd::kTimedOut, 0};
  if (WIFEXITED(status)) return {ChildEnd::kExited, WEXITSTATUS(status)};
  return {ChildEnd::kKilled, WTERMSIG(status)};
}

}  // namespace speech::service
