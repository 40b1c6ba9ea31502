#pragma once
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

namespace parlowen::testing {

inline constexpr unsigned kNobody = 65534;

/// What `action` answers in a process of its own; −1 when that process was killed. Its limits and its user
/// end there.
inline int InChild(const std::function<int()>& action) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(action());
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// The same as a user without rights; root is stopped by no permission.
inline int AsNobody(const std::function<int()>& action) {
  return InChild([&] { return ::setgid(kNobody) != 0 || ::setuid(kNobody) != 0 ? 99 : action(); });
}

/// The same with files of at most `bytes` bytes: a disk that is full.
inline int WithFileSizeLimit(rlim_t bytes, const std::function<int()>& action) {
  return InChild([&] {
    const rlimit limit{bytes, bytes};
    return ::setrlimit(RLIMIT_FSIZE, &limit) != 0 ? 99 : action();
  });
}

}  // namespace parlowen::testing
